#pragma once

#include <string>

namespace eventsviewer {

/// `word` as a shell takes it for one word.
std::string shellWord(const std::string& word);

/// All words from `begin` to `end`, with a space before each.
std::string shellWords(char** begin, char** end);

} // namespace eventsviewer
