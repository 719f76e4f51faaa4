// What is done otherwise on FAT, where the names of a rename come to the disk one by one and may
// stand for the same bytes. The file system here only calls itself one; scripts/powercut uses real
// ones.
#include <algorithm>
#include <cerrno>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "device/index_recovery.h"
#include "services/disk/directories.h"
#include "services/disk/durable_names.h"
#include "services/disk/file_copies.h"
#include "services/disk/whole_files.h"
#include "tests/builders/card_builder.h"
#include "tests/builders/file_bytes.h"
#include "tests/faults/fault_injector.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

namespace fs = std::filesystem;
using builders::bytesOf;
using builders::namesIn;
using builders::writeBytes;
using fault_injector::Fault;
using fault_injector::FaultKind;
using Names = std::set<std::string>;

class Fat : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        StandInTest::SetUp();
        fault_injector::pretendFat(true);
    }
    void TearDown() override {
        fault_injector::pretendFat(false);
        device::state = {};
        StandInTest::TearDown();
    }
};

// The calls of `run` that write, flush, name or close, in their order. A flush of a directory is
// "fsync directory": that is opened without being looked at first.
std::vector<std::string> callsOf(const std::function<void()>& run) {
    static const Names watched = {"write", "rename", "renameat2", "unlink", "fsync", "close"};
    fault_injector::arm({});
    run();
    const int calls = fault_injector::disarm();
    std::vector<std::string> names;
    for (int i = 0; i < calls; ++i) {
        const std::string name = fault_injector::nameOfCall(i);
        if (!watched.contains(name)) continue;
        const bool isDirectory =
            name == "fsync" && i > 0 && fault_injector::nameOfCall(i - 1) == std::string("open");
        names.push_back(isDirectory ? "fsync directory" : name);
    }
    return names;
}

TEST_F(Fat, AReplacedFileKeepsItsPlaceUntilTheNewOneIsOnTheDiskUnderItsName) {
    writeBytes("file", "old");
    EXPECT_EQ(
        callsOf([] { EXPECT_TRUE(services::replaceWholeFile("file", "part", "new")); }),
        (std::vector<std::string>{"write", "fsync", "close", "fsync directory", "close", "rename",
                                  "fsync directory", "close", "fsync", "close", "close"}));
    EXPECT_EQ(bytesOf("file"), "new");
    fault_injector::pretendFat(false);
    EXPECT_EQ(callsOf([] { EXPECT_TRUE(services::replaceWholeFile("file", "part", "newer")); }),
              (std::vector<std::string>{"write", "fsync", "close", "rename", "fsync directory",
                                        "close"}));
    EXPECT_EQ(namesIn("."), Names{"file"});
}

TEST_F(Fat, ARemovedFileKeepsItsPlaceUntilItsNameIsGoneFromTheDisk) {
    writeBytes("first", "a");
    writeBytes("second", "b");
    fs::create_directory("directory");
    const std::vector<services::Path> paths = {"first", "directory", "missing", "second"};
    EXPECT_EQ(callsOf([&] { services::deleteAllForGood(paths); }),
              (std::vector<std::string>{"unlink", "unlink", "fsync directory", "close", "close",
                                        "close"}));
    EXPECT_EQ(namesIn("."), Names{"directory"});
}

struct LeftoverRow {
    const char* what;
    const char* leftover;
    const char* finished;  // none when null
    Names onFat;
};

TEST_F(Fat, ALeftoverThatMayShareItsBytesIsSetAside) {
    const LeftoverRow rows[] = {
        {"the same bytes", "bytes", "bytes", {"file", "part.rest1"}},
        {"the file has grown since", "bytes", "bytes and more", {"file", "part.rest1"}},
        {"other bytes", "bytes", "other", {"file"}},
        {"more bytes", "bytes and more", "bytes", {"file"}},
        {"no bytes", "", "bytes", {"file"}},
        {"no file", "bytes", nullptr, {}},
    };
    for (const LeftoverRow& row : rows) {
        SCOPED_TRACE(row.what);
        for (const bool isFat : {true, false}) {
            for (const std::string& name : namesIn("."))
                fs::remove(name);
            writeBytes("part", row.leftover);
            if (row.finished != nullptr) writeBytes("file", row.finished);
            fault_injector::pretendFat(isFat);
            services::settleLeftover("part", "file");
            EXPECT_EQ(namesIn("."), isFat ? row.onFat : (row.finished ? Names{"file"} : Names{}));
            if (row.finished != nullptr) {
                EXPECT_EQ(bytesOf("file"), row.finished);
            }
        }
    }
}

TEST_F(Fat, WhatIsSetAsideIsNeverTouchedAgain) {
    writeBytes("file", "bytes");
    writeBytes("part.rest1", "earlier");
    writeBytes("part", "bytes");
    EXPECT_TRUE(services::replaceWholeFile("file", "part", "new"));
    EXPECT_EQ(namesIn("."), (Names{"file", "part.rest1", "part.rest2"}));
    EXPECT_EQ(bytesOf("part.rest1"), "earlier");
    EXPECT_EQ(bytesOf("part.rest2"), "bytes");
    EXPECT_EQ(bytesOf("file"), "new");
}

bool copyFile() {
    services::CopyGroup group;
    services::addCopy(group, "from", "to", "part");
    return services::completeCopies(group).front();
}

TEST_F(Fat, ANameWithoutBytesIsNoFileThatACopyWouldReplace) {
    writeBytes("from", "content");
    writeBytes("to", "");
    fault_injector::pretendFat(false);
    EXPECT_FALSE(copyFile());
    EXPECT_EQ(bytesOf("to"), "");
    fault_injector::pretendFat(true);
    EXPECT_TRUE(copyFile());
    EXPECT_EQ(bytesOf("to"), "content");
    writeBytes("from", "other");
    EXPECT_FALSE(copyFile());
    EXPECT_EQ(bytesOf("to"), "content");
}

TEST_F(Fat, ACopyThatTheDiskKeepsOtherwiseIsNone) {
    writeBytes("from", "content");
    for (const bool isFat : {true, false}) {
        fault_injector::pretendFat(isFat);
        fault_injector::arm({.kind = FaultKind::interrupt,
                             .names = {"posix_fadvise"},
                             .meanwhile = [] { writeBytes("part", "contenT"); }});
        EXPECT_FALSE(copyFile());
        EXPECT_GT(fault_injector::disarm(), 0) << "it was not read back";
        EXPECT_EQ(namesIn("."), Names{"from"});
    }
}

TEST_F(Fat, AFileIsMovedByACopyThatIsWholeBeforeTheOldNameGoes) {
    writeBytes("from", "content");
    const std::vector<std::string> calls =
        callsOf([] { EXPECT_TRUE(services::moveByCopying("from", "to", "part")); });
    EXPECT_EQ(namesIn("."), Names{"to"});
    EXPECT_EQ(bytesOf("to"), "content");
    const auto named = std::find(calls.begin(), calls.end(), "renameat2");
    const auto removed = std::find(calls.begin(), calls.end(), "unlink");
    EXPECT_LT(std::find(calls.begin(), calls.end(), "fsync"), named);
    EXPECT_LT(std::find(named, calls.end(), "fsync directory"),
              std::find(named, calls.end(), "fsync"));
    EXPECT_LT(std::find(named, calls.end(), "fsync"), removed);
    EXPECT_NE(std::find(removed, calls.end(), "fsync directory"), calls.end());
}

TEST_F(Fat, AFileThatCantBeMovedStaysAsItIs) {
    writeBytes("from", "content");
    writeBytes("to", "");
    EXPECT_FALSE(services::moveByCopying("from", "to", "part"));
    fs::remove("to");
    for (const char* call : {"write", "fsync", "renameat2"}) {
        SCOPED_TRACE(call);
        fault_injector::arm(
            {.kind = FaultKind::fail, .error = ENOSPC, .goesOn = true, .names = {call}});
        EXPECT_FALSE(services::moveByCopying("from", "to", "part"));
        fault_injector::disarm();
        EXPECT_EQ(bytesOf("from"), "content");
        fs::remove("to");  // the whole of it may be there when only the name could not be flushed
        EXPECT_EQ(namesIn("."), Names{"from"});
    }
}

class FatCard : public Fat {
  protected:
    void SetUp() override {
        Fat::SetUp();
        std::vector<device::DictionaryRecord> records;
        for (const std::uint64_t number : {1U, 5U}) {
            records.push_back(builders::makeRecord(number));
            records.back().startDate = static_cast<std::int32_t>(number);
        }
        builders::writeCard(directory, records);
        fs::current_path(directory / "data/result/ergo_bike");
        device::loadDictionary();
    }

    static bool isAnnouncedByCopying() {
        std::vector<device::PendingName> names = {{.record = 1, .oldName = "0000000000000005"}};
        device::state.dictionary[1].fileName = "0000000000000002";
        EXPECT_TRUE(device::announceRenaming(names));
        return names.front().isByCopying;
    }
};

TEST_F(FatCard, TrainingsAreRenumberedByCopiesThere) {
    EXPECT_TRUE(isAnnouncedByCopying());
}

TEST_F(FatCard, ElsewhereTrainingsAreRenamed) {
    fault_injector::pretendFat(false);
    EXPECT_FALSE(isAnnouncedByCopying());
}

TEST_F(FatCard, WithoutRoomForACopyTrainingsAreRenamed) {
    fault_injector::arm(
        {.kind = FaultKind::fail, .error = EIO, .goesOn = true, .names = {"statvfs"}});
    EXPECT_FALSE(isAnnouncedByCopying());
    EXPECT_GT(fault_injector::disarm(), 0);
}

// Freed clusters may come to the disk before the name that stood for them goes.
TEST_F(FatCard, AnIndexThatCantBeReadIsListedFromTheCopyBesideIt) {
    const std::string index = bytesOf("dictionary.2");
    writeBytes(std::string(device::indexCopyName), device::encodeIndexCopy({.index = index}));
    // The copy is read first, then the index.
    fault_injector::arm({.kind = FaultKind::fail, .at = 1, .error = EIO, .names = {"read"}});
    device::loadDictionary();
    EXPECT_GT(fault_injector::disarm(), 1);
    EXPECT_EQ(device::state.dictionary.size(), 2U);
    EXPECT_TRUE(device::state.dictionaryReadOnly);
    EXPECT_FALSE(device::state.dictionaryUnreadable);
    EXPECT_FALSE(device::beginChange());
    device::loadDictionary();
    EXPECT_FALSE(device::state.dictionaryReadOnly);
    EXPECT_EQ(device::state.dictionary.size(), 2U);
    EXPECT_FALSE(fs::exists(device::indexCopyName));
}

}  // namespace
