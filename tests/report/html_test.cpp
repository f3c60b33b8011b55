#include "report/html.h"

#include <gtest/gtest.h>

#include <string>

namespace eventsviewer {
namespace {

TEST(Html, EscapesWhatAPageTakesForItsOwn)
{
    EXPECT_EQ("&lt;/script&gt;&lt;a b=&quot;c&quot; d=&#39;e&#39;&gt; &amp;amp;",
              html("</script><a b=\"c\" d='e'> &amp;"));
}

TEST(Html, KeepsLinesAndCharacters)
{
    EXPECT_EQ("one\n\ntw\xc3\xb6\n", html("one\n\ntw\xc3\xb6\n"));
    EXPECT_EQ("", html(""));
}

TEST(Html, WritesWhatIsNotTextAsAnEscape)
{
    EXPECT_EQ("a\\x00b\\x0d", html(std::string("a\0b\r", 4)));
    EXPECT_EQ("\\u202e\\u2028\\u0085", html("\u202e\u2028\u0085"));
    EXPECT_EQ("\\xed\\xa0\\x80\\xff\\xc3", html("\xed\xa0\x80\xff\xc3"));
}

} // namespace
} // namespace eventsviewer
