#pragma once

#include "vocabulary/vocabulary.h"

#include <cstdint>
#include <string>
#include <vector>

namespace eventsviewer::reference {

// Events that together show every entry of the vocabulary.

struct Sample {
    std::int32_t code;
    std::string title;     ///< what is special about it
    std::string variables; ///< as JSON text
};

/// - Every code from ten before the first to ten after the last that has a name, and the codes at
///   the ends of what 32 bits hold; without variables.
/// - Each description with all its variables, in the order of the slots; a reason is the first of
///   its table. The same with each variable missing, and with each variable of every JSON type
///   except string.
/// - Each reason in each description that explains it: by its name, and by all namesLike it.
std::vector<Sample> everySample();

/// Strings that are nearly the name of `reason`: in lower case, shortened, lengthened, with a
/// space, its value, nothing, and its explanation.
std::vector<std::string> namesLike(const vocabulary::Reason& reason);

} // namespace eventsviewer::reference
