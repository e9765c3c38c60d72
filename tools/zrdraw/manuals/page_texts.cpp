#include "manuals/page_texts.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

const char* const toolDescription =
    "zrdraw draws on pictures and clips, in whatever layout their pixels have: marks and texts, "
    "overlays of time code and audio meters, transitions, and two clips composed into one. It "
    "reads "
    "and writes what FFmpeg does, sequences of pictures with numbers too, and - is standard input "
    "or "
    "output.\n\n"
    "Frames keep their times; sound, other streams and descriptions pass, and the source's codec "
    "is "
    "taken, unless options say otherwise. An existing output stays unless --force is given. All "
    "files of a result appear, or none.";

namespace {

const std::vector<PageText>& texts() {
    static const std::vector<PageText> all = {
        {"zrdraw",
         {{"A mark on every frame of a clip:",
           R"(zrdraw draw in.mov out.mov -e 'color 1 0 0; scale 4; label 40 40 "REC 01:02"')"},
          {"What a subcommand takes:", "zrdraw overlay --help"}},
         {},
         true},
        {"types",
         {{"The layouts, with the bytes of a line of 1920 pixels:", "zrdraw types --width 1920"},
          {"What the library makes of a bitmap header:",
           "zrdraw types --bitmap v210 --size 1920x1080 --depth 20"}},
         {"zrdraw", "zrdraw-draw"}},
        {"draw",
         {{"Draw on all frames, or take one with the marks of a file:",
           R"(zrdraw draw in.mov out.mov -e 'color 1 0 0; fillrect 10 10 90 50'
zrdraw draw in.mov still.png --frames 20 --script marks.zrd)"},
          {"See on one picture what a script makes of a clip, or of a piece of it:",
           R"(zrdraw draw in.mov sheet.png --contact 4x3 --script marks.zrd
zrdraw draw in.mov piece.png --contact 5x2 --frames 20:30 -e 'line 0 0 319 179')"},
          {"A bar that grows for ten seconds, and time code from the third second on:",
           R"(zrdraw draw in.mov out.mov -e 'fillrect 0 h-8 w*t/10 h' \
    -e 'from 00:00:02:00 to 00:00:04:00; label 20 20 "{tc}"; end')"},
          {"A picture with its alpha in the top right corner, and a program:",
           R"(zrdraw draw in.mov out.mov -e 'image w-20 20 logo.png anchor right top' --lua ring.lua)"},
          {"Draw in a layout that is chosen, and keep it:",
           "zrdraw draw in.mov out.mov --layout v210 --codec v210 -e 'circle 160 90 40'"},
          {"Between other programs:", "ffmpeg -v error -i in.mov -f yuv4mpegpipe - |\n"
                                      "    zrdraw draw - - -e 'line 0 0 319 179' >out.y4m"},
          {"Pictures with numbers:",
           "zrdraw draw in.mov frame%04d.png -e 'antialias on; line 0 0 319 179'"}},
         {"zrdraw", "zrdraw-gallery", "zrdraw-types"}},
        {"gallery",
         {{"Look at all there is, in two layouts:",
           "zrdraw gallery pictures --layout bgra --layout uyvy"}},
         {"zrdraw", "zrdraw-draw", "zrdraw-wipe", "zrdraw-mux"}},
        {"overlay",
         {{"Time code as the source has it:", "zrdraw overlay in.mov out.mov"},
          {"A text, a watermark and meters:",
           "zrdraw overlay in.mov out.mov --text 0='Studio 3' --watermark logo.png \\\n"
           "    --set AudioEnable=1 --set CustomTextX0=20"},
          {"Time code from ten hours on, in H.264:",
           "zrdraw overlay in.mov out.mp4 --start-tc 10:00:00:00 --codec libx264 \\\n"
           "    --crf 18 --audio-codec aac"}},
         {"zrdraw", "zrdraw-config", "zrdraw-types"},
         true},
        {"wipe",
         {{"A box that grows, over 20 frames, with 5 of each clip around it:",
           "zrdraw wipe a.mov b.mov out.mov --code rectangle --frames 20 --hold 5"},
          {"From the third second of A and the first of B on:",
           "zrdraw wipe a.mov b.mov out.mov --from-a 3 --from-b 1"},
          {"One frame, when a quarter of it is over:",
           "zrdraw wipe a.mov b.mov out.png --code top-left --position 0.25"},
          {"The transitions:", "zrdraw wipe --list"}},
         {"zrdraw", "zrdraw-mux", "zrdraw-types"}},
        {"mux",
         {{"A to the left and B to the right of a line:",
           "zrdraw mux a.mov b.mov out.mov --mode split --split 100 --divider"},
          {"How two versions differ, eight times as strong:",
           "zrdraw mux a.mov b.mov out.mov --mode difference --gain 8 --grid 10%"},
          {"The modes:", "zrdraw mux --list"}},
         {"zrdraw", "zrdraw-types", "zrdraw-wipe"}},
        {"config",
         {{"Meters at another place, for all overlays to come:",
           "zrdraw config set AudioEnable=1 AudioX=40 AudioY=60"},
          {"Take the settings to another machine:",
           "zrdraw config export settings.txt\nzrdraw config import settings.txt"},
          {"Settings of one job:", "zrdraw config --settings-store job.db set TimeCodeLTCEnable=1\n"
                                   "zrdraw overlay in.mov out.mov --settings-store job.db"}},
         {"zrdraw", "zrdraw-overlay"},
         true},
        {"font",
         {{"What the library will make of a bitmap:", "zrdraw font deffont.bmp"}},
         {"zrdraw", "zrdraw-gallery"}},
    };
    return all;
}

} // namespace

const PageText& pageTextOf(std::string_view subcommand) {
    const auto found = std::find_if(texts().begin(), texts().end(), [&](const PageText& text) {
        return text.subcommand == subcommand;
    });
    if (found == texts().end())
        throw std::runtime_error(fmt::format(
            "the page of '{}' has no examples: add them to manuals/page_texts.cpp", subcommand));
    return *found;
}
