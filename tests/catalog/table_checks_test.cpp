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
    std::int32_t value;
    const char* name;
    const char* explanation;
};

TEST(ValuesCountFromZero, AcceptsNoGapAndNoOtherStart)
{
    static constexpr ReasonRow kCounting[] = {{0, "A", ""}, {1, "B", ""}, {2, "C", ""}};
    static constexpr ReasonRow kFromOne[] = {{1, "A", ""}, {2, "B", ""}};
    static constexpr ReasonRow kOnlyTheFirstWrong[] = {{1, "A", ""}, {1, "B", ""}};
    static constexpr ReasonRow kGap[] = {{0, "A", ""}, {1, "B", ""}, {3, "C", ""}};
    EXPECT_TRUE(valuesCountFromZero(kCounting));
    EXPECT_FALSE(valuesCountFromZero(kFromOne));
    EXPECT_FALSE(valuesCountFromZero(kOnlyTheFirstWrong));
    EXPECT_FALSE(valuesCountFromZero(kGap));
}

TEST(NamesAreIdentifiers, AcceptsOnlyCapitalsDigitsAndUnderscores)
{
    static constexpr ReasonRow kGood[] = {{0, "AZ_09", ""}, {1, "_", ""}};
    EXPECT_TRUE(namesAreIdentifiers(kGood));
    for (const char* const name : {"", "Az", "A B", "A ", "A-B", "A@", "A[", "A/", "A:"}) {
        const ReasonRow rows[] = {{0, "AZ_09", ""}, {1, name, ""}};
        EXPECT_FALSE(namesAreIdentifiers(rows)) << name;
    }
}

TEST(NamesAreUnique, NoticesARepeatedName)
{
    static constexpr ReasonRow kDifferent[] = {{0, "A", ""}, {1, "AB", ""}, {2, "B", ""}};
    static constexpr ReasonRow kFirstRepeated[] = {{0, "A", ""}, {1, "B", ""}, {2, "A", ""}};
    static constexpr ReasonRow kSecondRepeated[] = {{0, "A", ""}, {1, "B", ""}, {2, "B", ""}};
    EXPECT_TRUE(namesAreUnique(kDifferent));
    EXPECT_FALSE(namesAreUnique(kFirstRepeated));
    EXPECT_FALSE(namesAreUnique(kSecondRepeated));
}

TEST(ExplanationsArePresent, NoticesAnEmptyOne)
{
    static constexpr ReasonRow kPresent[] = {{0, "A", "a"}, {1, "B", "b"}};
    static constexpr ReasonRow kEmpty[] = {{0, "A", "a"}, {1, "B", ""}};
    EXPECT_TRUE(explanationsArePresent(kPresent));
    EXPECT_FALSE(explanationsArePresent(kEmpty));
}

} // namespace
} // namespace eventsviewer
