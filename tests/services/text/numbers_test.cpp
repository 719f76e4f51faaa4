#include "services/text/numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <locale>

namespace {

using services::floatToText;
using services::hexadecimalToNumber;
using services::integerToText;
using services::numberToHexadecimal16;
using services::roundToInt32;
using services::roundToInt64;
using services::Text;
using services::textToInteger;
using services::truncate;
using services::withDecimalComma;

constexpr float floatInfinity = std::numeric_limits<float>::infinity();
constexpr float floatNan = std::numeric_limits<float>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(Numbers, IntegersArePlainDecimalDigits) {
    EXPECT_EQ("0", integerToText(0));
    EXPECT_EQ("1234567", integerToText(1234567));
    EXPECT_EQ("-5", integerToText(-5));
    EXPECT_EQ("9223372036854775807", integerToText(INT64_MAX));
    EXPECT_EQ("-9223372036854775808", integerToText(INT64_MIN));
}

TEST(Numbers, ExactTiesGoToTheEvenDigit) {
    EXPECT_EQ("0.12", floatToText(0.125F, 2));
    EXPECT_EQ("0.38", floatToText(0.375F, 2));
    EXPECT_EQ("0", floatToText(0.5F, 0));
    EXPECT_EQ("2", floatToText(1.5F, 0));
    EXPECT_EQ("2", floatToText(2.5F, 0));
    EXPECT_EQ("-2", floatToText(-2.5F, 0));
    EXPECT_EQ("0.2", floatToText(0.25F, 1));
    EXPECT_EQ("0.8", floatToText(0.75F, 1));
}

TEST(Numbers, TheExactBinaryValueDecidesTheLastDigit) {
    EXPECT_EQ("2.67", floatToText(2.675F, 2));
    EXPECT_EQ("12.35", floatToText(12.345F, 2));
    EXPECT_EQ("0.1000000014901161193847656250", floatToText(0.1F, 28));
}

TEST(Numbers, DecimalsAreClampedTo0And512) {
    EXPECT_EQ("3", floatToText(3.25F, 0));
    EXPECT_EQ("3", floatToText(3.25F, -1));
    EXPECT_EQ("3", floatToText(3.25F, INT32_MIN));
    const Text longest = floatToText(3.25F, INT32_MAX);
    EXPECT_EQ("3.25" + Text(510, '0'), longest);
    EXPECT_EQ(longest, floatToText(3.25F, 512));
}

TEST(Numbers, TheLargestAndTheSmallestFloatFit) {
    const Text largest = "340282346638528859811704183484516925440";
    EXPECT_EQ("-" + largest + "." + Text(512, '0'),
              floatToText(-std::numeric_limits<float>::max(), 512));
    const Text smallest = floatToText(std::numeric_limits<float>::denorm_min(), 512);
    EXPECT_EQ(514U, smallest.size());
    EXPECT_EQ("0." + Text(44, '0') + "14012984643248170", smallest.substr(0, 63));
}

TEST(Numbers, SmallNegativeValuesKeepTheirSign) {
    EXPECT_EQ("-0.00", floatToText(-0.001F, 2));
    EXPECT_EQ("-0", floatToText(-0.4F, 0));
    EXPECT_EQ("0.00", floatToText(0.001F, 2));
}

TEST(Numbers, WhatIsNotFiniteHasWords) {
    EXPECT_EQ("+Infinity", floatToText(floatInfinity, 2));
    EXPECT_EQ("-Infinity", floatToText(-floatInfinity, 2));
    EXPECT_EQ("NaN", floatToText(floatNan, 2));
    EXPECT_EQ("NaN", floatToText(-floatNan, 0));
    EXPECT_EQ("+Infinity", floatToText(floatInfinity));
    EXPECT_EQ("NaN", floatToText(floatNan));
}

TEST(Numbers, WithoutDecimalsGivenTrailingZerosGo) {
    EXPECT_EQ("2.5", floatToText(2.5F));
    EXPECT_EQ("3", floatToText(3.0F));
    EXPECT_EQ("0", floatToText(0.0F));
    EXPECT_EQ("100", floatToText(100.0F));
    EXPECT_EQ("0.1000000015", floatToText(0.1F));
    EXPECT_EQ("0", floatToText(1e-20F));
    EXPECT_EQ("-12.0625", floatToText(-12.0625F));
}

// The C library's conversion is exact too and shares no code with ours.
TEST(Numbers, FloatTextAgreesWithTheCLibrary) {
    std::uint32_t bits = 12345;
    char expected[700];
    for (int i = 0; i < 20000; ++i) {
        bits = bits * 1664525U + 1013904223U;
        const auto value = std::bit_cast<float>(bits);
        if (!std::isfinite(value)) continue;
        const int decimals = i % 40;
        std::snprintf(expected, sizeof expected, "%.*f", decimals, static_cast<double>(value));
        ASSERT_EQ(expected, floatToText(value, decimals)) << bits;
    }
}

struct IntegerRow {
    const char* name;
    Text text;
    std::int64_t number;
};

const IntegerRow integerRows[] = {
    {"empty", "", 0},
    {"blanks", "   ", 0},
    {"plain", "42", 42},
    {"leading blanks", "  42", 42},
    {"plus", "+42", 42},
    {"minus", "-42", -42},
    {"blank behind the sign", "- 42", 0},
    {"two signs", "--42", 0},
    {"digits up to a letter", "12abc", 12},
    {"no digits", "abc", 0},
    {"comma", "1,5", 1},
    {"tab is no blank", "\t7", 0},
    {"hexadecimal, either case", "$fF", 255},
    {"negative hexadecimal", "-$10", -16},
    {"hexadecimal up to another letter", "$1G", 1},
    {"dollar alone", "$", 0},
    {"binary", "%101", 5},
    {"binary up to another digit", "%1012", 5},
    {"0x is no prefix", "0x10", 0},
    {"largest", "9223372036854775807", INT64_MAX},
    {"smallest", "-9223372036854775808", INT64_MIN},
    {"wraps at 64 bits", "18446744073709551617", 1},
    {"hexadecimal of 64 bits", "$FFFFFFFFFFFFFFFF", -1},
    {"hexadecimal wraps", "$10000000000000002", 2},
    {"NUL ends the digits", Text("12\0003", 4), 12},
};

TEST(Numbers, IntegersAreReadUpToTheFirstOtherByte) {
    for (const IntegerRow& row : integerRows)
        EXPECT_EQ(row.number, textToInteger(row.text)) << row.name;
}

TEST(Numbers, TrainingNumbersAreSixteenHexadecimalDigits) {
    EXPECT_EQ("0000000000000000", numberToHexadecimal16(0));
    EXPECT_EQ("00000000000000ab", numberToHexadecimal16(0xAB));
    EXPECT_EQ("ffffffffffffffff", numberToHexadecimal16(UINT64_MAX));
}

TEST(Numbers, HexadecimalIsReadInEitherCaseUpToTheFirstOtherByte) {
    EXPECT_EQ(0xABCDEFU, hexadecimalToNumber("00aBcDeF"));
    EXPECT_EQ(UINT64_MAX, hexadecimalToNumber("ffffffffffffffff"));
    EXPECT_EQ(0x12U, hexadecimalToNumber("12.2"));
    EXPECT_EQ(0xDU, hexadecimalToNumber("dictionary.2"));
    EXPECT_EQ(0U, hexadecimalToNumber(""));
    EXPECT_EQ(0U, hexadecimalToNumber(" 1"));
    EXPECT_EQ(0U, hexadecimalToNumber("-1"));
    EXPECT_EQ(2U, hexadecimalToNumber("10000000000000002"));
}

TEST(Numbers, TruncateCutsTowardZero) {
    EXPECT_EQ(2, truncate(2.9));
    EXPECT_EQ(-2, truncate(-2.9));
    EXPECT_EQ(0, truncate(-0.9));
    EXPECT_EQ(INT32_MAX, truncate(2147483647.9));
    EXPECT_EQ(INT32_MIN, truncate(-2147483648.9));
}

TEST(Numbers, TruncateGivesZeroForWhatDoesNotFit) {
    for (const double value : {nan, infinity, -infinity, 2147483648.0, -2147483649.0, 1e300})
        EXPECT_EQ(0, truncate(value)) << value;
}

TEST(Numbers, RoundingTakesHalvesToTheEvenNeighbour) {
    EXPECT_EQ(0, roundToInt32(0.5));
    EXPECT_EQ(2, roundToInt32(1.5));
    EXPECT_EQ(2, roundToInt32(2.5));
    EXPECT_EQ(0, roundToInt32(-0.5));
    EXPECT_EQ(-2, roundToInt32(-1.5));
    EXPECT_EQ(-2, roundToInt32(-2.5));
    EXPECT_EQ(3, roundToInt32(2.5000000000000004));
    EXPECT_EQ(-3, roundToInt32(-2.5000000000000004));
    EXPECT_EQ(0, roundToInt32(0.49999999999999994));
    EXPECT_EQ(7, roundToInt32(7.4));
    EXPECT_EQ(8, roundToInt32(7.6));
}

TEST(Numbers, RoundingReachesTheLimitsAndGivesZeroBeyond) {
    EXPECT_EQ(INT32_MAX, roundToInt32(2147483647.4));
    EXPECT_EQ(0, roundToInt32(2147483647.5));
    EXPECT_EQ(INT32_MIN, roundToInt32(-2147483648.5));
    EXPECT_EQ(0, roundToInt32(-2147483649.0));
    for (const double value : {nan, infinity, -infinity, 1e300, -1e300}) {
        EXPECT_EQ(0, roundToInt32(value)) << value;
        EXPECT_EQ(0, roundToInt64(value)) << value;
    }
    EXPECT_EQ(4503599627370498, roundToInt64(4503599627370497.5));
    EXPECT_EQ(9223372036854774784, roundToInt64(9223372036854774784.0));
    EXPECT_EQ(0, roundToInt64(9223372036854775808.0));
    EXPECT_EQ(INT64_MIN, roundToInt64(-9223372036854775808.0));
    EXPECT_EQ(-2, roundToInt64(-2.5));
}

TEST(Numbers, RoundingDoesNotDependOnTheRoundingMode) {
    const int before = std::fegetround();
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::fesetround(mode);
        const std::int32_t results[] = {roundToInt32(2.5), roundToInt32(-2.4), roundToInt32(7.6),
                                        roundToInt32(-0.5)};
        std::fesetround(before);
        EXPECT_EQ(2, results[0]);
        EXPECT_EQ(-2, results[1]);
        EXPECT_EQ(8, results[2]);
        EXPECT_EQ(0, results[3]);
    }
}

TEST(Numbers, TheDecimalCommaReplacesEveryPoint) {
    EXPECT_EQ("2,5", withDecimalComma("2.5"));
    EXPECT_EQ("1,2,3", withDecimalComma("1.2.3"));
}

struct CommaAndGroups : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Numbers, NothingLooksAtTheLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const std::locale german(std::locale::classic(), new CommaAndGroups);
    const std::locale previous = std::locale::global(german);
    std::setlocale(LC_ALL, "de_DE.UTF-8");  // where it is installed
    const Text real = floatToText(1234567.5F, 2);
    const Text integer = integerToText(1234567);
    const float read = services::textToFloat("1234.5");
    std::locale::global(previous);
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ("1234567.50", real);
    EXPECT_EQ("1234567", integer);
    EXPECT_EQ(1234.5F, read);
}

}  // namespace
