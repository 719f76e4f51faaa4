#include "services/disk/file_copies.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/builders/file_bytes.h"
#include "tests/stand_ins/file_size_limit.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

namespace fs = std::filesystem;
using builders::bytesOf;
using builders::namesIn;
using builders::writeBytes;
using stand_ins::FileSizeLimit;

// A group of one.
bool copyFile(services::PathView source, services::PathView target, services::PathView temporary) {
    services::CopyGroup group;
    const bool added = services::addCopy(group, source, target, temporary);
    const std::vector<bool> copied = services::completeCopies(group);
    EXPECT_EQ(copied, std::vector<bool>{added});
    return copied.front();
}

using FileCopies = stand_ins::StandInTest;

const std::set<std::string> both = {"from", "to"};

TEST_F(FileCopies, ACopyHasTheContentAndTheTimeOfItsSource) {
    // More than one block, and not a multiple of it.
    std::string content;
    for (int i = 0; i < 2'500'001; ++i)
        content += static_cast<char>(i * 31 % 251);
    writeBytes("from", content);
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(50'000);
    fs::last_write_time("from", time);

    EXPECT_TRUE(copyFile("from", "to", "to.part"));
    EXPECT_EQ(namesIn("."), both);
    EXPECT_TRUE(bytesOf("to") == content);
    EXPECT_EQ(fs::last_write_time("to"), fs::last_write_time("from"));
}

TEST_F(FileCopies, AnEmptyFileIsCopiedToo) {
    writeBytes("from", "");
    EXPECT_TRUE(copyFile("from", "to", "to.part"));
    EXPECT_EQ(namesIn("."), both);
    EXPECT_EQ(fs::file_size("to"), 0U);
}

TEST_F(FileCopies, ATargetOfTheSameContentCountsAsCopied) {
    writeBytes("from", "content");
    writeBytes("to", "content");
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(50'000);
    fs::last_write_time("to", time);
    EXPECT_TRUE(copyFile("from", "to", "to.part"));
    EXPECT_EQ(fs::last_write_time("to"), time);
    EXPECT_EQ(namesIn("."), both);
}

TEST_F(FileCopies, ATargetOfOtherContentIsLeftAlone) {
    for (const std::string other : {"kontent", "contentX", "conten", ""}) {
        writeBytes("from", "content");
        writeBytes("to", other);
        EXPECT_FALSE(copyFile("from", "to", "to.part"));
        EXPECT_EQ(bytesOf("to"), other);
        EXPECT_EQ(namesIn("."), both);
    }
}

TEST_F(FileCopies, ATargetThatIsNoRegularFileIsLeftAlone) {
    writeBytes("from", "content");
    writeBytes("elsewhere", "content");
    fs::create_symlink("elsewhere", "link");
    fs::create_symlink("nowhere", "dangling");
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    for (const char* target : {"link", "dangling", "directory", "fifo"})
        EXPECT_FALSE(copyFile("from", target, "part")) << target;
    EXPECT_FALSE(fs::exists("nowhere"));
    EXPECT_FALSE(fs::exists("part"));
}

TEST_F(FileCopies, OnlyRegularFilesAreCopiedAndNoLinkIsFollowed) {
    writeBytes("elsewhere", "content");
    fs::create_symlink("elsewhere", "link");
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    for (const char* source : {"link", "directory", "fifo", "missing", ""}) {
        EXPECT_FALSE(copyFile(source, "to", "to.part")) << source;
        EXPECT_FALSE(fs::exists("to"));
        EXPECT_FALSE(fs::exists("to.part"));
    }
}

TEST_F(FileCopies, AFullDiskLeavesNothingBehind) {
    writeBytes("from", std::string(3000, 'x'));
    bool copied = true;
    {
        const FileSizeLimit full(1000);
        copied = copyFile("from", "to", "to.part");
    }
    EXPECT_FALSE(copied);
    EXPECT_EQ(namesIn("."), std::set<std::string>{"from"});
}

TEST_F(FileCopies, ASourceThatDoesNotKeepItsLengthIsNoCopy) {
    // A regular file of length 0 from which bytes come all the same.
    ASSERT_EQ(fs::file_size("/proc/self/status"), 0U);
    EXPECT_FALSE(copyFile("/proc/self/status", "to", "to.part"));
    EXPECT_TRUE(namesIn(".").empty());
}

TEST_F(FileCopies, ASourceThatCanNotBeReadToItsEndIsNoCopy) {
    // A regular file whose first bytes can't be read.
    ASSERT_TRUE(fs::is_regular_file("/proc/self/mem"));
    EXPECT_FALSE(copyFile("/proc/self/mem", "to", "to.part"));
    EXPECT_TRUE(namesIn(".").empty());
}

TEST_F(FileCopies, AMissingTargetDirectoryLeavesNothingBehind) {
    writeBytes("from", "content");
    EXPECT_FALSE(copyFile("from", "missing/to", "missing/to.part"));
    EXPECT_EQ(namesIn("."), std::set<std::string>{"from"});
}

TEST_F(FileCopies, UnusablePathsLeaveNothingBehind) {
    writeBytes("from", "content");
    for (const services::PathView path : {services::PathView(""), services::PathView("to\0x", 4)}) {
        EXPECT_FALSE(copyFile("from", path, "to.part"));
        EXPECT_FALSE(copyFile("from", "to", path));
        EXPECT_FALSE(copyFile(path, "to", "to.part"));
    }
    EXPECT_EQ(namesIn("."), std::set<std::string>{"from"});
}

TEST_F(FileCopies, AnExistingTemporaryFileIsNotWritten) {
    writeBytes("from", "content");
    writeBytes("to.part", "somebody's");
    EXPECT_FALSE(copyFile("from", "to", "to.part"));
    EXPECT_EQ(bytesOf("to.part"), "somebody's");
    EXPECT_FALSE(fs::exists("to"));
}

TEST_F(FileCopies, OfAGroupGetTheirNamesTogether) {
    writeBytes("a", "one");
    writeBytes("b", std::string(3'000'000, 'b'));
    services::CopyGroup group;
    EXPECT_TRUE(services::addCopy(group, "a", "A", "A.part"));
    EXPECT_TRUE(services::addCopy(group, "b", "B", "B.part"));
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"a", "b", "A.part", "B.part"}));
    EXPECT_EQ(group.bytes, 3'000'003);
    EXPECT_EQ(services::completeCopies(group), (std::vector<bool>{true, true}));
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"a", "b", "A", "B"}));
    EXPECT_EQ(bytesOf("A"), "one");
    EXPECT_TRUE(bytesOf("B") == bytesOf("b"));
    EXPECT_EQ(group.bytes, 0);
    EXPECT_TRUE(services::completeCopies(group).empty());
}

TEST_F(FileCopies, OneThatFailsLeavesTheOthersOfItsGroup) {
    writeBytes("a", "one");
    writeBytes("b", std::string(3000, 'b'));
    writeBytes("c", "three");
    writeBytes("d", "four");
    writeBytes("D", "other");
    writeBytes("e", "five");
    writeBytes("E", "five");
    services::CopyGroup group;
    {
        const FileSizeLimit full(1000);
        EXPECT_TRUE(services::addCopy(group, "a", "A", "A.part"));
        EXPECT_FALSE(services::addCopy(group, "b", "B", "B.part"));
        EXPECT_TRUE(services::addCopy(group, "c", "C", "C.part"));
        EXPECT_FALSE(services::addCopy(group, "d", "D", "D.part"));
        EXPECT_TRUE(services::addCopy(group, "e", "E", "E.part"));
    }
    EXPECT_EQ(services::completeCopies(group), (std::vector<bool>{true, false, true, false, true}));
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"a", "b", "c", "d", "e", "A", "C", "D", "E"}));
    EXPECT_EQ(bytesOf("D"), "other");
}

// Somebody makes a file of that name between the copying and the naming.
TEST_F(FileCopies, ATargetThatComesMeanwhileIsNotReplaced) {
    writeBytes("a", "one");
    writeBytes("b", "two");
    services::CopyGroup group;
    EXPECT_TRUE(services::addCopy(group, "a", "A", "A.part"));
    EXPECT_TRUE(services::addCopy(group, "b", "B", "B.part"));
    writeBytes("A", "somebody's");
    EXPECT_EQ(services::completeCopies(group), (std::vector<bool>{false, true}));
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"a", "b", "A", "B"}));
    EXPECT_EQ(bytesOf("A"), "somebody's");
}

TEST_F(FileCopies, ADroppedGroupLeavesNothingOfItsOwn) {
    writeBytes("a", "one");
    writeBytes("b", "two");
    writeBytes("B", "two");
    services::CopyGroup group;
    EXPECT_TRUE(services::addCopy(group, "a", "A", "A.part"));
    EXPECT_TRUE(services::addCopy(group, "b", "B", "B.part"));
    EXPECT_FALSE(services::addCopy(group, "c", "C", "C.part"));
    services::dropCopies(group);
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"a", "b", "B"}));
    EXPECT_TRUE(group.copies.empty());
    EXPECT_EQ(group.bytes, 0);
}

}  // namespace
