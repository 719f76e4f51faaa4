// Copies of an index whose hash fits, but whose lengths do not: whoever wrote them could count.
#include <gtest/gtest.h>

#include "device/index_copy.h"
#include "services/disk/whole_files.h"
#include "tests/device/card_fixture.h"

namespace {

using device::IndexCopy;
using device::RenameOutcome;
using device_tests::indexRecord;
using device_tests::nameOf;

constexpr std::size_t trailerLength = 4 * 8 + 16 + 8;

void appendNumber(std::string& bytes, std::uint64_t value) {
    for (int i = 0; i < 8; ++i)
        bytes += static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
}

// A copy of these bytes and this trailer, by docs/formats.md.
std::string copyBytes(std::string bytes, std::uint64_t length, std::uint64_t renames) {
    for (const std::uint64_t number : {length, renames, std::uint64_t{0}, std::uint64_t{0}})
        appendNumber(bytes, number);
    bytes += "kurbelbuch-neu-1";
    appendNumber(bytes, services::hashOf(bytes));
    return bytes;
}

std::string renameBytes(std::uint64_t position, const std::string& oldName) {
    std::string bytes;
    appendNumber(bytes, position);
    return bytes + oldName;
}

TEST(IndexCopyBytes, AreThoseOfTheFormat) {
    const std::string index = indexRecord(2).bytes;
    const IndexCopy copy{
        .index = index, .renames = {{.position = 0, .oldName = nameOf(9)}}, .oldLength = 0};
    EXPECT_EQ(device::encodeIndexCopy(copy), copyBytes(index + renameBytes(0, nameOf(9)), 152, 1));
    EXPECT_EQ(device::encodeIndexCopy({}).size(), trailerLength);
}

TEST(IndexCopyBytes, LengthsThatDoNotAddUpAreRefused) {
    const std::string index = indexRecord(2).bytes;
    const std::string rename = renameBytes(0, nameOf(9));
    const auto decodes = [](const std::string& bytes) {
        return device::decodeIndexCopy(bytes).has_value();
    };
    EXPECT_TRUE(decodes(copyBytes(index + rename, 152, 1)));
    EXPECT_FALSE(decodes(copyBytes(index + rename, 152, 0)));
    EXPECT_FALSE(decodes(copyBytes(index + rename, 152, 2)));
    EXPECT_FALSE(decodes(copyBytes(index + rename, 151, 1))) << "a byte too many for one rename";
    EXPECT_FALSE(decodes(copyBytes(index + rename, 153, 1))) << "a byte too few";
    EXPECT_FALSE(decodes(copyBytes(index, 153, 0))) << "longer than there is";
    EXPECT_FALSE(decodes(copyBytes(index, ~std::uint64_t{0}, 0)));
    EXPECT_FALSE(decodes(copyBytes(index, 152, ~std::uint64_t{0})));
}

TEST(IndexCopyBytes, ARenameWithoutRoomForItsNumberIsRefused) {
    const std::string eight(8, '\x01');
    EXPECT_TRUE(device::decodeIndexCopy(copyBytes(eight + renameBytes(0, nameOf(9)), 8, 1)));
    EXPECT_FALSE(device::decodeIndexCopy(copyBytes(eight + renameBytes(1, nameOf(9)), 8, 1)));
    EXPECT_FALSE(
        device::decodeIndexCopy(copyBytes(eight.substr(1) + renameBytes(0, nameOf(9)), 7, 1)));
    EXPECT_FALSE(device::decodeIndexCopy(copyBytes(renameBytes(0, nameOf(9)), 0, 1)));
    EXPECT_FALSE(device::decodeIndexCopy(
        copyBytes(eight + renameBytes(~std::uint64_t{0}, nameOf(9)), 8, 1)));
}

// Long descriptions move what follows: where its records begin can't be told from a piece of it.
TEST(IndexCopyBytes, AnIndexWithLongDescriptionsIsCompletedAsAWhole) {
    const std::string index = indexRecord(1).bytes + std::string(3, 'x') + indexRecord(2).bytes;
    const IndexCopy copy{.index = index};
    const auto noneIsThere = [](const services::Text&) { return false; };
    for (const std::size_t length : {std::size_t{0}, std::size_t{152}, index.size() - 1}) {
        EXPECT_EQ(
            device::repairedIndex(copy, {}, std::string_view(index).substr(0, length), noneIsThere),
            index);
    }
}

}  // namespace
