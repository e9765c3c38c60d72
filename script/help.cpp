#include "script/help.h"

#include "script/language/expression.h"
#include "script/language/field_text.h"
#include "script/operations/operations.h"

#include <fmt/format.h>

#include <iterator>

namespace {

constexpr std::size_t usageWidth = 38;

// What has a long name is explained on the next line.
void addRow(std::string& text, std::string_view name, std::string_view help) {
    if (name.size() <= usageWidth)
        fmt::format_to(std::back_inserter(text), "  {:<{}} {}\n", name, usageWidth, help);
    else
        fmt::format_to(std::back_inserter(text), "  {}\n  {:<{}} {}\n", name, "", usageWidth, help);
}

} // namespace

std::string scriptHelp() {
    std::string text = "Commands, one a line or separated by ';', # starts a comment:\n";
    for (const Operation& operation : operations())
        addRow(text, usage(operation), operation.help);

    text += "\nNumbers may be expressions as FFmpeg has them, in single quotes if they hold "
            "blanks. They know\n";
    for (const ConstantName& constant : constantNames)
        addRow(text, constant.name, constant.help);
    addRow(text, fmt::format("{0}1, {0}2, ...", peakName), peakHelp);
    std::string functions;
    for (const FunctionName& function : expressionFunctions())
        functions += fmt::format("{}{}", functions.empty() ? "" : " ", function.name);
    text += fmt::format("and the functions {}.\n", functions);

    text += "\nTexts may hold fields, and {{ for a brace. FORM is such as 6, 06, .2 or <20.\n";
    for (const FieldName& field : textFields())
        addRow(text, fmt::format("{{{}}}", field.usage), field.help);
    return text;
}
