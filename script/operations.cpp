#include "script/operations.h"

#include "script/operation_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace {

using Kind = Parameter::Kind;

std::vector<Operation> makeOperations() {
    std::vector<Operation> all;
    for (const auto part :
         {stateOperations, lineOperations, curveOperations, areaOperations, textOperations}) {
        std::vector<Operation> more = part();
        std::move(more.begin(), more.end(), std::back_inserter(all));
    }
    return all;
}

std::string upper(std::string_view name) {
    std::string result(name);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return result;
}

std::string show(const Parameter& parameter) {
    switch (parameter.kind) {
    case Kind::Flag:
        return std::string(parameter.name);
    case Kind::Text:
        return fmt::format("\"{}\"", upper(parameter.name));
    case Kind::Points:
        return "X0 Y0 X1 Y1 ...";
    case Kind::Choice:
        return parameter.words.size() > 2 ? upper(parameter.name)
                                          : fmt::format("{}", fmt::join(parameter.words, "|"));
    case Kind::Whole:
    case Kind::Number:
        break;
    }
    std::string result = upper(parameter.name);
    for (const auto word : parameter.words)
        result += fmt::format("|{}", word);
    return result;
}

} // namespace

const std::vector<Operation>& operations() {
    static const std::vector<Operation> table = makeOperations();
    return table;
}

std::string usage(const Operation& operation) {
    std::string result(operation.name);
    for (const Parameter& parameter : operation.parameters)
        result +=
            parameter.optional ? fmt::format(" [{}]", show(parameter)) : ' ' + show(parameter);
    return result;
}

std::string listOperations() {
    std::string result;
    for (const Operation& operation : operations())
        fmt::format_to(std::back_inserter(result), "  {:<38} {}\n", usage(operation),
                       operation.help);
    return result;
}
