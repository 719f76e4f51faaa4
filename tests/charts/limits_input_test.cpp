#include "charts/limits_input.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using charts::acceptedLimits;
using charts::inputOf;
using charts::Limits;
using charts::LimitsInput;

TEST(LimitsInput, ShowsTwoDecimalsAndADecimalComma) {
    const LimitsInput input = inputOf(60.126F, 1234.5F);
    EXPECT_EQ("60,13", input.lowerText);
    EXPECT_EQ("1234,50", input.upperText);
    EXPECT_EQ(60.126F, input.lower);
    EXPECT_EQ(1234.5F, input.upper);
}

TEST(LimitsInput, AFieldsTextBecomesItsNumber) {
    struct Row {
        const char* name;
        const char* text;
        float value;
    };
    for (const Row& row : {
             Row{"comma", "12,5", 12.5F},
             Row{"point", "12.5", 12.5F},
             Row{"whole", "80", 80.0F},
             Row{"negative", "-3,25", -3.25F},
             Row{"empty", "", 0.0F},
             Row{"no number", "abc", 0.0F},
             Row{"number and unit", "80 Watt", 80.0F},
             Row{"two commas", "1,2,3", 1.2F},
             Row{"thousands", "1.234,5", 1.234F},
             Row{"exponent", "1,5e2", 150.0F},
         }) {
        SCOPED_TRACE(row.name);
        LimitsInput input = inputOf(7, 9);
        charts::readLowerField(input, row.text);
        EXPECT_EQ(row.value, input.lower);
        EXPECT_EQ(9.0F, input.upper);
        input = inputOf(7, 9);
        charts::readUpperField(input, row.text);
        EXPECT_EQ(7.0F, input.lower);
        EXPECT_EQ(row.value, input.upper);
    }
}

TEST(LimitsInput, TheProgramsOwnTextIsNoEdit) {
    LimitsInput input = inputOf(60.126F, 80.004F);
    charts::readLowerField(input, "60,13");
    charts::readUpperField(input, "80,00");
    EXPECT_EQ(60.126F, input.lower);
    EXPECT_EQ(80.004F, input.upper);
}

TEST(LimitsInput, TypingTheOldTextAgainIsAnEditLikeAnyOther) {
    LimitsInput input = inputOf(60.126F, 80);
    charts::readLowerField(input, "60,1");
    charts::readLowerField(input, "60,13");
    EXPECT_EQ(60.13F, input.lower);
}

TEST(LimitsInput, AnUpperLimitBelowTheLowerTradesPlacesWithIt) {
    const Limits swapped = acceptedLimits(inputOf(80, 60));
    EXPECT_EQ(60.0F, swapped.lower);
    EXPECT_EQ(80.0F, swapped.upper);
    const Limits kept = acceptedLimits(inputOf(60, 80));
    EXPECT_EQ(60.0F, kept.lower);
    EXPECT_EQ(80.0F, kept.upper);
    // No upper limit counts as 0 here as well.
    const Limits half = acceptedLimits(inputOf(60, 0));
    EXPECT_EQ(0.0F, half.lower);
    EXPECT_EQ(60.0F, half.upper);
    const Limits none = acceptedLimits(inputOf(60, NAN));
    EXPECT_EQ(60.0F, none.lower);
}

}  // namespace
