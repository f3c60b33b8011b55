#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace eventsviewer::jsonaccess {

/// What a strict parser (RFC 8259) refuses.
enum class Fault { None, CutOff, Syntax, ZeroBytes, NotUtf8, TooDeep };

enum class JsonType { Text, WholeNumber, Real, Literal, Array, Object };

/// A member of an object that may be damaged, as spans of its text.
struct ScannedMember {
    std::string_view key;   ///< as written, without the quotes
    std::string_view value; ///< as written; a string without its quotes
    JsonType type = JsonType::Text;
    bool isInner = false;         ///< of an object that is a value of the object
    bool isRead = false;          ///< whether it comes before the place where the scan stopped
    Fault keyFault = Fault::None; ///< within the key
    Fault fault = Fault::None;    ///< within the value
};

/// What a scan of an object finds.
struct ObjectScan {
    std::vector<ScannedMember> members;
    Fault fault = Fault::None; ///< the first one in the text
    Fault stop = Fault::None;  ///< what kept the scan from the object's end
    std::size_t end = 0;       ///< the end of the object, or where the scan stopped
    std::size_t lastToken = 0; ///< the beginning of the last string or number before `end`
};

/// Scans the object at the beginning of `text` up to its end, or to a byte that cannot be in its
/// place. Faults within a string or number, and comments, do not stop the scan.
void scanObject(std::string_view text, ObjectScan& scan);

/// Adds what looks like members in `text`, whatever is around them. They are not read.
void findMembers(std::string_view text, ObjectScan& scan);

} // namespace eventsviewer::jsonaccess
