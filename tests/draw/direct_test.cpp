// Primitives write objects of our own classes directly and leave out the virtual calls; a class
// derived from one of ours gets every call. Both must leave the same bytes, members and answers.
// The number of scripts a layout is ZRDRAW_SCRIPTS, if that is set.
#include "support/guarded_memory.h"
#include "zrdraw/arc_ends.h"
#include "zrdraw/formats.h"
#include "zrdraw/layouts.h"
#include "zrdraw/zroverlay.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

class Random {
public:
    explicit Random(unsigned int seed) : m_engine(seed) {}

    int below(int count) { return static_cast<int>(m_engine() % static_cast<unsigned int>(count)); }
    bool flag() { return below(2) != 0; }
    double part() { return (below(300) - 20) / 256.0; }
    unsigned char byte() { return static_cast<unsigned char>(m_engine()); }

    // Mostly about a small canvas; now and then where 16 bits do not hold it.
    int at() { return below(200) == 0 ? 32760 + below(20) : below(120) - 20; }

private:
    std::mt19937 m_engine;
};

constexpr const char* texts[] = {"", "Ag", "#1\x7F", "Studio"};

const char* textOf(Random& r) {
    return texts[r.below(4)];
}

int drawText(ZRDraw& draw, Random& r) {
    RECT rect{r.at(), r.at(), r.at(), r.at()};
    if (r.flag())
        rect.bottom = rect.top + 10 * r.below(4);
    draw.textTransparent = r.flag();
    constexpr unsigned int formats[] = {0, 1, 2, 8, 0x400};
    draw.DrawText(textOf(r), r.below(6), &rect, formats[r.below(5)]);
    const auto part = [](int coordinate) { return static_cast<unsigned int>(coordinate); };
    return static_cast<int>(part(rect.left) + 3 * part(rect.top) + 5 * part(rect.right) +
                            7 * part(rect.bottom));
}

int label(ZRDraw& draw, Random& r) {
    draw.LabelFont(0, r.below(5));
    return draw.Label(r.at(), r.at(), textOf(r), r.flag(), r.flag());
}

int weightedLine(ZRDraw& draw, Random& r) {
    draw.antiAlias = true;
    const int status = draw.Line(r.below(30), r.below(20), r.below(30), r.below(20));
    draw.antiAlias = false;
    return status;
}

int rectangle(ZRDraw& draw, Random& r) {
    const RECT rect{r.at(), r.at(), r.at(), r.at()};
    const RECT whole{0, 0, static_cast<int>(draw.width), static_cast<int>(draw.height)};
    return draw.FillRect(r.below(8) == 0 ? &whole : &rect);
}

// Braces keep the order of the arguments.
struct Args {
    int a, b, c, d, e, f;
    explicit Args(Random& r) : Args{r.at(), r.at(), r.at(), r.at(), r.below(30), r.below(30)} {}

private:
    Args(int a1, int b1, int c1, int d1, int e1, int f1)
        : a(a1), b(b1), c(c1), d(d1), e(e1), f(f1) {}
};

using Operation = int (*)(ZRDraw&, Random&);
constexpr Operation operations[] = {
    drawText,
    drawText,
    label,
    label,
    weightedLine,
    rectangle,
    [](ZRDraw& draw, Random& r) {
        const double c[] = {r.part(), r.part(), r.part(), r.part()};
        return draw.SetColorRGBA(c[0], c[1], c[2], c[3], r.flag());
    },
    [](ZRDraw& draw, Random& r) {
        draw.SetTransparency(r.part(), r.flag());
        draw.SetTransparency(r.below(3) == 0);
        draw.SetAlphaAdditive(r.below(4) == 0);
        return 0;
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.Point(p.a, p.b, r.flag());
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.Line(p.a, p.b, p.c, r.flag() ? p.b : p.d);
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.LineWu(p.a, p.b, p.c, p.d);
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.LineVert(p.a, p.b, p.c) + draw.LineHoriz(p.e, p.f, p.d);
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.Dash(p.a, p.b, p.c, p.d, p.e % 5, p.f % 4);
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.Circle(p.e, p.f, r.below(20) - 1) + draw.FillCircle(p.f, p.e, r.below(9));
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.Ellipse(p.e, p.f, r.below(20), r.below(20)) +
               draw.AngleArc(p.f, p.e, 7, static_cast<float>(p.a), static_cast<float>(p.b));
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.Pie(p.a, p.b, p.c, p.d, p.e, p.f, r.below(30), r.below(30));
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r), q(r);
        return draw.Bezier(p.e, p.f, p.a, p.b, p.c, p.d, q.e, q.f);
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.RoundRect(p.a, p.b, p.c, p.d, p.e, p.f) + draw.Rectangle(p.a, p.b, p.e, p.f);
    },
    [](ZRDraw& draw, Random& r) { return draw.EraseCanvas(r.flag()); },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        const int angle = r.flag() ? 90 * r.below(5) : r.below(720) - 360;
        return draw.GradientRect(p.e, p.f, p.c % 200, p.d % 200, angle);
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        return draw.Fill(p.e, p.f, r.part());
    },
    [](ZRDraw& draw, Random& r) {
        const Args p(r);
        fillRect(&draw, p.a, p.b, p.e, p.c);
        return 0;
    },
};

// The answers of a script, and what it leaves behind.
struct Result {
    GuardedMemory frame;
    std::vector<long> answers;
    bool operator==(const Result&) const = default;
};

Result drawScript(ZRDraw& draw, const zrLayout& layout, unsigned int seed) {
    Random r(seed);
    xStartArc = yStartArc = xEndArc = yEndArc = 0; // which a refused pie reads
    const int width = 1 + r.below(90), height = 1 + r.below(24);
    const auto pitch = static_cast<int>(zrLineBytes(layout.line, static_cast<unsigned>(width))) +
                       r.below(2) * r.below(40);
    // Writes that take pixels for words reach far behind the last line.
    Result result{GuardedMemory(static_cast<std::size_t>(pitch * (height + 2) + 4 * width + 64)),
                  {}};
    for (unsigned char& byte : result.frame)
        byte = r.flag() ? r.byte() : 0; // so that fills find regions
    draw.SetCanvas(result.frame.chars(), height, width, pitch);
    for (int i = 0; i < 6; ++i)
        result.answers.push_back(operations[r.below(std::size(operations))](draw, r));
    for (const auto member : {draw.foreColor, draw.backColor, static_cast<unsigned>(draw.currentX),
                              static_cast<unsigned>(draw.currentY), draw.pitch})
        result.answers.push_back(member);
    return result;
}

template <typename Class>
void compareScripts(const zrLayout& layout, unsigned int scripts) {
    struct Called : Class {
        explicit Called(unsigned int code) : ZRDraw(code), Class(code) {}
    };
    for (unsigned int seed = 0; seed < scripts; ++seed) {
        Class ours(layout.code);
        Called theirs(layout.code);
        const Result direct = drawScript(ours, layout, seed);
        const Result called = drawScript(theirs, layout, seed);
        ASSERT_EQ(direct.answers, called.answers) << layout.name << ", seed " << seed;
        ASSERT_EQ(direct.frame, called.frame) << layout.name << ", seed " << seed << ": byte "
                                              << direct.frame.firstDifference(called.frame);
    }
}

struct Row {
    const char* drawClass;
    void (*compare)(const zrLayout&, unsigned int);
};
constexpr Row rows[] = {
    {"CDrawRGBA32", compareScripts<CDrawRGBA32>},
    {"CDrawRGB24", compareScripts<CDrawRGB24>},
    {"CDrawYCbCrYUYV", compareScripts<CDrawYCbCrYUYV>},
    {"CDrawYCbCr10", compareScripts<CDrawYCbCr10>},
    {"CDrawRGB30DPX", compareScripts<CDrawRGB30DPX>},
    {"CDrawBayer", compareScripts<CDrawBayer>},
    {"CDrawRGB48", compareScripts<CDrawRGB48>},
    {"CDrawARGB64", compareScripts<CDrawARGB64>},
    {"CDrawRGBHalf48", compareScripts<CDrawRGBHalf48>},
    {"CDrawRGBAHalf", compareScripts<CDrawRGBAHalf>},
    {"CDrawUV8", compareScripts<CDrawUV8>},
    {"CDrawUV16", compareScripts<CDrawUV16>},
};

TEST(Direct, IsAsByCalls) {
    const char* wanted = std::getenv("ZRDRAW_SCRIPTS");
    const auto scripts = static_cast<unsigned int>(wanted != nullptr ? std::atol(wanted) : 300);
    for (const zrLayout& layout : zrLayouts) {
        SCOPED_TRACE(layout.name);
        bool found = false;
        for (const Row& row : rows)
            if (std::string(row.drawClass) == layout.drawClass) {
                row.compare(layout, scripts);
                found = true;
            }
        EXPECT_TRUE(found) << layout.drawClass;
    }
}

} // namespace
