// Renumbering on FAT around files that hold the same, or nothing, and what is flushed before a name
// goes.
#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "device/index_copy.h"
#include "device/index_recovery.h"
#include "files/renumbering.h"
#include "services/disk/whole_files.h"
#include "tests/device/card_fixture.h"
#include "tests/faults/fault_injector.h"

namespace {

namespace fs = std::filesystem;
using device::loadDictionary;
using device::state;
using device_tests::bytesOf;
using device_tests::indexRecord;
using device_tests::nameOf;
using device_tests::writeBytes;
using fault_injector::FaultKind;

class FatRecovery : public device_tests::CardTest {
  protected:
    void SetUp() override {
        CardTest::SetUp();
        fault_injector::pretendFat(true);
    }

    void TearDown() override {
        fault_injector::disarm();
        fault_injector::pretendFat(false);
        state = {};
        CardTest::TearDown();
    }

    // By date, in the order of the numbers.
    static void writeIndex(const std::vector<std::uint64_t>& numbers) {
        writeBytes("dictionary.2", indexOf(numbers));
    }

    static std::string indexOf(const std::vector<std::uint64_t>& numbers) {
        std::string index;
        for (std::size_t i = 0; i < numbers.size(); ++i)
            index += indexRecord(numbers[i], static_cast<std::int32_t>(i + 1)).bytes;
        return index;
    }

    // Cut off as soon as the copy lies there.
    static void announce(const std::vector<std::uint64_t>& newNumbers) {
        loadDictionary();
        ASSERT_EQ(state.dictionary.size(), newNumbers.size());
        std::vector<device::PendingName> pending;
        for (std::size_t i = 0; i < newNumbers.size(); ++i) {
            services::Text& name = state.dictionary[i].fileName;
            if (name == nameOf(newNumbers[i])) continue;
            pending.push_back({.record = i, .oldName = name});
            name = nameOf(newNumbers[i]);
        }
        ASSERT_TRUE(device::announceRenaming(pending));
        for (const device::PendingName& name : pending)
            EXPECT_TRUE(name.isByCopying);
        device::leaveTree();
    }

    static std::vector<std::string> listed() {
        std::vector<std::string> names;
        for (const device::DictionaryRecord& record : state.dictionary)
            names.push_back(record.fileName);
        return names;
    }

    static void renumber() {
        state.renumberingEnabled = 1;
        stand_ins::world.questionAnswers = {{"Dateinamen neu durchnummerieren",
                                             "Sollen die Dateinamen neu durchnummeriert werden?",
                                             true}};
        stand_ins::world.events = {
            {.kind = services::EventKind::close, .window = services::reportWindow}};
        stand_ins::world.anyMessageIsFine = true;
        files::renumberTrainings(700, [] {});
    }
};

// The name that one of them gives up is the one that another gets: its own file is no copy of that.
TEST_F(FatRecovery, FilesThatHoldTheSameAreToldApart) {
    for (const std::string& content : {std::string(), std::string(44, 'a')}) {
        const auto writeTrainings = [&](const std::vector<std::uint64_t>& numbers) {
            for (const std::uint64_t number : {1U, 2U, 3U, 4U, 5U})
                fs::remove(nameOf(number));
            writeBytes(nameOf(1), "first");
            for (const std::uint64_t number : numbers)
                writeBytes(nameOf(number), content);
        };
        const std::vector<std::vector<std::uint64_t>> cutOff = {
            {3, 4, 5}, {2, 3, 4, 5}, {2, 4, 5}, {2, 3, 4, 5}, {2, 3, 5}, {2, 3, 4, 5}, {2, 3, 4}};
        for (std::size_t i = 0; i < cutOff.size(); ++i) {
            SCOPED_TRACE(testing::Message() << content.size() << " bytes, cut off at " << i);
            writeTrainings({3, 4, 5});
            writeIndex({1, 3, 4, 5});
            announce({1, 2, 3, 4});
            writeTrainings(cutOff[i]);
            loadDictionary();
            EXPECT_EQ(listed(), (std::vector{nameOf(1), nameOf(2), nameOf(3), nameOf(4)}));
            EXPECT_EQ(bytesOf("dictionary.2"), indexOf({1, 2, 3, 4}));
            EXPECT_FALSE(fs::exists(nameOf(5)));
            for (const std::uint64_t number : {2U, 3U, 4U})
                EXPECT_EQ(bytesOf(nameOf(number)), content);
        }
    }
}

// Neither is what a rename leaves that was cut off.
TEST_F(FatRecovery, AnEmptyFileThatHasTheNewNameStays) {
    writeBytes(nameOf(1), "first");
    writeBytes(nameOf(5), "content");
    writeBytes(nameOf(2), "");
    for (const std::vector<std::uint64_t>& numbers :
         {std::vector<std::uint64_t>{1, 5}, std::vector<std::uint64_t>{1, 5, 2}}) {
        writeIndex(numbers);
        loadDictionary();
        const std::vector<std::string> before = listed();
        ASSERT_EQ(before.size(), numbers.size());
        renumber();
        EXPECT_EQ(listed(), before);
        ASSERT_TRUE(fs::exists(nameOf(2)));
        EXPECT_EQ(bytesOf(nameOf(2)), "");
        ASSERT_TRUE(fs::exists(nameOf(5)));
        EXPECT_EQ(bytesOf(nameOf(5)), "content");
    }
}

// It may be another name of the same bytes on the disk.
TEST_F(FatRecovery, AForeignFileThatHoldsTheSameIsNoCopy) {
    writeBytes(nameOf(1), "first");
    writeBytes(nameOf(2), "content");
    writeBytes(nameOf(5), "content");
    writeIndex({1, 5});
    loadDictionary();
    renumber();
    EXPECT_EQ(listed(), (std::vector{nameOf(1), nameOf(5)}));
    EXPECT_TRUE(fs::exists(nameOf(2)));
    EXPECT_TRUE(fs::exists(nameOf(5)));
}

TEST_F(FatRecovery, ANameWithoutBytesGetsThemUnlessItIsATrainings) {
    writeBytes(nameOf(1), "first");
    writeBytes(nameOf(5), "content");
    writeIndex({1, 5});
    announce({1, 2});
    writeBytes(nameOf(2), "");
    loadDictionary();
    EXPECT_EQ(listed(), (std::vector{nameOf(1), nameOf(2)}));
    EXPECT_EQ(bytesOf(nameOf(2)), "content");

    // The bike has begun another training since.
    writeBytes(nameOf(5), "another");
    writeIndex({1, 2, 5});
    announce({1, 2, 3});
    writeBytes(nameOf(3), "");
    writeBytes("dictionary.2", indexOf({1, 2, 5, 3}));
    loadDictionary();
    EXPECT_EQ(listed(), (std::vector{nameOf(1), nameOf(2), nameOf(5), nameOf(3)}));
    EXPECT_EQ(bytesOf(nameOf(3)), "");
    EXPECT_EQ(bytesOf(nameOf(5)), "another");

    // A training without samples, whose own new name has been taken since.
    writeIndex({1, 3, 5});
    fs::remove(nameOf(2));
    announce({1, 2, 3});
    writeBytes(nameOf(2), "foreign");
    loadDictionary();
    EXPECT_EQ(listed(), (std::vector{nameOf(1), nameOf(3), nameOf(5)}));
    EXPECT_EQ(bytesOf(nameOf(3)), "");
    EXPECT_EQ(bytesOf(nameOf(5)), "another");
}

// It may have got its new name from a program that was killed before it could flush it.
TEST_F(FatRecovery, AnOldNameGoesOnlyWhenTheNewOneIsOnTheDisk) {
    writeBytes(nameOf(1), "first");
    writeBytes(nameOf(5), "content");
    writeIndex({1, 5});
    announce({1, 2});
    writeBytes(nameOf(2), "content");
    fault_injector::arm(
        {.kind = FaultKind::fail, .error = EIO, .goesOn = true, .names = {"fsync"}});
    loadDictionary();
    EXPECT_GT(fault_injector::disarm(), 0);
    EXPECT_TRUE(fs::exists(nameOf(5)));
    loadDictionary();
    EXPECT_EQ(listed(), (std::vector{nameOf(1), nameOf(2)}));
    EXPECT_FALSE(fs::exists(nameOf(5)));
}

class FullFatCard : public FatRecovery {
  protected:
    // Without room for copies.
    static void announceRename() {
        writeBytes(nameOf(1), "first");
        writeBytes(nameOf(5), "content");
        writeIndex({1, 5});
        loadDictionary();
        std::vector<device::PendingName> pending = {{.record = 1, .oldName = nameOf(5)}};
        state.dictionary[1].fileName = nameOf(2);
        fault_injector::arm(
            {.kind = FaultKind::fail, .error = EIO, .goesOn = true, .names = {"statvfs"}});
        ASSERT_TRUE(device::announceRenaming(pending));
        fault_injector::disarm();
        EXPECT_FALSE(pending.front().isByCopying);
        device::leaveTree();
    }
};

TEST_F(FullFatCard, AFileThatCouldNotBeFlushedUnderItsNewNameIsListedByThat) {
    int calls = 1;
    for (int call = 0; call < calls; ++call) {
        SCOPED_TRACE(call);
        announceRename();
        fault_injector::arm(
            {.kind = FaultKind::fail, .at = call, .error = EIO, .names = {"fsync"}});
        loadDictionary();
        calls = fault_injector::disarm();
        loadDictionary();
        ASSERT_EQ(listed().size(), 2U);
        EXPECT_EQ(bytesOf(listed()[1]), "content");
        fs::remove(nameOf(2));
    }
    EXPECT_GT(calls, 4);
}

// A program may have been killed before it had the copy flushed.
TEST_F(FullFatCard, NothingIsRenamedByACopyThatIsNotOnTheDisk) {
    announceRename();
    fault_injector::arm(
        {.kind = FaultKind::fail, .error = EIO, .goesOn = true, .names = {"fsync"}});
    loadDictionary();
    fault_injector::disarm();
    EXPECT_TRUE(fs::exists(nameOf(5)));
    EXPECT_FALSE(fs::exists(nameOf(2)));
    loadDictionary();
    EXPECT_EQ(listed(), (std::vector{nameOf(1), nameOf(2)}));
}

TEST_F(FatRecovery, TheOldNameOfATrainingWithoutAFileCanBecomeAnothers) {
    writeBytes(nameOf(1), "first");
    writeBytes(nameOf(5), "content");
    writeIndex({1, 5});
    announce({1, 2});
    fs::remove(nameOf(5));  // and the disk has lost the new name
    loadDictionary();
    ASSERT_EQ(listed(), std::vector{nameOf(1)});
    // The bike goes on.
    for (const std::uint64_t number : {3U, 4U, 6U, 0x21U})
        writeBytes(nameOf(number), "training " + nameOf(number));
    writeBytes("dictionary.2", indexOf({1, 2, 3, 4, 6, 0x21}));
    loadDictionary();
    renumber();
    EXPECT_EQ(listed(), (std::vector{nameOf(1), nameOf(3), nameOf(4), nameOf(6), nameOf(5)}));
    EXPECT_EQ(bytesOf(nameOf(5)), "training " + nameOf(0x21));
    EXPECT_FALSE(fs::exists(nameOf(2)));
    EXPECT_EQ(state.untoldRecords, indexRecord(2, 2).bytes);
}

TEST_F(FatRecovery, ALeftoverThatCantBeSetAsideStays) {
    writeBytes("file", "bytes");
    writeBytes("part", "bytes");
    fault_injector::arm(
        {.kind = FaultKind::fail, .error = ENOSPC, .goesOn = true, .names = {"renameat2"}});
    EXPECT_FALSE(services::replaceWholeFile("file", "part", "new"));
    fault_injector::disarm();
    EXPECT_EQ(bytesOf("file"), "bytes");
    ASSERT_TRUE(fs::exists("part"));
    EXPECT_EQ(bytesOf("part"), "bytes");
}

// What is done on FAT loses nothing elsewhere.
TEST_F(FatRecovery, AFileSystemThatDoesNotTellWhatItIsCountsAsFat) {
    fault_injector::pretendFat(false);
    writeBytes("file", "bytes");
    writeBytes("part", "bytes");
    fault_injector::arm(
        {.kind = FaultKind::fail, .error = EIO, .goesOn = true, .names = {"statfs"}});
    EXPECT_TRUE(services::replaceWholeFile("file", "part", "new"));
    EXPECT_GT(fault_injector::disarm(), 0);
    EXPECT_EQ(bytesOf("file"), "new");
    ASSERT_TRUE(fs::exists("part.rest1"));
    EXPECT_EQ(bytesOf("part.rest1"), "bytes");
}

}  // namespace
