#!/usr/bin/env python3
"""Writes command lines in a shell on a terminal, presses TAB and looks at what then stands there.

Usage: press_tab.py bash|zsh COMPLETION
"""

import os
import pty
import select
import subprocess
import sys
import tempfile

# What is written, what it becomes, and in zsh where that differs.
CASES = [
    ("zrdraw ov", "zrdraw overlay "),
    ("zrdraw config exp", "zrdraw config export "),
    ("zrdraw draw --lay", "zrdraw draw --layout ", "zrdraw draw --layout="),
    ("zrdraw draw --layout rgbah", "zrdraw draw --layout rgbahalf "),
    ("zrdraw draw --layout=rgbah", "zrdraw draw --layout=rgbahalf "),
    ("zrdraw wipe a b c --code slide-u", "zrdraw wipe a b c --code slide-up "),
    ("zrdraw mux --mode two", "zrdraw mux --mode two-up "),
    ("zrdraw mux --sound bo", "zrdraw mux --sound both "),
    ("zrdraw overlay --set AudioE", "zrdraw overlay --set AudioEnable="),
    ("zrdraw config set AudioX=3 AudioE", "zrdraw config set AudioX=3 AudioEnable="),
    ("zrdraw config get TimeCodeS", "zrdraw config get TimeCodeSize "),
    ("zrdraw config --settings-store jo", "zrdraw config --settings-store job.db "),
    ("zrdraw draw -e anglearct", "zrdraw draw -e anglearcto"),
    ("zrdraw draw cl", "zrdraw draw clip\\ 1.mov "),
    ("zrdraw overlay --watermark=lo", "zrdraw overlay --watermark=logo.png "),
    ("zrdraw gallery pi", "zrdraw gallery pictures/"),  # not the file beside it
    ("zrdraw draw --crf lo", "zrdraw draw --crf lo"),  # no file can be meant
]
FILES = ["clip 1.mov", "logo.png", "job.db", "pins.txt"]
MARK = "\x07"  # control-g shows the line between two @, and clears it
SHELLS = {
    "bash": (
        ["bash", "--norc", "--noprofile", "-i"],
        "bind 'set bell-style none'; bind 'set enable-bracketed-paste off'\n"
        'bind -x \'"\\C-g": printf "@%s@\\n" "$READLINE_LINE"; READLINE_LINE=\'\n'
        "source {file}\n",
    ),
    "zsh": (
        ["zsh", "-f", "-i"],
        "unsetopt zle_bracketed_paste beep; fpath=({folder} $fpath)\n"
        "autoload -U compinit; compinit -u -D\n"
        "show() {{ print -r -- \"@$BUFFER@\"; BUFFER= }}; zle -N show\n"
        "bindkey -e '^G' show\n",
    ),
}


class Shell:
    def __init__(self, arguments, folder):
        self.terminal, inner = pty.openpty()
        environment = {**os.environ, "TERM": "dumb", "INPUTRC": "/dev/null", "PS1": "> ",
                       "ZDOTDIR": folder}
        self.process = subprocess.Popen(arguments, stdin=inner, stdout=inner, stderr=inner,
                                        cwd=folder, env=environment, start_new_session=True)
        os.close(inner)

    def send(self, text):
        os.write(self.terminal, text.encode())

    def read_until(self, wanted):
        """What was printed up to where `wanted` holds of it."""
        text = ""
        while not wanted(text):
            ready, _, _ = select.select([self.terminal], [], [], 60)
            if not ready:
                raise TimeoutError(f"the shell says nothing more after {text!r}")
            text += os.read(self.terminal, 65536).decode(errors="replace")
        return text

    def complete(self, line):
        self.send(line + "\t" + MARK)
        return self.read_until(lambda text: text.count("@") >= 2).split("@")[1]

    def end(self):
        os.close(self.terminal)
        self.process.wait()


def main():
    name, file = sys.argv[1], os.path.abspath(sys.argv[2])
    arguments, setup = SHELLS[name]
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        for path in FILES:
            open(os.path.join(folder, path), "w").close()
        os.mkdir(os.path.join(folder, "pictures"))
        shell = Shell(arguments, folder)
        shell.send(setup.format(file=file, folder=os.path.dirname(file)) + "echo rea''dy\n")
        shell.read_until(lambda text: "ready\r\n" in text)
        for case in CASES:
            expected = case[-1] if name == "zsh" else case[1]
            got = shell.complete(case[0])
            if got != expected:
                print(f"{name}: '{case[0]}' becomes '{got}', not '{expected}'")
                failures += 1
        shell.end()
    print(f"{name}: {len(CASES) - failures} of {len(CASES)} lines completed")
    return failures != 0


if __name__ == "__main__":
    sys.exit(main())
