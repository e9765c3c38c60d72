#include "media/v210_packer.h"

#include "tool_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace {

constexpr AVPixelFormat pixels = AV_PIX_FMT_YUV422P10LE;

// The codec takes even widths only. An odd line has room for one pixel more.
CodecPtr openCodec(const AVCodec* codec, int width, int height) {
    if (!codec)
        throw Failure("the media libraries have no v210 codec here: use another --layout");
    CodecPtr context(avcodec_alloc_context3(codec));
    if (!context)
        throw std::bad_alloc();
    context->width = width + width % 2;
    context->height = height;
    context->pix_fmt = pixels;
    context->time_base = {1, 25};
    context->thread_count = 1; // each picture comes out before the next goes in
    const int opened = avcodec_open2(context.get(), codec, nullptr);
    if (opened < 0)
        throw Failure(fmt::format("pictures of {}x{} cannot be packed as v210: {}", width, height,
                                  avErrorText(opened)));
    return context;
}

void require(int status, const char* action) {
    if (status < 0)
        throw Failure(fmt::format("cannot {} v210: {}", action, avErrorText(status)));
}

} // namespace

V210Packer::V210Packer(int width, int height)
    : m_lineBytes(wholeLineBytes(*zrFindLayout(ptV210), width)), m_height(height),
      m_encoder(openCodec(avcodec_find_encoder(AV_CODEC_ID_V210), width, height)),
      m_decoder(openCodec(avcodec_find_decoder(AV_CODEC_ID_V210), width, height)),
      m_packet(newPacket()), m_decoded(newFrame()) {}

void V210Packer::pack(const AVFrame& picture, CanvasLines canvas) {
    require(avcodec_send_frame(m_encoder.get(), &picture), "encode");
    require(avcodec_receive_packet(m_encoder.get(), m_packet.get()), "encode");
    for (int y = 0; y < m_height; ++y)
        std::copy_n(m_packet->data + std::ptrdiff_t{m_lineBytes} * y, m_lineBytes, canvas.line(y));
    av_packet_unref(m_packet.get());
}

void V210Packer::unpack(CanvasLines canvas, AVFrame& picture) {
    av_packet_unref(m_packet.get());
    require(av_new_packet(m_packet.get(), m_lineBytes * m_height), "decode");
    for (int y = 0; y < m_height; ++y)
        std::copy_n(canvas.line(y), m_lineBytes, m_packet->data + std::ptrdiff_t{m_lineBytes} * y);
    require(avcodec_send_packet(m_decoder.get(), m_packet.get()), "decode");
    require(avcodec_receive_frame(m_decoder.get(), m_decoded.get()), "decode");
    av_image_copy(picture.data, picture.linesize, const_cast<const std::uint8_t**>(m_decoded->data),
                  m_decoded->linesize, pixels, m_decoded->width, m_height);
    av_frame_unref(m_decoded.get());
}
