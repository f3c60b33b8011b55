#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace eventsviewer {

/// The lines of the data file `name` (relative to the tests' folder), split at each `separator`.
/// Two characters "\n" in a field stand for a line feed.
inline std::vector<std::vector<std::string>> readDataFile(const std::string& name, char separator)
{
    std::ifstream file(TESTS_FOLDER "/" + name);
    if (!file.good()) {
        throw std::runtime_error("cannot read " + name);
    }
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(file, line);) {
        std::vector<std::string> fields;
        std::istringstream rest(line);
        for (std::string field; std::getline(rest, field, separator);) {
            for (auto at = field.find("\\n"); at != std::string::npos; at = field.find("\\n", at)) {
                field.replace(at, 2, "\n");
            }
            fields.push_back(field);
        }
        rows.push_back(fields);
    }
    return rows;
}

} // namespace eventsviewer
