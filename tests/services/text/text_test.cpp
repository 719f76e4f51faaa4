#include "services/text/text.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using services::concatenate;
using services::equal;
using services::find;
using services::left;
using services::length;
using services::lowerCase;
using services::replace;
using services::right;
using services::rightAlign;
using services::Text;
using services::TextView;

TEST(Text, ConcatenateJoinsTextsAndSingleCharacters) {
    EXPECT_EQ("a-b\xE4", concatenate("a", '-', TextView("b"), Text("\xE4")));
    EXPECT_EQ("", concatenate());
}

TEST(Text, LengthCountsBytesAndAnAbsentTextHasNone) {
    EXPECT_EQ(0, length({}));
    EXPECT_EQ(2, length("\xE4\xF6"));
}

TEST(Text, LeftAndRightClampTheirCount) {
    EXPECT_EQ("abc", left("abc", 5));
    EXPECT_EQ("ab", left("abc", 2));
    EXPECT_EQ("", left("abc", 0));
    EXPECT_EQ("", left("abc", -1));
    EXPECT_EQ("", left("abc", INT64_MIN));
    EXPECT_EQ("", left({}, 3));
    EXPECT_EQ("abc", right("abc", 5));
    EXPECT_EQ("bc", right("abc", 2));
    EXPECT_EQ("", right("abc", -1));
    EXPECT_EQ("abc", right("abc", INT64_MAX));
    EXPECT_EQ("", right({}, 3));
}

TEST(Text, FindCountsFromOneAndGivesZeroForNone) {
    EXPECT_EQ(1, find("abcabc", "abc"));
    EXPECT_EQ(4, find("abcabc", "abc", 2));
    EXPECT_EQ(4, find("abcabc", "abc", 4));
    EXPECT_EQ(0, find("abcabc", "abc", 5));
    EXPECT_EQ(0, find("abc", "d"));
    EXPECT_EQ(3, find("abc", "c", 3));
}

TEST(Text, FindStartsAtOneForALowerStartAndFindsNothingBehindTheEnd) {
    EXPECT_EQ(1, find("abc", "a", 0));
    EXPECT_EQ(1, find("abc", "a", -7));
    EXPECT_EQ(1, find("abc", "a", INT64_MIN));
    EXPECT_EQ(0, find("abc", "c", 4));
    EXPECT_EQ(0, find("abc", "c", INT64_MAX));
    EXPECT_EQ(0, find({}, "a"));
}

TEST(Text, AnEmptySearchIsFoundNowhere) {
    EXPECT_EQ(0, find("abc", ""));
    EXPECT_EQ(0, find("", ""));
}

TEST(Text, ReplaceTakesEveryOccurrenceFromTheLeft) {
    EXPECT_EQ("1,234,5", replace("1.234.5", ".", ","));
    EXPECT_EQ("Xa", replace("aaa", "aa", "X"));
    EXPECT_EQ("", replace("abab", "ab", ""));
    EXPECT_EQ("none", replace("none", "x", "y"));
}

TEST(Text, ReplaceDoesNotLookAgainAtWhatItPutIn) {
    EXPECT_EQ("aaaa", replace("aa", "a", "aa"));
    EXPECT_EQ("aab", replace("aabb", "ab", "a"));
}

TEST(Text, ReplacingAnEmptySearchChangesNothing) {
    EXPECT_EQ("abc", replace("abc", "", "x"));
}

TEST(Text, LowerCaseTouchesTheEnglishLettersOnly) {
    EXPECT_EQ("abz@[`{09\xC4\xD6", lowerCase("ABZ@[`{09\xC4\xD6"));
}

TEST(Text, RightAlignPadsOnTheLeft) {
    EXPECT_EQ("  7", rightAlign("7", 3));
    EXPECT_EQ("007", rightAlign("7", 3, '0'));
    EXPECT_EQ("   ", rightAlign({}, 3));
    EXPECT_EQ("123", rightAlign("123", 3));
}

TEST(Text, RightAlignCutsALongerTextToItsFirstBytes) {
    EXPECT_EQ("123", rightAlign("12345", 3));
    EXPECT_EQ("", rightAlign("12345", 0));
    EXPECT_EQ("", rightAlign("12345", -1));
    EXPECT_EQ("", rightAlign("12345", INT64_MIN));
}

TEST(Text, EqualComparesBytesAndAbsentEqualsEmpty) {
    EXPECT_TRUE(equal("abc", "abc"));
    EXPECT_FALSE(equal("abc", "Abc"));
    EXPECT_FALSE(equal("abc", "ab"));
    EXPECT_TRUE(equal({}, ""));
    EXPECT_FALSE(equal(TextView("a\0b", 3), TextView("a\0c", 3)));
}

}  // namespace
