// The words that may stand for a value, by the name that its options give it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct Word {
    std::string text;
    std::string help; // may be empty
};

struct ValueWords {
    std::string name;
    std::vector<Word> words;
    bool goesOn = false;  // more of the value follows the word
    std::string end = {}; // what then stands behind the word
};

// Of all names that stand for words of a table.
const std::vector<ValueWords>& valueWords();

// The words of a name such as "all|av|v"; nothing for any other one.
std::vector<std::string> choicesIn(const std::string& valueName);
