#include "manuals/values.h"

#include "common/layout_names.h"
#include "common/mux_modes.h"
#include "common/setting_names.h"
#include "common/wipe_names.h"
#include "option_values.h"
#include "script/operations/operations.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace {

template <class Rows, class WordOf>
std::vector<Word> wordsOf(const Rows& rows, WordOf wordOf) {
    std::vector<Word> words;
    std::transform(std::begin(rows), std::end(rows), std::back_inserter(words), wordOf);
    return words;
}

std::vector<ValueWords> makeValueWords() {
    const auto named = [](const auto& row) { return Word{std::string(row.name), row.help}; };
    const std::vector<Word> settings = wordsOf(settingKeys(), named);
    return {
        {valueName::layout, wordsOf(zrLayouts,
                                    [](const zrLayout& layout) {
                                        return Word{layoutName(layout), layout.memory};
                                    })},
        {valueName::transition, wordsOf(namedWipes(), named)},
        {valueName::mode, wordsOf(muxModeNames(), named)},
        {valueName::setting, settings},
        {valueName::assignment, settings, true, "="},
        {valueName::commands, wordsOf(operations(), named), true},
    };
}

} // namespace

const std::vector<ValueWords>& valueWords() {
    static const std::vector<ValueWords> all = makeValueWords();
    return all;
}

// Names of what is to be put in have capitals.
std::vector<std::string> choicesIn(const std::string& valueName) {
    std::vector<std::string> choices;
    const bool words = std::none_of(valueName.begin(), valueName.end(),
                                    [](unsigned char c) { return std::isupper(c); });
    if (!words || valueName.find(choiceMark) == valueName.npos)
        return choices;
    std::istringstream stream(valueName);
    for (std::string word; std::getline(stream, word, choiceMark);)
        choices.push_back(word);
    return choices;
}
