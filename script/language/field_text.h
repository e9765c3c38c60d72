// Texts with fields in braces, which each frame fills in.
#pragma once

#include "script/frame_facts.h"
#include "script/language/expression.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct FieldName {
    std::string_view name;
    std::string_view usage; // with its arguments, without the braces
    std::string_view help;
};

std::span<const FieldName> textFields();

// What texts are filled in with.
struct TextFacts {
    const StreamFacts& stream;
    const FrameFacts& frame;
    const Values& values;
};

class FieldText {
public:
    // Throws a PartError.
    FieldText(std::string_view text, const Names& names);

    // Has no field.
    bool isConstant() const { return m_parts.empty(); }
    bool usesPeaks() const { return m_usesPeaks; }

    // Replaces a text by this one of a frame, in what the font has. Throws a PartError where an
    // expression gives no number.
    void write(const TextFacts& facts, std::string& to) const;

    // The end of it, behind the last field; the whole text where there is none.
    const std::string& rest() const { return m_rest; }

private:
    friend class FieldReader;
    struct Part {
        std::string before;
        std::function<std::string(const TextFacts&)> field;
    };
    std::vector<Part> m_parts;
    std::string m_rest;
    bool m_usesPeaks = false;
};
