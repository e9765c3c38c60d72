#include "script/lua/lua_arguments.h"

#include "common/utf8.h"
#include "script/language/script_file.h"
#include "script/language/statement_reader.h"
#include "script/operations/argument_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <lauxlib.h>

namespace {

using Kind = Parameter::Kind;

class CallReader : public ArgumentReader {
public:
    CallReader(lua_State* lua, const Operation& what, const std::string& folder)
        : ArgumentReader(what), m_lua(lua), m_folder(folder), m_last(lua_gettop(lua)) {}

    LuaArguments read() {
        Arguments arguments(readAll());
        return {std::move(arguments), m_held};
    }

private:
    bool atEnd() const override { return m_next > m_last; }
    bool isNext(std::string_view word) const override { return textAt(m_next) == word; }
    void skip() override { ++m_next; }

    [[noreturn]] void failUnexpectedNext() const override {
        fail(fmt::format("unexpected {}; write {}", shown(m_next), usage(operation())));
    }

    [[noreturn]] void fail(const std::string& message) const {
        luaL_error(m_lua, "%s: %s", std::string(operation().name).c_str(), message.c_str());
        std::abort(); // never comes here
    }

    std::string shown(int index) const {
        const int type = lua_type(m_lua, index);
        if (type == LUA_TSTRING)
            return fmt::format("\"{}\"", lua_tostring(m_lua, index));
        if (type == LUA_TNUMBER)
            return fmt::format("{:g}", lua_tonumber(m_lua, index));
        return lua_typename(m_lua, type);
    }

    [[noreturn]] void failUnexpected(const Parameter& expected, const std::string& name,
                                     int index) const {
        fail(fmt::format("expected {} for {}, got {}", expectation(expected), name, shown(index)));
    }

    std::string_view textAt(int index) const {
        if (lua_type(m_lua, index) != LUA_TSTRING)
            return {};
        std::size_t length = 0;
        const char* text = lua_tolstring(m_lua, index, &length);
        return {text, length};
    }

    void readParameter(std::size_t i, Argument& argument) override {
        const Parameter& expected = parameter(i);
        if (expected.kind == Kind::Points)
            return readPoints(expected, argument);
        if (isLeftOut(i))
            return;
        const int index = m_next++;
        if (index <= m_last && lua_isnil(m_lua, index) && expected.optional)
            return;
        if (index > m_last)
            fail(fmt::format("{} is missing; write {}", expected.name, usage(operation())));
        argument.given = true;
        const std::string_view text = textAt(index);
        const auto word = std::find(expected.words.begin(), expected.words.end(), text);
        if (expected.kind == Kind::Text || expected.kind == Kind::File) {
            if (lua_type(m_lua, index) != LUA_TSTRING && lua_type(m_lua, index) != LUA_TNUMBER)
                failUnexpected(expected, std::string(expected.name), index);
            const std::string given = lua_tostring(m_lua, index);
            argument.text =
                expected.kind == Kind::Text ? drawableText(given) : besideScript(m_folder, given);
        } else if (word != expected.words.end() && !text.empty()) {
            argument.word = static_cast<std::size_t>(word - expected.words.begin());
        } else {
            argument.number = readNumber(expected, std::string(expected.name), index);
        }
    }

    double readNumber(const Parameter& expected, const std::string& name, int index) {
        const bool isNumber =
            lua_type(m_lua, index) == LUA_TNUMBER && expected.kind != Kind::Choice;
        const double value = isNumber ? lua_tonumber(m_lua, index) : 0;
        if (!isNumber || !std::isfinite(value))
            failUnexpected(expected, name, index);
        const double held = std::clamp(value, expected.low, expected.high);
        if (held != value && m_held.empty())
            m_held = fmt::format("{}: expected {} for {}, got {:g}: it is held at {:g}",
                                 operation().name, expectation(expected), name, value, held);
        return held;
    }

    // One behind the other, or all in a table.
    void readPoints(const Parameter& expected, Argument& argument) {
        argument.given = true;
        if (!atEnd() && lua_istable(m_lua, m_next)) {
            const auto count = static_cast<lua_Integer>(lua_rawlen(m_lua, m_next));
            for (lua_Integer k = 1; k <= count; ++k) {
                lua_geti(m_lua, m_next, k);
                takeCoordinate(expected, argument, lua_gettop(m_lua));
                lua_pop(m_lua, 1);
            }
            ++m_next;
        } else {
            while (!atEnd())
                takeCoordinate(expected, argument, m_next++);
        }
        const std::size_t numbers = argument.coordinates.size();
        if (numbers < 4 || numbers % 2 != 0)
            fail(fmt::format("expected pairs of numbers for two or more points, got {} number{}",
                             numbers, numbers == 1 ? "" : "s"));
        argument.points.resize(numbers / 2);
    }

    void takeCoordinate(const Parameter& expected, Argument& argument, int index) {
        const std::size_t k = argument.coordinates.size();
        argument.coordinates.push_back(
            readNumber(expected, fmt::format("{}{}", k % 2 == 0 ? 'x' : 'y', k / 2), index));
    }

    lua_State* m_lua;
    const std::string& m_folder;
    int m_last;
    int m_next = 2;
    std::string m_held;
};

} // namespace

LuaArguments readLuaArguments(lua_State* lua, const Operation& operation,
                              const std::string& folder) {
    return CallReader(lua, operation, folder).read();
}
