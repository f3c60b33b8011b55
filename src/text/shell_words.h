#pragma once

#include <string>

namespace eventsviewer {

/// `word` as a shell takes it for one word.
std::string shellWord(const std::string& word);

} // namespace eventsviewer
