// Commands that set variables, and choose on which frames others are run.
#include "script/operations/operation_rows.h"

#include <limits>

using namespace rows;

namespace {

constexpr double anything = std::numeric_limits<double>::max();

Parameter value(std::string_view name) {
    return {Kind::Number, name, -anything, anything};
}

// The runner does all there is to do.
int nothing(Scene&, const Arguments&) {
    return 0;
}

} // namespace

std::vector<Operation> flowOperations() {
    using Flow = Operation::Flow;
    const auto row = [](std::string_view name, Parameters parameters, std::string help, Flow flow) {
        Operation operation{name, std::move(parameters), std::move(help), nothing};
        operation.flow = flow;
        return operation;
    };
    return {
        row("let", {{Kind::Variable, "x"}, {Kind::Sign, "="}, value("expression")},
            "a variable for expressions, up to the end of its block", Flow::Let),
        row("when", {value("condition")}, "what follows up to end, where it is not 0", Flow::Open),
        row("from", {{Kind::TimeCode, "tc0"}, {Kind::Sign, "to"}, {Kind::TimeCode, "tc1"}},
            "what follows up to end, from one time code up to but excluding another", Flow::Open),
        row("end", {}, "end of what when or from began", Flow::Close),
    };
}
