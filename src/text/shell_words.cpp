#include "text/shell_words.h"

#include <cstddef>

namespace eventsviewer {

std::string shellWord(const std::string& word)
{
    constexpr const char* kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                   "0123456789-_=+,./:@%";
    if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) {
        return word;
    }
    std::string quoted = word;
    for (std::size_t at = 0; (at = quoted.find('\'', at)) != std::string::npos; at += 4) {
        quoted.replace(at, 1, "'\\''");
    }
    return '\'' + quoted + '\'';
}

std::string shellWords(char** begin, char** end)
{
    std::string words;
    for (char** word = begin; word < end; ++word) {
        words += ' ' + shellWord(*word);
    }
    return words;
}

} // namespace eventsviewer
