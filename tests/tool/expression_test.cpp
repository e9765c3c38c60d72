// Expressions of scripts: their names, what each function takes, what keeps its state, and what is
// wrong with them at which byte.
#include "script/language/expression.h"
#include "tool/text_canvas.h"
#include "tool/tool_fixture.h"

#include <fmt/format.h>

#include <cmath>

namespace {

// What is wrong with an expression, as "offset: message"; empty for nothing.
std::string faultOf(const std::string& text) {
    try {
        const Expression expression(text, Names{});
        return "";
    } catch (const PartError& error) {
        return fmt::format("{}: {}", error.offset, error.message);
    }
}

std::string callOf(std::string_view function, int arguments) {
    std::string call(function);
    for (int i = 0; i < arguments; ++i)
        call += i == 0 ? "(0.5" : ",0.5";
    return call + ")";
}

TEST(ExpressionTest, FunctionsTakeTheirNumberOfArguments) {
    for (const FunctionName& function : expressionFunctions()) {
        for (int count = function.least; count <= function.most; ++count)
            EXPECT_EQ(faultOf(callOf(function.name, count)), "");
        for (const int count : {function.least - 1, function.most + 1})
            if (count > 0)
                EXPECT_NE(faultOf(callOf(function.name, count))
                              .find(fmt::format("0: {} takes ", function.name)),
                          std::string::npos)
                    << function.name << " " << count;
    }
}

TEST(ExpressionTest, FaultsAreNamedAtTheirByte) {
    const struct {
        std::string text, fault;
    } cases[] = {
        {"", "0: the expression is empty"},
        {"  ", "2: a value is missing at the end"},
        {"w +", "3: a value is missing at the end"},
        {"w + * 2", "4: a value is missing before it"},
        {"(w + )", "5: a value is missing before it"},
        {"max(,2)", "4: a value is missing before it"},
        {"abs()", "4: a value is missing before it"},
        {"--w", "0: FFmpeg reads no expression from it: it may have a sign too many, or "
                "more than a hundred operations, which let can set apart"},
        {"2 w", "2: an operator is missing before it"},
        {"w 2", "2: an operator is missing before it"},
        {"w (2)", "0: there is no function w()"},
        {"2 (w)", "2: an operator is missing before it"},
        {"w sin(2)", "2: an operator is missing before it"},
        {"((w)", "0: the bracket is not closed"},
        {"w + max(1,(2)", "4: the bracket is not closed"},
        {"w)", "1: there is no bracket to close"},
        {"1,2", "1: a comma stands between the arguments of a function only"},
        {"max((1,2))", "6: a comma stands between the arguments of a function only"},
        {"1;2", ""},
        {"max(1;2)", "0: max takes 2 arguments, not 1"},
        {"if(1,2,3,4)", "0: if takes 2 or 3 arguments, not 4"},
        {"w + sin(1,2)", "4: sin takes 1 argument, not 2"},
        {"sin + 1", "0: sin is a function: write sin(...)"},
        {"1 + hight", "4: there is no \"hight\""},
        {"peak33", "0: there is no \"peak33\""},
        {"sine(1)", "0: there is no function sine(); did you mean sin or sinh or asin?"},
        {"while(1,2)", "0: while might never end: use a program in Lua"},
        {"print(1)", "0: there is no function print()"},
        {"root(taylor(1,2),3)", "5: taylor within root or taylor takes too long"},
        {"taylor(1,2)+root(1,2)", ""},
        {"w < 2", "2: unexpected \"<\"; write lt(a,b) or lte(a,b)"},
        {"w > 2", "2: unexpected \">\"; write gt(a,b) or gte(a,b)"},
        {"w = 2", "2: unexpected \"=\"; write eq(a,b)"},
        {"w % 2", "2: unexpected \"%\"; write mod(a,b)"},
        {"w & 2", "2: unexpected \"&\"; write a*b, or bitand(a,b)"},
        {"w | 2", "2: unexpected \"|\"; write max(a,b), or bitor(a,b)"},
        {"w ? 2", "2: unexpected \"?\"; write if(condition,then,else)"},
        {"!w", "0: unexpected \"!\"; write not(a)"},
        {"w + \u00e4", "4: unexpected \"\u00e4\""},
        {"2w", "0: \"2w\" is no number"},
        {"1.2.3", "0: \"1.2.3\" is no number"},
        {"10k + 2e-3 + 3Ki - -6dB", ""},
        {std::string(999, ' ') + "1", ""},
        {std::string(1000, ' ') + "1", "1000: an expression has at most 1000 characters"},
        {std::string(40, '(') + "1" + std::string(40, ')'), ""},
        {std::string(41, '(') + "1", "40: brackets stand too deep within each other"},
    };
    for (const auto& [text, fault] : cases) {
        const std::string got = faultOf(text);
        // What is near to a name is the table's to say where no case asks for it.
        EXPECT_EQ(fault.ends_with('"') ? got.substr(0, fault.size()) : got, fault) << text;
    }
}

TEST(ExpressionTest, ConstantsAreTheFrames) {
    StreamFacts stream{64, 48};
    stream.framesPerSecond = 50;
    stream.sampleAspect = 1.5;
    FrameFacts facts = frameAt(7);
    facts.time = 0.28;
    facts.levels[1] = 65535;
    facts.levels[15] = 13107;
    TextCanvas canvas(64, 48);
    Stage stage(stream, Names().size(), {});
    Scene scene = stage.begin(*canvas.draw, canvas.view(), facts);
    scene.setTextWidth(24);
    const struct {
        const char* text;
        double value;
    } cases[] = {{"w", 64},
                 {"h", 48},
                 {"n", 7},
                 {"t", 0.28},
                 {"fps", 50},
                 {"sar", 1.5},
                 {"dw", 24},
                 {"peak1", 0},
                 {"peak2", 1},
                 {"peak16", 0.2},
                 {"w*2+PI", 128 + M_PI},
                 {"lerp(w,h,0.5)", 56}};
    for (const auto& [text, value] : cases)
        EXPECT_DOUBLE_EQ(Expression(text, Names{}).evaluate(scene.values), value) << text;
}

TEST(ExpressionTest, WhatIsAlwaysTheSameIsKnownToBe) {
    const struct {
        const char* text;
        bool isConstant, usesPeaks;
    } cases[] = {
        {"2*PI", true, false},          {"sin(1)+gauss(2)", true, false}, {"w", false, false},
        {"2+peak3", false, true},       {"random(0)", false, false},      {"st(0,1)", false, false},
        {"1+abs(ld(0))", false, false}, {"time(0)", false, false}};
    for (const auto& [text, isConstant, usesPeaks] : cases) {
        const Expression expression(text, Names{});
        EXPECT_EQ(expression.isConstant(), isConstant) << text;
        EXPECT_EQ(expression.usesPeaks(), usesPeaks) << text;
    }
}

TEST(ExpressionTest, StateIsEachExpressionsOwn) {
    const Values values(Names().size());
    const Expression counter("st(3,ld(3)+1)", Names{}), other("st(3,ld(3)+10)", Names{});
    for (int i = 1; i < 4; ++i) {
        EXPECT_EQ(counter.evaluate(values), i);
        EXPECT_EQ(other.evaluate(values), 10 * i);
    }
    const Expression random("random(0)", Names{}), again("random(0)", Names{});
    std::set<double> seen;
    for (int i = 0; i < 20; ++i) {
        const double value = random.evaluate(values);
        EXPECT_EQ(again.evaluate(values), value);
        EXPECT_TRUE(value >= 0 && value <= 1 && seen.insert(value).second) << value;
    }
}

TEST(ExpressionTest, VariablesAreSeenUpToTheEndOfTheirBlock) {
    Names names;
    const std::size_t outer = names.define("x");
    EXPECT_EQ(outer, firstVariable);
    names.openBlock();
    EXPECT_EQ(names.define("x"), outer) << "redefined";
    const std::size_t inner = names.define("y");
    names.closeBlock();
    EXPECT_EQ(names.find("y"), std::nullopt);
    EXPECT_EQ(names.find("x"), outer);
    EXPECT_NE(names.define("y"), inner) << "another variable";
}

} // namespace
