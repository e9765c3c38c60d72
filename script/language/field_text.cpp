#include "script/language/field_text.h"

#include "common/near_names.h"
#include "common/time_code_text.h"
#include "common/utf8.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <ctime>
#include <optional>
#include <utility>

namespace {

// How a value is written: the part of a field behind its last colon.
struct Form {
    std::string braces = "{}"; // as fmt takes it
    bool hasZeros = false;
    bool hasPrecision = false;
};

constexpr int widest = 200;

// "[<^>][0][WIDTH][.PRECISION]"
std::optional<Form> formIn(std::string_view text) {
    std::size_t at = 0;
    const auto takes = [&](std::string_view characters) {
        const bool found = at < text.size() && characters.find(text[at]) != characters.npos;
        at += found ? 1 : 0;
        return found;
    };
    const auto takeNumber = [&] {
        int number = 0;
        while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0 &&
               number <= widest)
            number = number * 10 + (text[at++] - '0');
        return number <= widest;
    };
    Form form;
    takes("<^>");
    form.hasZeros = takes("0");
    bool isSound = takeNumber();
    form.hasPrecision = takes(".");
    if (form.hasPrecision) {
        const std::size_t digits = at;
        isSound = isSound && takeNumber() && at > digits;
    }
    if (!isSound || at != text.size())
        return std::nullopt;
    form.braces = text.empty() ? "{}" : fmt::format("{{:{}}}", text);
    return form;
}

std::string written(const Form& form, const char* type, double value) {
    std::string braces = form.braces == "{}" ? "{:}" : form.braces;
    braces.insert(braces.size() - 1, type);
    return fmt::format(fmt::runtime(braces), value);
}

std::string today(const std::string& form) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[256];
    return {text, std::strftime(text, sizeof text, form.c_str(), &local)};
}

using Field = std::function<std::string(const TextFacts&)>;

enum class Kind { TimeCode, Number, Time, Date, File, Tag, Value };

constexpr struct Row {
    FieldName name;
    Kind kind;
    bool takesArgument;
} rows[] = {
    {{"tc", "tc[:FORM]", "time code of the frame, with ; for drop-frame"}, Kind::TimeCode, false},
    {{"n", "n[:FORM]", "number of the frame"}, Kind::Number, false},
    {{"t", "t[:FORM]", "seconds since the first frame, with three places"}, Kind::Time, false},
    {{"date", "date[:FORM]", "date of today, or what strftime makes of FORM, such as %H:%M:%S"},
     Kind::Date,
     false},
    {{"file", "file[:FORM]", "name of the file"}, Kind::File, false},
    {{"meta", "meta:KEY[:FORM]", "a tag of the file, such as title; nothing where it has none"},
     Kind::Tag,
     true},
    {{"expr", "expr:EXPRESSION[:FORM]", "value of an expression"}, Kind::Value, true},
};

constexpr auto names = [] {
    std::array<FieldName, std::size(rows)> all{};
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = rows[i].name;
    return all;
}();

} // namespace

// Reads one text; offsets are those of its bytes.
class FieldReader {
public:
    FieldReader(std::string_view text, const Names& known) : m_text(text), m_names(known) {}

    void read(FieldText& result) {
        std::string before;
        while (m_next < m_text.size()) {
            if (m_text[m_next] != '{') {
                before += takeCharacter();
            } else if (m_text.substr(m_next, 2) == "{{") {
                before += '{';
                m_next += 2;
            } else {
                FieldText::Part& part = result.m_parts.emplace_back();
                part.before = std::exchange(before, {});
                part.field = readField();
            }
        }
        result.m_rest = before;
        result.m_usesPeaks = m_usesPeaks;
    }

private:
    [[noreturn]] static void fail(std::size_t offset, std::string message) {
        throw PartError{offset, std::move(message)};
    }

    // The font has glyphs for the codes to 127 only, and 0 would end the text.
    char takeCharacter() {
        const char c = m_text[m_next];
        if (static_cast<unsigned char>(c) - 1U < 127U) {
            ++m_next;
            return c;
        }
        std::size_t end = m_next + 1;
        while (end < m_text.size() && !startsCharacter(m_text[end]))
            ++end;
        const auto number =
            std::count_if(m_text.begin(), m_text.begin() + static_cast<std::ptrdiff_t>(m_next + 1),
                          startsCharacter);
        const std::string shown =
            c == '\0' ? "code 0" : '"' + std::string(m_text.substr(m_next, end - m_next)) + '"';
        fail(m_next, fmt::format("character {} of text is {}; only the codes 1 to 127 can be "
                                 "drawn",
                                 number, shown));
    }

    Field readField() {
        const std::size_t begin = m_next;
        const std::size_t end = m_text.find('}', begin);
        if (end == m_text.npos)
            fail(begin, "the field is not closed: write } behind it, or {{ for a brace");
        const std::string_view inside = m_text.substr(begin + 1, end - begin - 1);
        const std::size_t colon = std::min(inside.find(':'), inside.size());
        const Row& row = rowNamed(inside.substr(0, colon), begin + 1);
        m_next = end + 1;
        std::string_view rest = inside.substr(std::min(colon + 1, inside.size()));
        std::size_t offset = begin + 2 + colon;
        if (row.kind == Kind::Date)
            return date(rest);
        std::string_view argument;
        if (row.takesArgument) {
            const std::size_t last = endOfArgument(row.kind, rest);
            argument = rest.substr(0, last);
            if (argument.empty())
                fail(begin + 1, fmt::format("write {{{}}}", row.name.usage));
            rest = rest.substr(std::min(last + 1, rest.size()));
        }
        const std::size_t formOffset = end - rest.size();
        const std::optional<Form> form = formIn(rest);
        if (!form)
            fail(formOffset, fmt::format("expected a form such as 6, 06, .2, <20 or 8.3, got "
                                         "\"{}\"",
                                         rest));
        return make(row.kind, argument, offset, *form, formOffset);
    }

    // Of a tag's name, which may have colons of its own, where no form stands behind it.
    static std::size_t endOfArgument(Kind kind, std::string_view text) {
        const std::size_t last = text.rfind(':');
        if (kind == Kind::Tag && last != text.npos && !formIn(text.substr(last + 1)))
            return text.size();
        return std::min(kind == Kind::Tag ? last : text.find(':'), text.size());
    }

    static const Row& rowNamed(std::string_view name, std::size_t offset) {
        for (const Row& row : rows)
            if (row.name.name == name)
                return row;
        std::vector<std::string> all;
        for (const Row& row : rows)
            all.emplace_back(row.name.name);
        const std::string near = nearNames(std::string(name), all);
        fail(offset,
             fmt::format("there is no field \"{}\"{}; write {{{{ for a brace", name,
                         !near.empty() ? near
                                       : fmt::format("; the fields are {}", fmt::join(all, ", "))));
    }

    static Field date(std::string_view form) {
        return [form = form.empty() ? std::string("%Y-%m-%d")
                                    : std::string(form)](const TextFacts&) { return today(form); };
    }

    Field make(Kind kind, std::string_view argument, std::size_t offset, const Form& form,
               std::size_t formOffset) {
        const bool isText = kind == Kind::TimeCode || kind == Kind::File || kind == Kind::Tag;
        if (isText && form.hasZeros)
            fail(formOffset, "a text is not filled up with zeros");
        if (kind == Kind::Number && form.hasPrecision)
            fail(formOffset, "the number of a frame has no places behind the point");
        switch (kind) {
        case Kind::TimeCode:
            return [form](const TextFacts& facts) {
                return fmt::format(fmt::runtime(form.braces),
                                   timeCodeText(facts.frame.timeCode, facts.frame.timeCodeType));
            };
        case Kind::Number:
            return [form](const TextFacts& facts) {
                return fmt::format(fmt::runtime(form.braces), facts.frame.number);
            };
        case Kind::Time:
            return [form](const TextFacts& facts) {
                return written(form, form.hasPrecision ? "f" : ".3f", facts.frame.time);
            };
        case Kind::File:
            return [form](const TextFacts& facts) {
                return fmt::format(fmt::runtime(form.braces), facts.stream.file);
            };
        case Kind::Tag:
            return [form, key = std::string(argument)](const TextFacts& facts) {
                const auto found = facts.stream.tags.find(key);
                return fmt::format(fmt::runtime(form.braces),
                                   found != facts.stream.tags.end() ? found->second : "");
            };
        case Kind::Date:
        case Kind::Value:
            break;
        }
        return value(argument, offset, form);
    }

    Field value(std::string_view text, std::size_t offset, const Form& form) {
        std::shared_ptr<const Expression> expression;
        try {
            expression = std::make_shared<Expression>(std::string(text), m_names);
        } catch (const PartError& error) {
            fail(offset + error.offset, error.message);
        }
        m_usesPeaks |= expression->usesPeaks();
        return [expression, form, offset](const TextFacts& facts) {
            const double number = expression->evaluate(facts.values);
            if (!std::isfinite(number))
                fail(offset, "the expression gives no number");
            constexpr double mostExact = 1e15;
            const bool isWhole = number == std::trunc(number) && std::abs(number) < mostExact;
            return written(form, form.hasPrecision ? "f" : isWhole ? ".0f" : "g", number);
        };
    }

    std::string_view m_text;
    const Names& m_names;
    std::size_t m_next = 0;
    bool m_usesPeaks = false;
};

std::span<const FieldName> textFields() {
    return names;
}

FieldText::FieldText(std::string_view text, const Names& known) {
    FieldReader(text, known).read(*this);
}

void FieldText::write(const TextFacts& facts, std::string& to) const {
    to.clear();
    for (const Part& part : m_parts) {
        to += part.before;
        to += drawableText(part.field(facts));
    }
    to += m_rest;
}
