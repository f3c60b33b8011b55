#include "text/form.h"

#include <gtest/gtest.h>

#include <string>

namespace eventsviewer {
namespace {

std::string escaped(std::string_view text)
{
    return '[' + std::string(text) + ']';
}

std::string filled(std::string_view form, const FormValues& values)
{
    std::string out;
    fillForm(out, form, values, escaped);
    return out;
}

TEST(FillForm, EscapesTheValuesOfNames)
{
    EXPECT_EQ("a [1] b [2]", filled("a {{one}} b {{two}}", {{"two", "2"}, {"one", "1"}}));
}

TEST(FillForm, PutsTheValueOfAPartInItsPlace)
{
    EXPECT_EQ("<ul><li></ul>", filled("<ul><!--row-->{{x}}<!--/row--></ul>", {{"row", "<li>"}}));
}

TEST(FillForm, LeavesTheValuesAsTheyAre)
{
    EXPECT_EQ("[{{b}}<!--b-->]{{b}}<!--b-->",
              filled("{{a}}<!--p--><!--/p-->",
                     {{"a", "{{b}}<!--b-->"}, {"b", "x"}, {"p", "{{b}}<!--b-->"}}));
}

TEST(FillForm, LeavesOutWhatHasNoValue)
{
    EXPECT_EQ("ab", filled("a{{x}}<!--y-->z<!--/y-->b", {}));
}

TEST(PartOf, IsWhatIsBetweenItsMarks)
{
    EXPECT_EQ("<b>{{x}}</b>", partOf("a<!--p--><b>{{x}}</b><!--/p-->c<!--q-->d<!--/q-->", "p"));
    EXPECT_EQ("d", partOf("a<!--p--><b>{{x}}</b><!--/p-->c<!--q-->d<!--/q-->", "q"));
}

} // namespace
} // namespace eventsviewer
