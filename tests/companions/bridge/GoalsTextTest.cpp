#include "GoalsText.h"

#include <gtest/gtest.h>

namespace tarne::test {
namespace {

std::string repeated(std::string_view text, int count) {
    std::string all;
    for (int number = 0; number < count; ++number)
        all += text;
    return all;
}

TEST(ToldGoals, AreTheGoalsThemselves) {
    EXPECT_EQ(toldGoals("Write the report, naïve 日本語 👩‍👩‍👧"),
              "Write the report, naïve 日本語 👩‍👩‍👧");
    EXPECT_EQ(toldGoals(""), "");
}

TEST(ToldGoals, HaveBlanksForControlCharacters) {
    EXPECT_EQ(toldGoals("a\nb\tc\x1b[31md\u2028e\u0085f"), "a b c [31md e f");
    EXPECT_EQ(toldGoals(std::string_view("a\0b", 3)), "a b");
}

/// Not compared by EXPECT_EQ, which would print them.
bool areTold(const std::string &goals, const std::string &told) {
    return toldGoals(goals) == told;
}

TEST(ToldGoals, AreCutAt2000UnitsBetweenGraphemes) {
    const std::string start = repeated("x", 1999);
    EXPECT_TRUE(areTold(start + "yz", start + "y"));
    // Two units, one grapheme.
    EXPECT_TRUE(areTold(start + "😀z", start));
    EXPECT_TRUE(areTold(start + "e\u0301z", start));
    EXPECT_TRUE(areTold(start.substr(1) + "e\u0301z", start.substr(1) + "e\u0301"));
    // Five characters, eight units, one grapheme.
    EXPECT_TRUE(areTold(start.substr(4) + "👩‍👩‍👧", start.substr(4)));
    EXPECT_TRUE(
        areTold(start.substr(7) + "👩‍👩‍👧z", start.substr(7) + "👩‍👩‍👧"));
    EXPECT_TRUE(areTold(repeated("日", 3000), repeated("日", 2000)));
}

TEST(ToldGoals, OfAMegabyteAreCutAtOnce) {
    EXPECT_EQ(toldGoals(repeated("goal ", 200'000)).size(), 2000u);
    // One grapheme without an end.
    EXPECT_EQ(toldGoals("e" + repeated("\u0301", 500'000)), "");
}

TEST(Words, AreLettersAndDigitsOfAnyScript) {
    for (const char *goals : {"a", "7", "…é…", "日本", "٣", "Ω", "½"})
        EXPECT_TRUE(holdWords(goals)) << goals;
    for (const char *goals : {"", " ", ",", "...", "😀", "—", "\u0301", "$", "_"})
        EXPECT_FALSE(holdWords(goals)) << goals;
}

TEST(ValidUtf8, IsToldFromOtherBytes) {
    EXPECT_TRUE(isValidUtf8("naïve 😀"));
    EXPECT_FALSE(isValidUtf8("\xff"));
    EXPECT_FALSE(isValidUtf8("cut \xc3"));
    EXPECT_FALSE(isValidUtf8("\xed\xa0\x80"));
}

} // namespace
} // namespace tarne::test
