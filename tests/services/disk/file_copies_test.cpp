#include "services/disk/file_copies.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "tests/files/file_size_limit.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

namespace fs = std::filesystem;
using files_tests::FileSizeLimit;

void write(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> names() {
    std::set<std::string> found;
    for (const auto& entry : fs::directory_iterator("."))
        found.insert(entry.path().filename().string());
    return found;
}

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
    write("from", content);
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(50'000);
    fs::last_write_time("from", time);

    EXPECT_TRUE(copyFile("from", "to", "to.part"));
    EXPECT_EQ(names(), both);
    EXPECT_TRUE(read("to") == content);
    EXPECT_EQ(fs::last_write_time("to"), fs::last_write_time("from"));
}

TEST_F(FileCopies, AnEmptyFileIsCopiedToo) {
    write("from", "");
    EXPECT_TRUE(copyFile("from", "to", "to.part"));
    EXPECT_EQ(names(), both);
    EXPECT_EQ(fs::file_size("to"), 0U);
}

TEST_F(FileCopies, ATargetOfTheSameContentCountsAsCopied) {
    write("from", "content");
    write("to", "content");
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(50'000);
    fs::last_write_time("to", time);
    EXPECT_TRUE(copyFile("from", "to", "to.part"));
    EXPECT_EQ(fs::last_write_time("to"), time);
    EXPECT_EQ(names(), both);
}

TEST_F(FileCopies, ATargetOfOtherContentIsLeftAlone) {
    for (const std::string other : {"kontent", "contentX", "conten", ""}) {
        write("from", "content");
        write("to", other);
        EXPECT_FALSE(copyFile("from", "to", "to.part"));
        EXPECT_EQ(read("to"), other);
        EXPECT_EQ(names(), both);
    }
}

TEST_F(FileCopies, ATargetThatIsNoRegularFileIsLeftAlone) {
    write("from", "content");
    write("elsewhere", "content");
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
    write("elsewhere", "content");
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
    write("from", std::string(3000, 'x'));
    bool copied = true;
    {
        const FileSizeLimit full(1000);
        copied = copyFile("from", "to", "to.part");
    }
    EXPECT_FALSE(copied);
    EXPECT_EQ(names(), std::set<std::string>{"from"});
}

TEST_F(FileCopies, ASourceThatDoesNotKeepItsLengthIsNoCopy) {
    // A regular file of length 0 from which bytes come all the same.
    ASSERT_EQ(fs::file_size("/proc/self/status"), 0U);
    EXPECT_FALSE(copyFile("/proc/self/status", "to", "to.part"));
    EXPECT_TRUE(names().empty());
}

TEST_F(FileCopies, ASourceThatCanNotBeReadToItsEndIsNoCopy) {
    // A regular file whose first bytes can't be read.
    ASSERT_TRUE(fs::is_regular_file("/proc/self/mem"));
    EXPECT_FALSE(copyFile("/proc/self/mem", "to", "to.part"));
    EXPECT_TRUE(names().empty());
}

TEST_F(FileCopies, AMissingTargetDirectoryLeavesNothingBehind) {
    write("from", "content");
    EXPECT_FALSE(copyFile("from", "missing/to", "missing/to.part"));
    EXPECT_EQ(names(), std::set<std::string>{"from"});
}

TEST_F(FileCopies, UnusablePathsLeaveNothingBehind) {
    write("from", "content");
    for (const services::PathView path : {services::PathView(""), services::PathView("to\0x", 4)}) {
        EXPECT_FALSE(copyFile("from", path, "to.part"));
        EXPECT_FALSE(copyFile("from", "to", path));
        EXPECT_FALSE(copyFile(path, "to", "to.part"));
    }
    EXPECT_EQ(names(), std::set<std::string>{"from"});
}

TEST_F(FileCopies, AnExistingTemporaryFileIsNotWritten) {
    write("from", "content");
    write("to.part", "somebody's");
    EXPECT_FALSE(copyFile("from", "to", "to.part"));
    EXPECT_EQ(read("to.part"), "somebody's");
    EXPECT_FALSE(fs::exists("to"));
}

TEST_F(FileCopies, OfAGroupGetTheirNamesTogether) {
    write("a", "one");
    write("b", std::string(3'000'000, 'b'));
    services::CopyGroup group;
    EXPECT_TRUE(services::addCopy(group, "a", "A", "A.part"));
    EXPECT_TRUE(services::addCopy(group, "b", "B", "B.part"));
    EXPECT_EQ(names(), (std::set<std::string>{"a", "b", "A.part", "B.part"}));
    EXPECT_EQ(group.bytes, 3'000'003);
    EXPECT_EQ(services::completeCopies(group), (std::vector<bool>{true, true}));
    EXPECT_EQ(names(), (std::set<std::string>{"a", "b", "A", "B"}));
    EXPECT_EQ(read("A"), "one");
    EXPECT_TRUE(read("B") == read("b"));
    EXPECT_EQ(group.bytes, 0);
    EXPECT_TRUE(services::completeCopies(group).empty());
}

TEST_F(FileCopies, OneThatFailsLeavesTheOthersOfItsGroup) {
    write("a", "one");
    write("b", std::string(3000, 'b'));
    write("c", "three");
    write("d", "four");
    write("D", "other");
    write("e", "five");
    write("E", "five");
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
    EXPECT_EQ(names(), (std::set<std::string>{"a", "b", "c", "d", "e", "A", "C", "D", "E"}));
    EXPECT_EQ(read("D"), "other");
}

// Somebody makes a file of that name between the copying and the naming.
TEST_F(FileCopies, ATargetThatComesMeanwhileIsNotReplaced) {
    write("a", "one");
    write("b", "two");
    services::CopyGroup group;
    EXPECT_TRUE(services::addCopy(group, "a", "A", "A.part"));
    EXPECT_TRUE(services::addCopy(group, "b", "B", "B.part"));
    write("A", "somebody's");
    EXPECT_EQ(services::completeCopies(group), (std::vector<bool>{false, true}));
    EXPECT_EQ(names(), (std::set<std::string>{"a", "b", "A", "B"}));
    EXPECT_EQ(read("A"), "somebody's");
}

TEST_F(FileCopies, ADroppedGroupLeavesNothingOfItsOwn) {
    write("a", "one");
    write("b", "two");
    write("B", "two");
    services::CopyGroup group;
    EXPECT_TRUE(services::addCopy(group, "a", "A", "A.part"));
    EXPECT_TRUE(services::addCopy(group, "b", "B", "B.part"));
    EXPECT_FALSE(services::addCopy(group, "c", "C", "C.part"));
    services::dropCopies(group);
    EXPECT_EQ(names(), (std::set<std::string>{"a", "b", "B"}));
    EXPECT_TRUE(group.copies.empty());
    EXPECT_EQ(group.bytes, 0);
}

}  // namespace
