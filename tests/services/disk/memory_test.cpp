#include "services/disk/memory.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

TEST(Memory, AnActionThatNeedsMoreThanThereIsEndsWithoutAnyOther) {
    bool before = false;
    bool after = false;
    EXPECT_FALSE(services::withinMemory([&] {
        before = true;
        const std::string tooLong(std::string().max_size() + 1, 'x');
        after = true;
    }));
    EXPECT_TRUE(before);
    EXPECT_FALSE(after);
    EXPECT_FALSE(services::withinMemory([] { throw std::bad_alloc(); }));
}

TEST(Memory, AnActionThatFindsWhatItNeedsIsDone) {
    bool done = false;
    EXPECT_TRUE(services::withinMemory([&] { done = true; }));
    EXPECT_TRUE(done);
}

TEST(Memory, OtherExceptionsAreNoneOfItsBusiness) {
    EXPECT_THROW(static_cast<void>(services::withinMemory([] { throw 1; })), int);
}

TEST(Memory, WhatNoMachineHasDoesNotFit) {
    EXPECT_TRUE(services::fitsIntoMemory(0));
    EXPECT_TRUE(services::fitsIntoMemory(1'000'000));
    EXPECT_FALSE(services::fitsIntoMemory(std::uint64_t{1} << 60U));
    EXPECT_FALSE(services::fitsIntoMemory(std::numeric_limits<std::uint64_t>::max()));
}

}  // namespace
