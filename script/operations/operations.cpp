#include "script/operations/operations.h"

#include "script/operations/operation_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace {

using Kind = Parameter::Kind;

std::vector<Operation> makeOperations() {
    std::vector<Operation> all;
    for (const auto part : {stateOperations, lineOperations, curveOperations, areaOperations,
                            textOperations, pictureOperations, placeOperations, flowOperations}) {
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
    case Kind::Sign:
        return std::string(parameter.name);
    case Kind::Text:
        return fmt::format("\"{}\"", upper(parameter.name));
    case Kind::Points:
        return "X0 Y0 X1 Y1 ...";
    case Kind::Choice:
        // Words that stand for a place are few and short; others are told by the help.
        return parameter.words.size() > 3 ? upper(parameter.name)
                                          : fmt::format("{}", fmt::join(parameter.words, "|"));
    case Kind::Whole:
    case Kind::Number:
    case Kind::File:
    case Kind::Variable:
    case Kind::TimeCode:
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

const Operation* operationNamed(std::string_view name) {
    const auto& table = operations();
    const auto found = std::find_if(table.begin(), table.end(), [name](const Operation& operation) {
        return operation.name == name;
    });
    return found != table.end() ? &*found : nullptr;
}

std::vector<std::string> operationNames() {
    std::vector<std::string> names;
    for (const Operation& operation : operations())
        names.emplace_back(operation.name);
    return names;
}

std::string usage(const Operation& operation) {
    std::string result(operation.name);
    const std::vector<Parameter>& parameters = operation.parameters;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        std::string shown = show(parameters[i]);
        const bool optional = parameters[i].optional;
        for (std::size_t own = parameters[i].takes; own > 0; --own)
            shown += ' ' + show(parameters[++i]);
        result += optional ? fmt::format(" [{}]", shown) : ' ' + shown;
    }
    return result;
}
