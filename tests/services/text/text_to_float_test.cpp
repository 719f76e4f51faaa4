#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "services/text/numbers.h"

namespace {

using services::Text;
using services::textToFloat;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float largest = std::numeric_limits<float>::max();
constexpr float smallest = std::numeric_limits<float>::denorm_min();

struct Row {
    const char* name;
    Text text;
    float value;
};

void expectRow(const Row& row) {
    const float value = textToFloat(row.text);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(row.value), std::bit_cast<std::uint32_t>(value))
        << row.name << ": " << value << " instead of " << row.value;
}

const Row grammarRows[] = {
    {"empty", "", 0.0F},
    {"no number", "abc", 0.0F},
    {"integer", "12", 12.0F},
    {"leading blanks", "  12", 12.0F},
    {"tab is no blank", "\t12", 0.0F},
    {"plus", "+2.5", 2.5F},
    {"minus", "-2.5", -2.5F},
    {"two signs", "+-2.5", 0.0F},
    {"blank behind the sign", "- 2.5", 0.0F},
    {"fraction", "0.125", 0.125F},
    {"nothing in front of the point", ".5", 0.5F},
    {"nothing behind the point", "5.", 5.0F},
    {"point alone", ".", 0.0F},
    {"sign and point", "-.", 0.0F},
    {"sign alone", "-", 0.0F},
    {"two points", "1.5.5", 1.5F},
    {"comma ends it", "1,5", 1.0F},
    {"exponent", "25e-1", 2.5F},
    {"large E and plus", "1.5E+2", 150.0F},
    {"exponent without digits", "3e", 3.0F},
    {"exponent with a sign only", "3e+", 3.0F},
    {"exponent followed by a letter", "3e1x", 30.0F},
    {"fractional exponent", "3e1.5", 30.0F},
    {"exponent alone", "e5", 0.0F},
    {"point and exponent", ".e5", 0.0F},
    {"hexadecimal prefix", "0x10", 0.0F},
    {"dollar", "$10", 0.0F},
    {"group separator", "1'000", 1.0F},
    {"short word", "inf", 0.0F},
    {"word without sign", "Infinity", 0.0F},
    {"plus infinity", "+Infinity", infinity},
    {"minus infinity", "-Infinity", -infinity},
    {"letter case of infinity", "-iNFINITY", -infinity},
    {"infinity followed by more", "+infinity and more", infinity},
    {"infinity cut short", "+Infinit", 0.0F},
    {"NaN with a sign", "+NaN", 0.0F},
    {"negative zero", "-0", -0.0F},
    {"NUL ends it", Text("1\0002", 3), 1.0F},
};

TEST(TextToFloat, ReadsItsGrammarAndNothingMore) {
    for (const Row& row : grammarRows)
        expectRow(row);
}

TEST(TextToFloat, ReadsNanInAnyLetterCase) {
    for (const char* text : {"NaN", "nan", "NAN", "  nan", "NaN%"})
        EXPECT_TRUE(std::isnan(textToFloat(text))) << text;
    EXPECT_EQ(0.0F, textToFloat("na"));
}

// 1 + 3 * 2^-24 lies in the middle of two floats; the even one is the upper.
const Text middle = "1.000000178813934326171875";
// 1 + 2^-24 likewise; the even one is 1.
const Text lowerMiddle = "1.000000059604644775390625";
constexpr float one = 1.0F;
const float afterOne = std::nextafter(1.0F, 2.0F);
const float afterThat = std::nextafter(afterOne, 2.0F);

TEST(TextToFloat, RoundsOnceFromTheDigitsToThirtyTwoBits) {
    const Row rows[] = {
        {"tie to even, up", middle, afterThat},
        {"tie to even, down", lowerMiddle, one},
        {"a little more than the tie", lowerMiddle + "00000000000000000001", afterOne},
        {"a little less than the tie", "1.00000017881393432617187499999999999999", afterOne},
        {"a trace far behind the tie", lowerMiddle + Text(5000, '0') + "1", afterOne},
        {"zeros behind the tie", lowerMiddle + Text(5000, '0'), one},
    };
    for (const Row& row : rows)
        expectRow(row);
}

// All digits of a number that is a double; the C library writes them exactly.
Text exactText(double value) {
    char text[200];
    std::snprintf(text, sizeof text, "%.150f", value);
    return text;
}

// No numbers have longer decimals than the middles between the smallest normal floats: here 113
// significant digits behind 37 zeros.
TEST(TextToFloat, TheLastOfAHundredAndThirteenDigitsDecides) {
    const double step = smallest;
    const float odd = static_cast<float>(((1 << 24) - 1) * step);
    const float evenAbove = std::nextafter(odd, 1.0F);
    const float evenBelow = std::nextafter(odd, 0.0F);
    const Text upper = exactText(((1 << 24) - 0.5) * step);
    const Text lower = exactText(((1 << 24) - 1.5) * step);
    ASSERT_EQ('5', upper.back());
    ASSERT_EQ(113U, upper.size() - upper.find_first_not_of("0."));
    const Text aLittleLess = upper.substr(0, upper.size() - 1) + "4";
    const Row rows[] = {
        {"tie to even, up", upper, evenAbove},
        {"less by the last digit", aLittleLess, odd},
        {"less by much less", aLittleLess + Text(300, '9'), odd},
        {"more by a digit far behind", upper + Text(300, '0') + "1", evenAbove},
        {"tie to even, down", lower, evenBelow},
        {"down, more by the next digit", lower + "1", odd},
        {"down, more by a digit far behind", lower + Text(300, '0') + "1", odd},
        {"down, zeros behind", lower + Text(300, '0'), evenBelow},
    };
    for (const Row& row : rows)
        expectRow(row);
}

TEST(TextToFloat, BeyondTheRangeLieInfinityAndZero) {
    const Row rows[] = {
        {"largest", "3.4028234663852886e38", largest},
        {"rounds down to the largest", "3.4028235677973366e38", largest},
        {"half a step more", "340282356779733661637539395458142568448", infinity},
        {"too large", "1e39", infinity},
        {"too large, negative", "-1e39", -infinity},
        {"much too large", "1e400", infinity},
        {"exponent beyond 64 bits", "1e99999999999999999999999", infinity},
        {"smallest", "1.4e-45", smallest},
        {"half the smallest goes to even", "7.006492321624085354618e-46", 0.0F},
        {"more than half the smallest", "7.1e-46", smallest},
        {"denormal", "1e-40", 1e-40F},
        {"too small", "1e-60", 0.0F},
        {"too small, negative", "-1e-60", -0.0F},
        {"exponent far below", "1e-99999999999999999999999", 0.0F},
        {"zero with a huge exponent", "0e99999999999999999999999", 0.0F},
    };
    for (const Row& row : rows)
        expectRow(row);
}

TEST(TextToFloat, LongDigitsAndTheirExponentCancelOut) {
    const std::size_t count = 1'000'000;
    const Row rows[] = {
        {"a million zeros behind", "1" + Text(count, '0') + "e-1000000", 1.0F},
        {"a million zeros in front", "0." + Text(count, '0') + "25e1000001", 2.5F},
        {"leading zeros", Text(count, '0') + "7", 7.0F},
        {"a million nines", Text(count, '9'), infinity},
    };
    for (const Row& row : rows)
        expectRow(row);
}

// The C library's conversion is exact too and shares no code with ours.
TEST(TextToFloat, AgreesWithTheCLibrary) {
    std::uint32_t bits = 99;
    char text[64];
    for (int i = 0; i < 20000; ++i) {
        bits = bits * 1664525U + 1013904223U;
        const auto value = std::bit_cast<float>(bits);
        if (!std::isfinite(value)) continue;
        std::snprintf(text, sizeof text, "%.*e", i % 20, static_cast<double>(value));
        expectRow({text, text, std::strtof(text, nullptr)});
        std::snprintf(text, sizeof text, "%.8e", static_cast<double>(value));
        expectRow({text, text, value});
    }
}

}  // namespace
