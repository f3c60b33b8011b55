#pragma once

#include "vocabulary/vocabulary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace eventsviewer::vocabulary {

inline std::string keyOf(const EventName& event)
{
    return std::to_string(event.code);
}

inline std::string keyOf(const Reason& reason)
{
    return reason.table + ' ' + reason.name;
}

inline std::string keyOf(const Description& description)
{
    return std::to_string(description.code);
}

/// Expects that a table of the program has the rows of a file of the second copy, in the same order
/// and no other. A failure says which row to add to which file; `asSource` writes a row as the
/// program's source has it.
template <typename Row, typename AsSource>
void expectSameRows(const std::vector<Row>& inSource, const std::string& sourceFile,
                    AsSource asSource, const std::vector<Row>& inList, const std::string& listFile)
{
    const auto find = [](const std::vector<Row>& rows, const Row& wanted) {
        return std::find_if(rows.begin(), rows.end(),
                            [&](const Row& row) { return keyOf(row) == keyOf(wanted); });
    };
    bool haveSameKeys = true;
    for (const Row& row : inSource) {
        const auto listed = find(inList, row);
        if (listed == inList.end()) {
            ADD_FAILURE() << listFile << " lacks what " << sourceFile << " has. Add the row\n"
                          << asRow(row);
            haveSameKeys = false;
        } else if (asRow(row) != asRow(*listed) || asSource(row) != asSource(*listed)) {
            ADD_FAILURE() << "The copies differ. Either " << sourceFile << " needs the row\n"
                          << asSource(*listed) << "\nor " << listFile << " needs the row\n"
                          << asRow(row);
        }
    }
    for (const Row& row : inList) {
        if (find(inSource, row) == inSource.end()) {
            ADD_FAILURE() << sourceFile << " lacks what " << listFile << " has. Add the row\n"
                          << asSource(row);
            haveSameKeys = false;
        }
    }
    for (std::size_t i = 0; haveSameKeys && i < inSource.size(); ++i) {
        EXPECT_EQ(keyOf(inList[i]), keyOf(inSource[i]))
            << "The order of the rows differs in " << listFile << " and " << sourceFile;
    }
}

} // namespace eventsviewer::vocabulary
