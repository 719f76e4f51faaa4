#include "device/index_copy.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/device/card_fixture.h"

namespace {

using device::IndexCopy;
using device::RenameOutcome;
using device_tests::indexRecord;
using device_tests::nameOf;
using Names = std::set<services::Text>;
using Outcomes = std::vector<RenameOutcome>;

constexpr auto moved = RenameOutcome::moved;
constexpr auto stays = RenameOutcome::stays;
constexpr auto gone = RenameOutcome::gone;

std::string indexOf(const std::vector<std::uint64_t>& numbers) {
    std::string index;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        index += indexRecord(numbers[i], static_cast<std::int32_t>(i)).bytes;
    return index;
}

// Both lists are in the order of the records; a number that stays is not renamed.
IndexCopy copyOf(const std::vector<std::uint64_t>& from, const std::vector<std::uint64_t>& to) {
    const std::string old = indexOf(from);
    IndexCopy copy{.index = indexOf(to), .renames = {}, .oldLength = old.size(), .oldHash = 0};
    copy.oldHash = 0xCBF29CE484222325U;
    for (const char byte : old)
        copy.oldHash = (copy.oldHash ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (from[i] != to[i])
            copy.renames.push_back({.position = i * 152, .oldName = nameOf(from[i])});
    }
    return copy;
}

Names namesOf(const std::vector<std::uint64_t>& numbers) {
    Names names;
    for (const std::uint64_t number : numbers)
        names.insert(nameOf(number));
    return names;
}

// No file that was renamed is looked into.
bool isNeverWhole(const std::string& name, const device::PendingRename&) {
    ADD_FAILURE() << name;
    return false;
}

Outcomes outcomes(const IndexCopy& copy, const Names& there) {
    return device::outcomesOf(
        copy, [&](const auto& name) { return there.contains(name); }, isNeverWhole);
}

std::string repaired(const IndexCopy& copy, const std::optional<std::string>& present,
                     const std::vector<std::uint64_t>& there) {
    const Names names = namesOf(there);
    const auto isThere = [&](const auto& name) { return names.contains(name); };
    std::optional<std::string_view> view;
    if (present) view = *present;
    return device::repairedIndex(copy, device::outcomesOf(copy, isThere, isNeverWhole), view,
                                 isThere);
}

TEST(IndexCopies, ComeBackAsTheyWere) {
    for (const IndexCopy& copy :
         {IndexCopy{}, copyOf({1, 2}, {1, 2}), copyOf({1, 5, 9}, {1, 2, 3})})
        EXPECT_EQ(device::decodeIndexCopy(device::encodeIndexCopy(copy)), copy);
}

TEST(IndexCopies, BeginWithTheIndexItself) {
    const IndexCopy copy = copyOf({1, 5}, {1, 2});
    EXPECT_TRUE(device::encodeIndexCopy(copy).starts_with(indexOf({1, 2})));
}

TEST(IndexCopies, NoPieceAndNoChangedByteIsTakenForComplete) {
    const std::string bytes = device::encodeIndexCopy(copyOf({1, 5}, {1, 2}));
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(device::decodeIndexCopy(bytes.substr(0, length))) << length;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::string changed = bytes;
        changed[i] = static_cast<char>(changed[i] ^ 0x10);
        EXPECT_FALSE(device::decodeIndexCopy(changed)) << i;
    }
    EXPECT_FALSE(device::decodeIndexCopy(bytes + '\0'));
    EXPECT_FALSE(device::decodeIndexCopy(std::string(1000, '\0')));
}

TEST(IndexCopies, NamesThatAreNoTrainingsAreRefused) {
    IndexCopy copy = copyOf({1, 5}, {1, 2});
    copy.renames[0].oldName = "../../../../etc/";
    EXPECT_FALSE(device::decodeIndexCopy(device::encodeIndexCopy(copy)));
    copy = copyOf({1, 5}, {1, 2});
    copy.renames[0].position = copy.index.size() - 7;
    EXPECT_FALSE(device::decodeIndexCopy(device::encodeIndexCopy(copy)));
}

TEST(IndexCopies, TellWhichRenamesWereDone) {
    const IndexCopy copy = copyOf({1, 5, 9}, {1, 2, 3});
    EXPECT_EQ(outcomes(copy, namesOf({1, 5, 9})), (Outcomes{stays, stays}));
    EXPECT_EQ(outcomes(copy, namesOf({1, 2, 9})), (Outcomes{moved, stays}));
    EXPECT_EQ(outcomes(copy, namesOf({1, 2, 3})), (Outcomes{moved, moved}));
    EXPECT_EQ(outcomes(copy, namesOf({1, 5, 3})), (Outcomes{stays, moved}));
    EXPECT_EQ(outcomes(copy, namesOf({1, 3})), (Outcomes{gone, moved}));
}

// 5 becomes 2, and later 22 becomes 5: the name 5 alone says nothing.
TEST(IndexCopies, TellRenamesApartThatUseANameAfterOneAnother) {
    const IndexCopy copy = copyOf({1, 5, 20, 21, 22}, {1, 2, 3, 4, 5});
    EXPECT_EQ(outcomes(copy, namesOf({1, 2, 3, 4, 5})), (Outcomes{moved, moved, moved, moved}));
    EXPECT_EQ(outcomes(copy, namesOf({1, 2, 3, 4, 22})), (Outcomes{moved, moved, moved, stays}));
    EXPECT_EQ(outcomes(copy, namesOf({1, 5, 20, 21, 22})), (Outcomes{stays, stays, stays, stays}));
    // 2 was taken by a file that nobody knows, so 5 is still 5 and 22 can't become it.
    EXPECT_EQ(outcomes(copy, namesOf({1, 2, 5, 3, 4, 22})), (Outcomes{stays, moved, moved, stays}));
}

TEST(IndexCopies, AMissingIndexIsWhatTheCopyHolds) {
    EXPECT_EQ(repaired(copyOf({1, 2}, {1, 2}), std::nullopt, {1, 2}), indexOf({1, 2}));
    EXPECT_EQ(repaired(IndexCopy{}, std::nullopt, {}), "");
}

TEST(IndexCopies, AnIndexThatWasCutShortAnywhereIsWhatTheCopyHolds) {
    const IndexCopy copy = copyOf({1, 5, 9}, {1, 2, 3});
    for (std::size_t length = 0; length < copy.index.size(); ++length)
        EXPECT_EQ(repaired(copy, copy.index.substr(0, length), {1, 2, 3}), copy.index) << length;
}

TEST(IndexCopies, AGoodIndexStaysWhateverTheCopyHolds) {
    const IndexCopy copy = copyOf({1, 2, 3}, {1, 2, 3});
    for (const std::string& index :
         {copy.index, copy.index + "rest", copy.index + indexRecord(4, 9).bytes,
          indexOf({3, 2, 1, 7}), indexOf({3, 2, 1}) + "rest"}) {
        EXPECT_EQ(repaired(copy, index, {1, 2, 3}), index);
    }
}

TEST(IndexCopies, TheOldIndexStaysWhenNothingIsRenamed) {
    IndexCopy copy = copyOf({1, 2, 3}, {1, 2, 3});
    copy.index = indexOf({3});
    EXPECT_EQ(repaired(copy, indexOf({1, 2, 3}), {3}), indexOf({1, 2, 3}));
}

TEST(IndexCopies, OldAndNewIndexGetTheNamesThatTheFilesHave) {
    const IndexCopy copy = copyOf({1, 5, 9}, {1, 2, 3});
    const struct {
        std::vector<std::uint64_t> there;
        std::vector<std::uint64_t> expected;
    } rows[] = {
        {{1, 5, 9}, {1, 5, 9}}, {{1, 2, 9}, {1, 2, 9}},    {{1, 2, 3}, {1, 2, 3}},
        {{1, 5, 3}, {1, 5, 3}}, {{1, 2, 5, 3}, {1, 5, 3}}, {{1, 3}, {1, 2, 3}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(repaired(copy, indexOf({1, 5, 9}), row.there), indexOf(row.expected));
        EXPECT_EQ(repaired(copy, indexOf({1, 2, 3}), row.there), indexOf(row.expected));
        EXPECT_EQ(repaired(copy, std::nullopt, row.there), indexOf(row.expected));
        const std::string added = indexRecord(0x77, 77).bytes;
        EXPECT_EQ(repaired(copy, indexOf({1, 5, 9}) + added, row.there),
                  indexOf(row.expected) + added);
    }
}

// The index lists the same file twice; only one of the two renames can have been done.
TEST(IndexCopies, TwoRecordsOfOneFileBothFindIt) {
    const IndexCopy copy = copyOf({1, 9, 9}, {1, 2, 3});
    EXPECT_EQ(repaired(copy, std::nullopt, {1, 2}), indexOf({1, 2, 2}));
}

// The bike found no index, began a new one and wrote a training of its own into it.
TEST(IndexCopies, WhatANewIndexLacksIsPutBehindIt) {
    const IndexCopy copy = copyOf({1, 5, 9}, {1, 2, 3});
    const std::string added = indexRecord(0x77, 77).bytes;
    EXPECT_EQ(repaired(copy, added + "rest", {1, 2, 0x77}),
              added + indexRecord(1, 0).bytes + indexRecord(2, 1).bytes);
}

// The second training had no file, so the third could take its name.
TEST(IndexCopies, ARecordWithoutAFileDoesNotFindAnotherTrainings) {
    IndexCopy copy = copyOf({1, 2, 3}, {1, 2, 3});
    copy.index = indexRecord(1, 0).bytes + indexRecord(2, 2).bytes;
    copy.renames = {{.position = 152, .oldName = nameOf(3)}};
    EXPECT_EQ(repaired(copy, indexOf({1, 2, 3}), {1, 2}), copy.index);
    EXPECT_EQ(repaired(copy, indexOf({1, 2, 3}), {1, 3}), indexOf({1, 2, 3}));
}

TEST(IndexCopies, TrainingsDeletedSinceDoNotComeBack) {
    const IndexCopy copy = copyOf({1, 2, 3}, {1, 2, 3});
    EXPECT_EQ(repaired(copy, indexOf({1, 2}), {1, 2}), indexOf({1, 2}));
    EXPECT_EQ(repaired(copy, indexOf({1, 2}), {1, 2, 3}), indexOf({1, 2, 3}));
    EXPECT_EQ(repaired(copy, "", {2}), indexRecord(2, 1).bytes);
}

TEST(IndexCopies, BelongToTheIndexTheyWereMadeFor) {
    const IndexCopy copy = copyOf({1, 5}, {1, 2});
    const std::string added = indexRecord(7, 7).bytes;
    for (const std::string& index :
         {indexOf({1, 5}), indexOf({1, 2}), indexOf({1, 5}) + added, indexOf({1, 2}) + added,
          indexOf({1, 2}).substr(0, 200), std::string()}) {
        EXPECT_TRUE(device::belongsTo(copy, index));
    }
    EXPECT_TRUE(device::belongsTo(copy, std::nullopt));
    EXPECT_FALSE(device::belongsTo(copy, added));
    EXPECT_FALSE(device::belongsTo(copy, indexOf({5, 1})));
    EXPECT_FALSE(device::belongsTo(copy, indexOf({1, 5}).substr(0, 303)));
}

}  // namespace
