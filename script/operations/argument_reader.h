// How the arguments of a command follow each other, wherever they come from.
#pragma once

#include "script/operations/operations.h"

#include <string_view>
#include <vector>

class ArgumentReader {
public:
    explicit ArgumentReader(const Operation& operation) : m_operation(operation) {}
    virtual ~ArgumentReader() = default;
    ArgumentReader(const ArgumentReader&) = delete;
    ArgumentReader& operator=(const ArgumentReader&) = delete;

protected:
    // One for each parameter; flags and what belongs to them come behind all others.
    std::vector<Argument> readAll();

    const Operation& operation() const { return m_operation; }
    const Parameter& parameter(std::size_t i) const { return m_operation.parameters[i]; }

    // Whether an optional parameter is, as nothing or a flag comes next.
    bool isLeftOut(std::size_t i) const;

    virtual bool atEnd() const = 0;
    virtual bool isNext(std::string_view word) const = 0;
    virtual void skip() = 0;
    virtual void readParameter(std::size_t i, Argument& argument) = 0;
    [[noreturn]] virtual void failUnexpectedNext() const = 0;

private:
    void readFlag(std::vector<Argument>& arguments);

    const Operation& m_operation;
};
