// Finds what is wrong with an expression, which libavutil does not tell.
#pragma once

#include "script/language/expression.h"

struct ExpressionFacts {
    bool isConstant = true;
    bool usesPeaks = false;
};

// Throws a PartError.
ExpressionFacts checkExpression(std::string_view text, const Names& names);
