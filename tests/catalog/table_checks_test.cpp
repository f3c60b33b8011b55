#include "catalog/table_checks.h"

#include <gtest/gtest.h>

namespace eventsviewer {
namespace {

struct CodeRow {
    std::int32_t code;
};

TEST(CodesAscend, AcceptsOnlyCodesThatGrowFromRowToRow)
{
    static constexpr CodeRow kGrowing[] = {{-1}, {0}, {7}};
    static constexpr CodeRow kRepeated[] = {{1}, {2}, {2}};
    static constexpr CodeRow kFalling[] = {{1}, {3}, {2}};
    static constexpr CodeRow kFallingAtOnce[] = {{2}, {1}};
    EXPECT_TRUE(codesAscend(kGrowing));
    EXPECT_FALSE(codesAscend(kRepeated));
    EXPECT_FALSE(codesAscend(kFalling));
    EXPECT_FALSE(codesAscend(kFallingAtOnce));
}

struct ReasonRow {
    const char* name;
    const char* explanation;
};

TEST(NamesAreIdentifiers, AcceptsOnlyCapitalsDigitsAndUnderscores)
{
    static constexpr ReasonRow kGood[] = {{"AZ_09", ""}, {"_", ""}};
    EXPECT_TRUE(namesAreIdentifiers(kGood));
    for (const char* const name : {"", "Az", "A B", "A ", "A-B", "A@", "A[", "A/", "A:"}) {
        const ReasonRow rows[] = {{"AZ_09", ""}, {name, ""}};
        EXPECT_FALSE(namesAreIdentifiers(rows)) << name;
    }
}

TEST(NamesAreUnique, NoticesARepeatedName)
{
    static constexpr ReasonRow kDifferent[] = {{"A", ""}, {"AB", ""}, {"B", ""}};
    static constexpr ReasonRow kFirstRepeated[] = {{"A", ""}, {"B", ""}, {"A", ""}};
    static constexpr ReasonRow kSecondRepeated[] = {{"A", ""}, {"B", ""}, {"B", ""}};
    EXPECT_TRUE(namesAreUnique(kDifferent));
    EXPECT_FALSE(namesAreUnique(kFirstRepeated));
    EXPECT_FALSE(namesAreUnique(kSecondRepeated));
}

TEST(ExplanationsArePresent, NoticesAnEmptyOne)
{
    static constexpr ReasonRow kPresent[] = {{"A", "a"}, {"B", "b"}};
    static constexpr ReasonRow kEmpty[] = {{"A", "a"}, {"B", ""}};
    EXPECT_TRUE(explanationsArePresent(kPresent));
    EXPECT_FALSE(explanationsArePresent(kEmpty));
}

} // namespace
} // namespace eventsviewer
