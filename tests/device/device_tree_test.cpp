#include "device/device_tree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include "services/disk/directories.h"
#include "tests/device/card_fixture.h"

namespace {

using device::locateDeviceTree;
using device::TreeLocation;
namespace fs = std::filesystem;

class DeviceTree : public device_tests::CardTest {
  protected:
    // Makes `root` a card, relative to the test's directory.
    void makeCard(const std::string& root) {
        fs::create_directories(directory / root / "data/result/ergo_bike");
        device_tests::writeBytes(directory / root / "data/result/ergo_bike/dictionary.2", "");
    }

    // The working directory relative to the test's own: "" or with a "/" at its end.
    std::string here() const {
        std::string path = services::currentDirectory();
        const std::string root = fs::canonical(directory).string() + "/";
        EXPECT_TRUE(path.starts_with(root)) << path;
        return path.substr(root.size());
    }

    void start(const std::string& relative) {
        fs::create_directories(directory / relative);
        fs::current_path(directory / relative);
    }
};

TEST_F(DeviceTree, ATreeBelowTheWorkingDirectoryIsEntered) {
    makeCard("CARD");
    start("CARD");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::below);
    EXPECT_EQ(here(), "CARD/data/result/ergo_bike/");
}

TEST_F(DeviceTree, AnErgoBikeDirectoryStaysCurrent) {
    makeCard("CARD");
    start("CARD/data/result/ergo_bike");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::current);
    EXPECT_EQ(here(), "CARD/data/result/ergo_bike/");
}

TEST_F(DeviceTree, FoundBelowItIsFoundAgainAsCurrent) {
    makeCard("CARD");
    start("CARD");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::below);
    EXPECT_EQ(locateDeviceTree(), TreeLocation::current);
}

TEST_F(DeviceTree, ATreeBelowIsPreferredToAnIndexBesideIt) {
    makeCard("CARD");
    device_tests::writeBytes(directory / "CARD/dictionary.2", "");
    start("CARD");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::below);
    EXPECT_EQ(here(), "CARD/data/result/ergo_bike/");
}

TEST_F(DeviceTree, TheApplicationBundleIsLeftForTheDirectoryThatHoldsIt) {
    makeCard("CARD");
    start("CARD/Kurbelbuch.app/Contents");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::below);
    EXPECT_EQ(here(), "CARD/data/result/ergo_bike/");
}

TEST_F(DeviceTree, ABundleInsideTheErgoBikeDirectoryFindsTheIndexBesideIt) {
    makeCard("CARD");
    start("CARD/data/result/ergo_bike/Kurbelbuch.app/Contents");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::current);
    EXPECT_EQ(here(), "CARD/data/result/ergo_bike/");
}

TEST_F(DeviceTree, EveryOccurrenceOfTheBundleIsRemoved) {
    makeCard("CARD");
    start("CARD/Kurbelbuch.app/Contents/Kurbelbuch.app/Contents");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::below);
    EXPECT_EQ(here(), "CARD/data/result/ergo_bike/");
}

TEST_F(DeviceTree, NotFoundLeavesTheDirectoryThatHoldsTheBundle) {
    start("CARD/Kurbelbuch.app/Contents");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::notFound);
    EXPECT_EQ(here(), "CARD/");
}

TEST_F(DeviceTree, NotFoundOutsideABundleChangesNothing) {
    start("somewhere");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::notFound);
    EXPECT_EQ(here(), "somewhere/");
}

TEST_F(DeviceTree, OnlyARegularFileIsAnIndex) {
    start("CARD/data/result/ergo_bike");
    start("CARD");
    fs::create_directory("data/result/ergo_bike/dictionary.2");
    ASSERT_EQ(mkfifo("dictionary.2", 0600), 0);
    EXPECT_EQ(locateDeviceTree(), TreeLocation::notFound);
    EXPECT_EQ(here(), "CARD/");
}

TEST_F(DeviceTree, PathsBeyondLatin1AreEntered) {
    makeCard("Łódź \xFF");
    start("Łódź \xFF/Kurbelbuch.app/Contents");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::below);
    EXPECT_EQ(here(), "Łódź \xFF/data/result/ergo_bike/");
}

TEST_F(DeviceTree, AWorkingDirectoryThatIsGoneHoldsNoTree) {
    start("gone");
    fs::remove(directory / "gone");
    EXPECT_EQ(locateDeviceTree(), TreeLocation::notFound);
}

}  // namespace
