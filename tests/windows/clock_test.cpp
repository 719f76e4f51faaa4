// The clock on the wall, wherever that hangs.
#include "services/clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace {

class Clock : public testing::Test {
  protected:
    void SetUp() override {
        const char* const zone = std::getenv("TZ");
        hadZone = zone != nullptr;
        if (hadZone) before = zone;
    }

    void TearDown() override {
        hadZone ? setenv("TZ", before.c_str(), 1) : unsetenv("TZ");
        tzset();
    }

    static void moveTo(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }

    bool hadZone = false;
    std::string before;
};

// The zones are told by their distances, so that no system lacks one of them.
TEST_F(Clock, ShowsTheLocalTimeAsIfItWereUtc) {
    constexpr int hour = 3600;
    const struct {
        const char* zone;
        int eastOfGreenwich;
    } rows[] = {{"UTC", 0},
                {"CET-1", hour},
                {"NST3:30", -7 * hour / 2},
                {"LINT-14", 14 * hour},
                {"AOE12", -12 * hour}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.zone);
        moveTo(row.zone);
        const std::time_t earliest = std::time(nullptr);
        const services::DateValue shown = services::now();
        const std::time_t latest = std::time(nullptr);
        EXPECT_GE(shown, earliest + row.eastOfGreenwich);
        EXPECT_LE(shown, latest + row.eastOfGreenwich);
    }
}

// Summer time in one half of the year or the other, so that one of the two always has it.
TEST_F(Clock, ShowsSummerTimeWhileThereIsOne) {
    const std::time_t earliest = std::time(nullptr);
    moveTo("XST-1XDT-3,J1/0,J182/0");
    const services::DateValue firstHalf = services::now();
    moveTo("XST-1XDT-3,J182/0,J365/23");
    const services::DateValue secondHalf = services::now();
    const std::time_t latest = std::time(nullptr);
    constexpr int bothDistances = (1 + 3) * 3600;
    EXPECT_GE(firstHalf + secondHalf, 2 * earliest + bothDistances);
    EXPECT_LE(firstHalf + secondHalf, 2 * latest + bothDistances);
}

}  // namespace
