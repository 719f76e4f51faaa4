#include "device/training_names.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(TrainingNames, OnlyOwnUnfinishedCopiesAreKnownAsSuch) {
    const std::string own = device::unfinishedName("0000000000004A3f");
    EXPECT_TRUE(device::isUnfinishedName(own));
    EXPECT_FALSE(device::isUnfinishedName("0000000000004a3f"));
    EXPECT_FALSE(device::isUnfinishedName("dictionary.2"));
    EXPECT_FALSE(device::isUnfinishedName(""));
    EXPECT_FALSE(device::isUnfinishedName(own.substr(1)));
    EXPECT_FALSE(device::isUnfinishedName("0" + own));
    EXPECT_FALSE(device::isUnfinishedName(own + "~"));
    EXPECT_FALSE(device::isUnfinishedName(device::unfinishedName("mein Training 12")));
    EXPECT_EQ(device::finishedName(own), "0000000000004A3f");
}

}  // namespace
