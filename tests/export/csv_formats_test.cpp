#include "export/csv_formats.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace {

using exporting::AsStored;
using exporting::DateAndTime;
using exporting::Duration;
using exporting::Fixed;
using exporting::Integer;
using exporting::RoundedInteger;

using Whole = Fixed<0, '.'>;
using OneComma = Fixed<1, ','>;
using TwoComma = Fixed<2, ','>;
using TwoPoint = Fixed<2, '.'>;
using ThreeComma = Fixed<3, ','>;
using WholeOfTenths = Fixed<0, '.', 10>;
using OneCommaOfTenths = Fixed<1, ',', 10>;
using Hundredths = Fixed<2, '.', 100>;

template <typename Format, typename Value>
std::string written(Value value) {
    std::string buffer(Format::longest(value), '?');
    buffer.resize(static_cast<std::size_t>(Format::write(buffer.data(), value) - buffer.data()));
    return buffer;
}

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float largest = std::numeric_limits<float>::max();
constexpr float smallest = std::numeric_limits<float>::denorm_min();

TEST(CsvFormats, FixedTextRoundsExactTiesToTheEvenDigit) {
    EXPECT_EQ(written<Whole>(0.5F), "0");
    EXPECT_EQ(written<Whole>(1.5F), "2");
    EXPECT_EQ(written<Whole>(2.5F), "2");
    EXPECT_EQ(written<Whole>(-2.5F), "-2");
    EXPECT_EQ(written<Whole>(-3.5F), "-4");
    EXPECT_EQ(written<OneComma>(0.25F), "0,2");
    EXPECT_EQ(written<OneComma>(0.75F), "0,8");
    EXPECT_EQ(written<TwoPoint>(0.125F), "0.12");
    EXPECT_EQ(written<TwoPoint>(0.375F), "0.38");
    EXPECT_EQ(written<ThreeComma>(0.0625F), "0,062");
    EXPECT_EQ(written<ThreeComma>(0.1875F), "0,188");
}

TEST(CsvFormats, FixedTextLooksAtTheExactBinaryValue) {
    EXPECT_EQ(written<TwoPoint>(2.675F), "2.67");
    EXPECT_EQ(written<TwoPoint>(12.345F), "12.35");
    EXPECT_EQ(written<Whole>(std::nextafter(2.5F, 3.0F)), "3");
    EXPECT_EQ(written<Whole>(std::nextafter(3.5F, 3.0F)), "3");
}

TEST(CsvFormats, FixedTextCarriesAndPads) {
    EXPECT_EQ(written<TwoComma>(9.999F), "10,00");
    EXPECT_EQ(written<ThreeComma>(0.001F), "0,001");
    EXPECT_EQ(written<ThreeComma>(7.05F), "7,050");
    EXPECT_EQ(written<OneComma>(0.0F), "0,0");
}

TEST(CsvFormats, NegativeZeroKeepsItsSign) {
    EXPECT_EQ(written<Whole>(-0.3F), "-0");
    EXPECT_EQ(written<TwoComma>(-0.001F), "-0,00");
    EXPECT_EQ(written<TwoComma>(-0.0F), "-0,00");
}

TEST(CsvFormats, FixedTextOfWhatIsNotFiniteIsAWord) {
    EXPECT_EQ(written<Whole>(notANumber), "NaN");
    EXPECT_EQ(written<TwoComma>(-notANumber), "NaN");
    EXPECT_EQ(written<TwoComma>(infinity), "+Infinity");
    EXPECT_EQ(written<ThreeComma>(-infinity), "-Infinity");
}

TEST(CsvFormats, FixedTextOfTheLargestNumbersIsExact) {
    EXPECT_EQ(written<ThreeComma>(largest), "340282346638528859811704183484516925440,000");
    EXPECT_EQ(written<TwoPoint>(-largest), "-340282346638528859811704183484516925440.00");
    EXPECT_EQ(written<ThreeComma>(smallest), "0,000");
    // Around the limit of the quick way, 2 to the power of 53.
    EXPECT_EQ(written<Whole>(9007199254740992.0F), "9007199254740992");
    EXPECT_EQ(written<Whole>(9007198717870080.0F), "9007198717870080");
    EXPECT_EQ(written<ThreeComma>(9007199682560.0F), "9007199682560,000");
    EXPECT_EQ(written<ThreeComma>(9007198633984.0F), "9007198633984,000");
}

// The caller makes room by what is told.
template <typename Format, typename Value>
void expectRoom(Value value) {
    const std::size_t room = Format::longest(value);
    std::string buffer(room + 64, '?');
    const char* const end = Format::write(buffer.data(), value);
    EXPECT_LE(end, buffer.data() + room) << buffer;
    EXPECT_EQ(buffer.substr(room), std::string(64, '?'));
}

TEST(CsvFormats, NothingIsWrittenBeyondWhatIsToldBefore) {
    for (const std::int64_t value :
         {std::int64_t{0}, std::int64_t{999}, std::int64_t{1000}, std::int64_t{999'999},
          std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        expectRoom<Integer>(value);
    }
    for (const float value : {0.0F, -1.0F, largest, -largest, smallest, infinity, notANumber}) {
        expectRoom<RoundedInteger>(value);
        expectRoom<Whole>(value);
        expectRoom<ThreeComma>(value);
        expectRoom<Hundredths>(value);
    }
    for (const std::int32_t value : {0, 3725, std::numeric_limits<std::int32_t>::min(),
                                     std::numeric_limits<std::int32_t>::max()}) {
        expectRoom<DateAndTime>(value);
        expectRoom<Duration>(value);
    }
    for (const services::TextView value : {services::TextView(), services::TextView("Berg")})
        expectRoom<AsStored>(value);
}

TEST(CsvFormats, QuotientsAreFormedInSinglePrecision) {
    // The singles nearest to 4.05 and 4.45 are 4.0500002 and 4.4499998; the doubles lie on the
    // other side of the tie.
    EXPECT_EQ(written<OneCommaOfTenths>(40.5F), "4,1");
    EXPECT_EQ(written<OneCommaOfTenths>(44.5F), "4,4");
    EXPECT_EQ(written<Hundredths>(15234.0F), "152.34");
    EXPECT_EQ(written<WholeOfTenths>(-25.0F), "-2");
    EXPECT_EQ(written<WholeOfTenths>(-3.0F), "-0");
    EXPECT_EQ(written<WholeOfTenths>(infinity), "+Infinity");
}

template <int decimals, int divisor>
void expectServicesText(float value) {
    const services::Text text =
        services::floatToText(value / static_cast<float>(divisor), decimals);
    ASSERT_EQ((written<Fixed<decimals, '.', divisor>>(value)), text) << std::hexfloat << value;
    ASSERT_EQ((written<Fixed<decimals, ',', divisor>>(value)), services::withDecimalComma(text));
}

void expectServicesTexts(float value) {
    expectServicesText<0, 1>(value);
    expectServicesText<1, 1>(value);
    expectServicesText<2, 1>(value);
    expectServicesText<3, 1>(value);
    expectServicesText<0, 10>(value);
    expectServicesText<1, 10>(value);
    expectServicesText<2, 100>(value);
    expectServicesText<3, 1000>(value);
}

TEST(CsvFormats, FixedTextIsThatOfTheServicesForAnyBits) {
    std::mt19937 random(20130507);
    for (int i = 0; i < 20'000 && !testing::Test::HasFatalFailure(); ++i) {
        expectServicesTexts(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
    }
}

TEST(CsvFormats, FixedTextIsThatOfTheServicesOnAndBesideEveryTie) {
    // Sixteenths hold the ties of all four numbers of decimals.
    for (int sixteenths = -20'000; sixteenths <= 20'000; ++sixteenths) {
        const float value = static_cast<float>(sixteenths) / 16.0F;
        expectServicesTexts(value);
        expectServicesTexts(std::nextafter(value, infinity));
        expectServicesTexts(std::nextafter(value, -infinity));
        if (testing::Test::HasFatalFailure()) return;
    }
}

TEST(CsvFormats, FixedTextIsThatOfTheServicesForEveryTenthOfAShortInteger) {
    for (int value = -32768; value <= 32767; ++value) {
        expectServicesText<0, 10>(static_cast<float>(value));
        expectServicesText<1, 10>(static_cast<float>(value));
        if (testing::Test::HasFatalFailure()) return;
    }
}

TEST(CsvFormats, IntegersOfEveryLengthAreWritten) {
    for (std::int64_t power = 1; power <= 100'000'000'000'000'000; power *= 10) {
        for (const std::int64_t value : {power - 1, power, power + 1, 3 * power, 7 * power / 2}) {
            EXPECT_EQ(written<Integer>(value), std::to_string(value));
            EXPECT_EQ(written<Integer>(-value), std::to_string(-value));
        }
    }
    for (std::int64_t value = -1100; value <= 1100; ++value) {
        EXPECT_EQ(written<Integer>(value), std::to_string(value));
    }
    for (std::int64_t value = 999'000; value <= 1'001'000; ++value) {
        EXPECT_EQ(written<Integer>(value), std::to_string(value));
    }
}

TEST(CsvFormats, IntegersReachTheirLimits) {
    EXPECT_EQ(written<Integer>(0), "0");
    EXPECT_EQ(written<Integer>(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(written<Integer>(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(written<Integer>(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
}

TEST(CsvFormats, RoundedIntegersHaveNoSignedZeroAndNoWords) {
    EXPECT_EQ(written<RoundedInteger>(0.5F), "0");
    EXPECT_EQ(written<RoundedInteger>(1.5F), "2");
    EXPECT_EQ(written<RoundedInteger>(-2.5F), "-2");
    EXPECT_EQ(written<RoundedInteger>(-0.3F), "0");
    EXPECT_EQ(written<RoundedInteger>(-9223372036854775808.0F), "-9223372036854775808");
    EXPECT_EQ(written<RoundedInteger>(largest), "0");
    EXPECT_EQ(written<RoundedInteger>(notANumber), "0");
    EXPECT_EQ(written<RoundedInteger>(-infinity), "0");
}

}  // namespace
