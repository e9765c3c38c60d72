#include "gallery/cells.h"

namespace {

// ArcTo and Pie take the coordinates of the start point exchanged, and points straight above or
// below the centre count as each other.
constexpr Cell cells[] = {
    {"point", "point 166 62; point 164 74; point 157 84 back; point 145 94; "
              "point 131 101; point 114 105 back; point 96 107; point 78 105; "
              "point 61 101 back; point 47 94; point 35 84; point 28 74 back; "
              "point 26 62; point 28 50; point 35 40 back; point 47 30; point 61 23; "
              "point 78 19 back; point 96 17; point 114 19; point 131 23 back; "
              "point 145 30; point 157 39; point 164 50 back"},
    {"pixel", "pixel 24 104 1 0.3 0.3 1; pixel 33 99 1 0.3 0.3 1; "
              "pixel 42 94 1 0.3 0.3 1; pixel 51 89 0.3 1 0.3 1; "
              "pixel 60 84 0.3 1 0.3 1; pixel 69 79 0.3 1 0.3 1; "
              "pixel 78 74 0.4 0.5 1 1; pixel 87 69 0.4 0.5 1 1; "
              "pixel 96 64 0.4 0.5 1 1; pixel 105 59 1 1 0.3 1; "
              "pixel 114 54 1 1 0.3 1; pixel 123 49 1 1 0.3 1; pixel 132 44 0.3 1 1 1; "
              "pixel 141 39 0.3 1 1 1; pixel 150 34 0.3 1 1 1; pixel 159 29 1 0.4 1 1; "
              "pixel 168 24 1 0.4 1 1; pixel 177 19 1 0.4 1 1"},
    {"line", "line 16 12 176 12; line 16 12 176 112; line 16 112 96 12; line 176 12 176 112"},
    {"move lineto", "move 20 104; lineto 58 20; lineto 96 104; lineto 134 20; lineto 172 104"},
    {"wu", "wu 16 12 176 30; wu 16 12 176 112; wu 16 12 70 112"},
    {"wuto", "move 20 104; wuto 58 20; wuto 96 104; wuto 134 20; wuto 172 104"},
    {"vert", "vert 40 12 112; vert 80 32 112; vert 120 52 112; vert 160 72 112"},
    {"horiz", "horiz 16 30 176; horiz 36 52 176; horiz 56 74 176; horiz 76 96 176"},
    {"dash", "dash 16 20 176 20 8 4; dash 16 40 176 100 12 6; dash 16 108 176 108 2 2"},
    {"polyline", "polyline 20 104 96 16 172 104 20 48 172 48 20 104"},
    {"polylineto", "polylineto 20 104 50 20 90 80; color 0.3 0.8 1; lineto 172 20"},
    {"antialias", "color 0.9 0.9 0.9; erase; color 0 0 0; antialias on; line 16 12 176 40;"
                  "line 16 12 176 112; line 16 12 70 112"},
    {"circle", "circle 96 62 50; circle 96 62 30; circle 96 62 10"},
    {"fillcircle", "fillcircle 66 62 44; color 0.3 0.8 1; fillcircle 142 62 26"},
    {"ellipse", "ellipse 96 62 80 50; ellipse 96 62 30 50; ellipse 96 62 80 15"},
    {"arc", "arc 26 12 166 112 166 62 26 62; color 0.3 0.8 1; arc 46 32 146 92 46 62 146 62"},
    {"arcto", "arcto 26 12 166 112 62 166 26 62; color 0.3 0.8 1; lineto 96 62"},
    {"pie", "pie 26 12 166 112 20 150 40 100; color 0.3 0.8 1; pie 46 22 176 102 62 176 160 26"},
    {"anglearc", "anglearc 96 62 50 0 270; color 0.3 0.8 1; anglearc 96 62 36 180 450"},
    {"anglearcto", "anglearcto 96 62 80 50 30 200; color 0.3 0.8 1; lineto 96 62"},
    {"bezier", "bezier 20 104 60 -30 130 150 172 20; color 0.3 0.8 1; dash 20 104 60 2 4 4;"
               "dash 172 20 130 122 4 4"},
    {"polybezier", "polybezier 16 62 36 2 76 2 96 62 116 122 156 122 176 62"},
    {"polybezierto", "polybezierto 16 90 16 10 70 10 80 60 90 110 130 110 130 60;"
                     "color 0.3 0.8 1; lineto 176 16"},
    {"rect", "rect 16 12 176 112; rect 46 32 146 92"},
    {"fillrect", "fillrect 16 12 110 80; color 0.3 0.8 1; fillrect 80 50 176 112"},
    {"roundrect", "roundrect 16 12 176 112 60 60; roundrect 46 32 146 92 50 20"},
    {"gradient", "gradient 16 12 90 112 90; color 0.3 0.8 1; gradient 102 12 176 112 0"},
    {"fill", "circle 76 62 48; circle 116 62 48; color 0.3 0.8 1; fill 96 62; color 0.9 0.6 0.2;"
             "fill 50 62 0.05"},
    {"erase", "erase back; rect 40 30 152 94"},
    {"label scale", "label 10 8 \"Scale 1\"; scale 2; label 10 28 \"Scale 2\"; scale 3;"
                    "label 10 58 \"Scale3\"; scale 1; label 10 98 \"\\\"quoted\\\" {{|}~\""},
    {"label opaque inverse", "scale 2; label 20 16 \"plain\"; label 20 50 \"opaque\" opaque;"
                             "label 20 86 \"inverse\" opaque inverse"},
    {"text",
     "rect 8 8 183 58; text 12 14 179 34 \"top\"; text 12 14 179 34 \"opaque\" right opaque;"
     "text 12 34 179 54 \"right\" right; rect 8 66 183 116;"
     "text 12 70 179 90 \"centre\" centre; text 12 90 179 112 \"bottom\" bottom"},
    {"color ycbcr matrix", "color 1 0.4 0.4; fillrect 12 12 60 60; ycbcr 0.5 0.3 0.3;"
                           "fillrect 72 12 120 60; matrix rec709; ycbcr 0.5 0.3 0.3;"
                           "fillrect 132 12 180 60; backcolor 0.4 0.5 1; scale 4;"
                           "label 30 72 \" \" opaque; backycbcr 0.6 0.7 0.4;"
                           "label 110 72 \" \" opaque"},
    {"transparency", "fillcircle 70 62 44; color 0.2 0.7 0.9; transparency 0.5;"
                     "text 24 36 180 86 \"half\""},
    {"additive", "additive on; color 0.6 0 0; text 20 10 180 70 \"ADD\"; color 0 0.5 0;"
                 "text 30 40 180 100 \"ADD\""},
    {"image", "image 16 12 bars; image 166 100 bars 0.5 scale 60 40 anchor right bottom"},
    {"safe at", "safe 0.8; rect 0 0 153 99; at right bottom; fillrect -30 -20 0 1;"
                "at centre middle; circle 0 0 30; at left top; label 4 4 \"at\""},
    {"unit measure", "unit 16 10; fillcircle 'w/2' 'h/2' 3; scale 0.2; measure \"mid\";"
                     "color 0 0 0; label 'w/2-dw/2' 4.5 \"mid\""},
    {"let when from end", "let r = h/8; when gt(w,h); circle 60 62 'r*3'; end;"
                          "from 00:00:00:00 to 00:00:01:00; fillcircle 140 62 'r*2'; end"},
    {"backcolor", "backcolor 0.2 0.5 0.3; erase back; scale 3; label 20 46 \"green\""},
};

} // namespace

std::span<const Cell> galleryCells() {
    return cells;
}
