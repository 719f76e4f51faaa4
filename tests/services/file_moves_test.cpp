#include "services/file_moves.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "tests/files/file_size_limit.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

namespace fs = std::filesystem;
using files_tests::FileSizeLimit;
using services::Renaming;

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

using FileMoves = stand_ins::StandInTest;

const std::set<std::string> both = {"from", "to"};

TEST_F(FileMoves, ARenamedFileHasItsNewNameOnly) {
    write("from", "content");
    EXPECT_TRUE(services::renameFile("from", "to"));
    EXPECT_EQ(names(), std::set<std::string>{"to"});
    EXPECT_EQ(read("to"), "content");
}

TEST_F(FileMoves, NoWayOfRenamingReplacesAFile) {
    const auto byFile = [](services::PathView from, services::PathView to) {
        return services::renameFile(from, to) ? Renaming::done : Renaming::failed;
    };
    for (const auto way : {+byFile, services::renameExclusively, services::renameByLinking,
                           services::renameAfterLooking}) {
        write("from", "new");
        write("to", "old");
        EXPECT_EQ(way("from", "to"), Renaming::failed);
        EXPECT_EQ(names(), both);
        EXPECT_EQ(read("from"), "new");
        EXPECT_EQ(read("to"), "old");
    }
}

TEST_F(FileMoves, NoWayOfRenamingReplacesADanglingLink) {
    write("from", "new");
    fs::create_symlink("nowhere", "to");
    for (const auto way :
         {services::renameExclusively, services::renameByLinking, services::renameAfterLooking}) {
        EXPECT_EQ(way("from", "to"), Renaming::failed);
        EXPECT_EQ(names(), both);
        EXPECT_TRUE(fs::is_symlink("to"));
    }
}

TEST_F(FileMoves, EveryWayOfRenamingMovesTheFile) {
    for (const auto way :
         {services::renameExclusively, services::renameByLinking, services::renameAfterLooking}) {
        write("from", "content");
        EXPECT_EQ(way("from", "to"), Renaming::done);
        EXPECT_EQ(names(), std::set<std::string>{"to"});
        EXPECT_EQ(read("to"), "content");
        fs::remove("to");
    }
}

// Where renaming takes two steps, a run that was cut off in between leaves both names.
TEST_F(FileMoves, ARenameThatWasCutOffBetweenItsStepsIsCompleted) {
    write("from", "content");
    fs::create_hard_link("from", "to");
    EXPECT_EQ(services::renameByLinking("from", "to"), Renaming::done);
    EXPECT_EQ(names(), std::set<std::string>{"to"});
    EXPECT_EQ(read("to"), "content");
}

TEST_F(FileMoves, AFileIsNotRenamedToItself) {
    write("from", "content");
    fs::create_hard_link("from", "other");
    EXPECT_EQ(services::renameByLinking("from", "from"), Renaming::failed);
    EXPECT_EQ(read("from"), "content");
}

TEST_F(FileMoves, FilesOfTwoFileSystemsAreNeverTakenForOne) {
    struct stat here = {};
    struct stat there = {};
    if (stat(".", &here) != 0 || stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev)
        GTEST_SKIP() << "no second file system here";
    const fs::path elsewhere = fs::path("/dev/shm") / directory.filename();
    fs::create_directory(elsewhere);
    write("from", "content");
    write(elsewhere / "to", "content");
    fs::create_hard_link("from", "from again");
    fs::create_hard_link(elsewhere / "to", elsewhere / "to again");
    EXPECT_EQ(services::renameByLinking("from", (elsewhere / "to").string()), Renaming::failed);
    EXPECT_TRUE(fs::exists("from"));
    EXPECT_TRUE(fs::exists(elsewhere / "to"));
    fs::remove_all(elsewhere);
}

TEST_F(FileMoves, AMissingFileOrAnUnusablePathCanNotBeRenamed) {
    EXPECT_FALSE(services::renameFile("missing", "to"));
    write("from", "content");
    EXPECT_FALSE(services::renameFile("from", ""));
    EXPECT_FALSE(services::renameFile("", "to"));
    EXPECT_FALSE(services::renameFile("from", services::PathView("to\0x", 4)));
    EXPECT_FALSE(services::renameFile("from", "missing/to"));
    EXPECT_EQ(names(), std::set<std::string>{"from"});
}

TEST_F(FileMoves, ACopyHasTheContentAndTheTimeOfItsSource) {
    // More than one block, and not a multiple of it.
    std::string content;
    for (int i = 0; i < 2'500'001; ++i)
        content += static_cast<char>(i * 31 % 251);
    write("from", content);
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(50'000);
    fs::last_write_time("from", time);

    EXPECT_TRUE(services::copyFile("from", "to", "to.part"));
    EXPECT_EQ(names(), both);
    EXPECT_TRUE(read("to") == content);
    EXPECT_EQ(fs::last_write_time("to"), fs::last_write_time("from"));
}

TEST_F(FileMoves, AnEmptyFileIsCopiedToo) {
    write("from", "");
    EXPECT_TRUE(services::copyFile("from", "to", "to.part"));
    EXPECT_EQ(names(), both);
    EXPECT_EQ(fs::file_size("to"), 0U);
}

TEST_F(FileMoves, ATargetOfTheSameContentCountsAsCopied) {
    write("from", "content");
    write("to", "content");
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(50'000);
    fs::last_write_time("to", time);
    EXPECT_TRUE(services::copyFile("from", "to", "to.part"));
    EXPECT_EQ(fs::last_write_time("to"), time);
    EXPECT_EQ(names(), both);
}

TEST_F(FileMoves, ATargetOfOtherContentIsLeftAlone) {
    for (const std::string other : {"kontent", "contentX", "conten", ""}) {
        write("from", "content");
        write("to", other);
        EXPECT_FALSE(services::copyFile("from", "to", "to.part"));
        EXPECT_EQ(read("to"), other);
        EXPECT_EQ(names(), both);
    }
}

TEST_F(FileMoves, ATargetThatIsNoRegularFileIsLeftAlone) {
    write("from", "content");
    write("elsewhere", "content");
    fs::create_symlink("elsewhere", "link");
    fs::create_symlink("nowhere", "dangling");
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    for (const char* target : {"link", "dangling", "directory", "fifo"})
        EXPECT_FALSE(services::copyFile("from", target, "part")) << target;
    EXPECT_FALSE(fs::exists("nowhere"));
    EXPECT_FALSE(fs::exists("part"));
}

TEST_F(FileMoves, OnlyRegularFilesAreCopiedAndNoLinkIsFollowed) {
    write("elsewhere", "content");
    fs::create_symlink("elsewhere", "link");
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    for (const char* source : {"link", "directory", "fifo", "missing", ""}) {
        EXPECT_FALSE(services::copyFile(source, "to", "to.part")) << source;
        EXPECT_FALSE(fs::exists("to"));
        EXPECT_FALSE(fs::exists("to.part"));
    }
}

TEST_F(FileMoves, AFullDiskLeavesNothingBehind) {
    write("from", std::string(3000, 'x'));
    bool copied = true;
    {
        const FileSizeLimit full(1000);
        copied = services::copyFile("from", "to", "to.part");
    }
    EXPECT_FALSE(copied);
    EXPECT_EQ(names(), std::set<std::string>{"from"});
}

TEST_F(FileMoves, ASourceThatDoesNotKeepItsLengthIsNoCopy) {
    // A regular file of length 0 from which bytes come all the same.
    ASSERT_EQ(fs::file_size("/proc/self/status"), 0U);
    EXPECT_FALSE(services::copyFile("/proc/self/status", "to", "to.part"));
    EXPECT_TRUE(names().empty());
}

TEST_F(FileMoves, ASourceThatCanNotBeReadToItsEndIsNoCopy) {
    // A regular file whose first bytes can't be read.
    ASSERT_TRUE(fs::is_regular_file("/proc/self/mem"));
    EXPECT_FALSE(services::copyFile("/proc/self/mem", "to", "to.part"));
    EXPECT_TRUE(names().empty());
}

TEST_F(FileMoves, AMissingTargetDirectoryLeavesNothingBehind) {
    write("from", "content");
    EXPECT_FALSE(services::copyFile("from", "missing/to", "missing/to.part"));
    EXPECT_EQ(names(), std::set<std::string>{"from"});
}

TEST_F(FileMoves, UnusablePathsLeaveNothingBehind) {
    write("from", "content");
    for (const services::PathView path : {services::PathView(""), services::PathView("to\0x", 4)}) {
        EXPECT_FALSE(services::copyFile("from", path, "to.part"));
        EXPECT_FALSE(services::copyFile("from", "to", path));
        EXPECT_FALSE(services::copyFile(path, "to", "to.part"));
    }
    EXPECT_EQ(names(), std::set<std::string>{"from"});
}

TEST_F(FileMoves, AnExistingTemporaryFileIsNotWritten) {
    write("from", "content");
    write("to.part", "somebody's");
    EXPECT_FALSE(services::copyFile("from", "to", "to.part"));
    EXPECT_EQ(read("to.part"), "somebody's");
    EXPECT_FALSE(fs::exists("to"));
}

TEST_F(FileMoves, CuttingKeepsTheBeginning) {
    write("file", "0123456789");
    EXPECT_TRUE(services::cutFile("file", 4));
    EXPECT_EQ(read("file"), "0123");
    EXPECT_TRUE(services::cutFile("file", 100));
    EXPECT_EQ(read("file"), "0123");
    EXPECT_FALSE(services::cutFile("file", -1));
    EXPECT_EQ(read("file"), "0123");
    EXPECT_FALSE(services::cutFile("missing", 0));
    EXPECT_FALSE(fs::exists("missing"));
}

TEST_F(FileMoves, OnlyRegularFilesAreDeleted) {
    write("file", "content");
    write("elsewhere", "content");
    fs::create_symlink("elsewhere", "link");
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    EXPECT_TRUE(services::deleteRegularFile("file"));
    for (const char* other : {"link", "directory", "fifo", "missing", ""})
        EXPECT_FALSE(services::deleteRegularFile(other)) << other;
    EXPECT_EQ(names(), (std::set<std::string>{"directory", "elsewhere", "fifo", "link"}));
}

TEST_F(FileMoves, ADirectoryTellsItsNames) {
    fs::create_directory("sub");
    write("sub/one", "");
    write("sub/.two", "");
    const auto found = services::namesInDirectory("sub/");
    EXPECT_EQ(std::set<std::string>(found.begin(), found.end()),
              (std::set<std::string>{".two", "one"}));
    EXPECT_TRUE(services::namesInDirectory("missing/").empty());
    EXPECT_TRUE(services::namesInDirectory("").empty());
}

}  // namespace
