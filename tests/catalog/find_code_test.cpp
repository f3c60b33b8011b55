#include "catalog/find_code.h"

#include <gtest/gtest.h>

namespace eventsviewer {
namespace {

struct Row {
    std::int32_t code;
    char letter;
};

constexpr Row kRows[] = {{-7, 'a'}, {3, 'b'}, {4, 'c'}, {9, 'd'}};

TEST(FindCode, FindsEveryRow)
{
    for (const Row& row : kRows) {
        EXPECT_EQ(&row, findCode(kRows, row.code));
    }
}

TEST(FindCode, FindsNothingForAMissingCode)
{
    for (const std::int32_t code : {INT32_MIN, -8, -6, 0, 2, 5, 8, 10, INT32_MAX}) {
        EXPECT_EQ(nullptr, findCode(kRows, code)) << code;
    }
}

TEST(FindCode, SearchesATableOfOneRow)
{
    static constexpr Row kRow[] = {{5, 'x'}};
    EXPECT_EQ(nullptr, findCode(kRow, 4));
    EXPECT_EQ(&kRow[0], findCode(kRow, 5));
    EXPECT_EQ(nullptr, findCode(kRow, 6));
}

} // namespace
} // namespace eventsviewer
