#include "script/operations/argument_reader.h"

#include <algorithm>

using Kind = Parameter::Kind;

std::vector<Argument> ArgumentReader::readAll() {
    std::vector<Argument> arguments(m_operation.parameters.size());
    for (std::size_t i = 0; i < arguments.size(); ++i)
        if (parameter(i).kind == Kind::Flag)
            i += parameter(i).takes;
        else
            readParameter(i, arguments[i]);
    while (!atEnd())
        readFlag(arguments);
    return arguments;
}

bool ArgumentReader::isLeftOut(std::size_t i) const {
    if (!parameter(i).optional)
        return false;
    const auto& all = m_operation.parameters;
    return atEnd() || std::any_of(all.begin(), all.end(), [this](const Parameter& other) {
               return other.kind == Kind::Flag && isNext(other.name);
           });
}

void ArgumentReader::readFlag(std::vector<Argument>& arguments) {
    std::size_t i = 0;
    while (i < arguments.size() &&
           (parameter(i).kind != Kind::Flag || arguments[i].given || !isNext(parameter(i).name)))
        ++i;
    if (i == arguments.size())
        failUnexpectedNext();
    skip();
    arguments[i].given = true;
    for (std::size_t own = i + 1; own <= i + parameter(i).takes; ++own)
        readParameter(own, arguments[own]);
}
