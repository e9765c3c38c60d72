#!/usr/bin/env python3
"""Writes the seeds that the fuzzers start from into corpus/draw and corpus/font."""
import pathlib
import random
import struct
import zlib

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"


def bitmap(bits=24, compression=0, image_size=0):
    """A bitmap file of 2 by 2 pixels."""
    pixels = bytes(range(16))
    header = struct.pack("<IiiHHIIiiII", 40, 2, 2, 1, bits, compression, image_size, 0, 0, 0, 0)
    return b"BM" + struct.pack("<IHHI", 54 + len(pixels), 0, 0, 54) + header + pixels


def chunk(name, content=b""):
    return struct.pack(">I", len(content)) + name + content + struct.pack(
        ">I", zlib.crc32(name + content))


def png(*middle, end=chunk(b"IEND")):
    """A PNG file of one grey pixel, with these chunks between its first and its last."""
    first = chunk(b"IHDR", struct.pack(">IIBBBBB", 1, 1, 8, 0, 0, 0, 0))
    return b"\x89PNG\r\n\x1a\n" + first + b"".join(middle) + end


PICTURE = chunk(b"IDAT", zlib.compress(b"\0\x80"))

FONT = {
    "bitmap": bitmap(),
    "bitmap_sized": bitmap(image_size=16),
    "bitmap_too_large": bitmap(image_size=1 << 21),
    "bitmap_8_bits": bitmap(bits=8),
    "bitmap_compressed": bitmap(compression=1),
    "png": png(PICTURE),
    "png_text": png(chunk(b"tEXt", b"Title\0font"), PICTURE, PICTURE),
    "png_without_end": png(PICTURE, end=b""),
    "png_too_long": png(chunk(b"gAMA"), b"\0\1\0\0IDAT"),
}

# A first byte chooses the layout; then any bytes are choices.
DRAW = {f"layout_{i}": bytes([i]) + random.Random(i).randbytes(500) for i in range(6)}

for folder, files in {"font": FONT, "draw": DRAW}.items():
    (CORPUS / folder).mkdir(parents=True, exist_ok=True)
    for name, content in files.items():
        (CORPUS / folder / name).write_bytes(content)
