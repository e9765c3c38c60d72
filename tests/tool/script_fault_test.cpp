// What is wrong with expressions, variables, blocks, fields and words of commands, told at the
// right column.
#include "tool/text_canvas.h"
#include "tool/tool_fixture.h"

namespace {

struct Fault {
    std::string script, error;
};

void expectFaults(const std::vector<Fault>& cases) {
    for (const auto& [script, error] : cases) {
        const std::string got = errorOf([&] { parseScript(script, "-e"); }, ExitStatus::BadUsage);
        // A list of names is compared up to its start.
        EXPECT_EQ(error.ends_with(' ') ? got.substr(0, error.size()) : got, error) << script;
    }
}

TEST(ScriptFaultTest, Expressions) {
    expectFaults({
        {"point w+ 2", "-e:1:9: point: x: a value is missing at the end"},
        {"point 'w + * 2' 1", "-e:1:12: point: x: a value is missing before it"},
        {"\tpoint\t' w < 2' 1", "-e:1:12: point: x: unexpected \"<\"; write lt(a,b) or lte(a,b)"},
        {"# \u00e4\u00e9\nmove 0 0; point 1 '2 \u00e9'",
         "-e:2:22: point: y: unexpected \"\u00e9\""},
        {"point w+widht 0", "-e:1:9: point: x: there is no \"widht\""},
        {"point 'abs(w' 0", "-e:1:8: point: x: the bracket is not closed"},
        {"point '' 0", "-e:1:7: point: x: the expression is empty"},
        {"point '2*w 0", "-e:1:7: the quote is not closed on its line"},
        {"point 'w'2 0", "-e:1:10: put a blank after the closing quote"},
        {"point w'2' 0", "-e:1:8: a quote inside a word; put a blank before it"},
        {"point \"w\" 0", "-e:1:7: point: expected a number from -32767 to 32767 for x, got \"w\""},
        {"polyline 0 0 'w' 'h+'", "-e:1:21: polyline: y1: a value is missing at the end"},
        {"additive 'w'", "-e:1:10: additive: expected one of off, on for switch, got \"w\""},
        // What is constant is held to its range at once.
        {"color 'sqrt(4)' 0 0", "-e:1:7: color: expected a number from 0 to 1 for r, got 2"},
        {"color 0 0 log(-1)", "-e:1:11: color: expected a number from 0 to 1 for b, got "},
        {"circle 5 5 -PI",
         "-e:1:12: circle: expected a number from 0 to 32767 for r, got -3.14159"},
        {"transparency nan*0",
         "-e:1:14: transparency: expected a number from 0 to 1 or off for t, got nan"},
    });
}

TEST(ScriptFaultTest, VariablesAndBlocks) {
    expectFaults({
        {"let 2x = 3",
         "-e:1:5: let: expected a name of letters, digits and _ for a variable, got \"2x\""},
        {"let 'x' = 3",
         "-e:1:5: let: expected a name of letters, digits and _ for a variable, got \"x\""},
        {"let w = 3", "-e:1:5: let: \"w\" has a meaning of its own in expressions; take another "
                      "name"},
        {"let sin = 3",
         "-e:1:5: let: \"sin\" has a meaning of its own in expressions; take another "
         "name"},
        {"let peak3 = 3", "-e:1:5: let: \"peak3\" has a meaning of its own in expressions; take "
                          "another name"},
        {"let PI = 3", "-e:1:5: let: \"PI\" has a meaning of its own in expressions; take another "
                       "name"},
        {"let info = 3", "-e:1:5: let: \"info\" has a meaning of its own in expressions; take "
                         "another name"},
        {"let x 3", "-e:1:7: let: expected =, got \"3\"; write let X = EXPRESSION"},
        {"let x =", "-e:1:1: let: expression is missing; write let X = EXPRESSION"},
        {"let x = y", "-e:1:9: let: expected a number for x, got \"y\""},
        {"let x = x+1", "-e:1:9: let: x: there is no \"x\""},
        {"let x = inf", "-e:1:9: let: expected a number for x, got "
                        "\"inf\""},
        {"when 1; let x = 2; end; point x+1 0", "-e:1:31: point: x: there is no \"x\""},
        {"when\nend", "-e:1:1: when: condition is missing; write when CONDITION"},
        {"when 1; when n\npoint 0 0; end", "-e:1:1: when: its end is missing"},
        {"point 0 0\n end", "-e:2:2: end: there is no when or from to end"},
        {"when 1; end; end", "-e:1:14: end: there is no when or from to end"},
        {"end 3", "-e:1:5: end: unexpected \"3\"; write end"},
        {"from 10:00:00:00", "-e:1:1: from: to is missing; write from TC0 to TC1"},
        {"from 10:00:00:00 at 11:00:00:00",
         "-e:1:18: from: expected to, got \"at\"; write from TC0 to TC1"},
        {"from 10:00:00 to 11:00:00:00",
         "-e:1:6: from: expected a time code such as 10:00:00:00 for tc0, got \"10:00:00\""},
        {"from 10:00:00:00 to 1:00:00:00",
         "-e:1:21: from: expected a time code such as 10:00:00:00 for tc1, got \"1:00:00:00\""},
        {"image 1 1", "-e:1:1: image: file is missing; write image X Y FILE [OPACITY] [scale W H] "
                      "[since T] [anchor left|centre|right top|middle|bottom]"},
        {"image 1 1 'a.png'", "-e:1:11: image: expected the name of a file, in double quotes if it "
                              "has blanks for file, got \"a.png\""},
        {"image 1 1 a.png 2",
         "-e:1:17: image: expected a number from 0 to 1 for opacity, got \"2\""},
        {"image 1 1 a.png scale 0 5",
         "-e:1:23: image: expected a number from 1 to 32767 for w, got \"0\""},
        {"label 1 1 \"a\" anchor left centre",
         "-e:1:27: label: expected one of top, middle, bottom "
         "for vertical, got \"centre\""},
        {"label 1 1 \"a\" anchor left",
         "-e:1:1: label: vertical is missing; write label X Y \"TEXT\" [inverse] [opaque] "
         "[anchor left|centre|right top|middle|bottom]"},
        {"at middle top",
         "-e:1:4: at: expected one of left, centre, right for horizontal, got \"middle\""},
        {"safe 0.05", "-e:1:6: safe: expected a number from 0.1 to 1 for part, got \"0.05\""},
        {"unit 0 9", "-e:1:6: unit: expected a number from 1 to 32767 for columns, got \"0\""},
    });
}

TEST(ScriptFaultTest, Fields) {
    expectFaults({
        {"label 0 0 \"a{tc\"",
         "-e:1:13: label: the field is not closed: write } behind it, or {{ for a brace"},
        {"label 0 0 \"{\"",
         "-e:1:12: label: the field is not closed: write } behind it, or {{ for a brace"},
        {"label 0 0 \"{tca}\"",
         "-e:1:13: label: there is no field \"tca\"; did you mean tc?; write {{ for a brace"},
        {"label 0 0 \"{}\"",
         "-e:1:13: label: there is no field \"\"; did you mean n or t?; write {{ for a brace"},
        {"label 0 0 \"{frames}\"", "-e:1:13: label: there is no field \"frames\"; the fields are "
                                   "tc, n, t, date, file, meta, expr; write {{ for a brace"},
        // Escapes, braces and what is not of one byte stand before it.
        {"label 0 0 \"\\\"\\\\{{{nr}\"",
         "-e:1:19: label: there is no field \"nr\"; did you mean n?; write {{ for a brace"},
        {"# \u00e4\n# \u00e9\nmeasure \"ab{n:x}\"",
         "-e:3:15: measure: expected a form such as 6, 06, .2, <20 or 8.3, got \"x\""},
        {"measure \"{n}\u00e9\"", "-e:1:13: measure: character 4 of text is \"\u00e9\"; only the "
                                  "codes 1 to 127 can be drawn"},
        {"measure \"{meta}\"", "-e:1:11: measure: write {meta:KEY[:FORM]}"},
        {"measure \"{expr::6}\"", "-e:1:11: measure: write {expr:EXPRESSION[:FORM]}"},
        {"measure \"{n:6x}\"",
         "-e:1:13: measure: expected a form such as 6, 06, .2, <20 or 8.3, got \"6x\""},
        {"measure \"{t:.}\"",
         "-e:1:13: measure: expected a form such as 6, 06, .2, <20 or 8.3, got \".\""},
        {"measure \"{n:201}\"",
         "-e:1:13: measure: expected a form such as 6, 06, .2, <20 or 8.3, got \"201\""},
        {"measure \"{n:.2}\"",
         "-e:1:13: measure: the number of a frame has no places behind the point"},
        {"measure \"{tc:012}\"", "-e:1:14: measure: a text is not filled up with zeros"},
        {"measure \"{meta:title:05}\"", "-e:1:22: measure: a text is not filled up with zeros"},
        {"measure \"{expr:w+:5}\"", "-e:1:18: measure: a value is missing at the end"},
        {"measure \"a {expr: w < 2}\"",
         "-e:1:21: measure: unexpected \"<\"; write lt(a,b) or lte(a,b)"},
    });
}

} // namespace
