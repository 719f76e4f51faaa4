#include "services/disk/file_moves.h"
#include "services/disk/directories.h"
#include "services/disk/posix/renaming.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <set>
#include <string>

#include "tests/builders/file_bytes.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

namespace fs = std::filesystem;
using builders::bytesOf;
using builders::namesIn;
using builders::writeBytes;
using services::Renaming;

using FileMoves = stand_ins::StandInTest;

const std::set<std::string> both = {"from", "to"};

TEST_F(FileMoves, ARenamedFileHasItsNewNameOnly) {
    writeBytes("from", "content");
    EXPECT_TRUE(services::renameFile("from", "to"));
    EXPECT_EQ(namesIn("."), std::set<std::string>{"to"});
    EXPECT_EQ(bytesOf("to"), "content");
}

TEST_F(FileMoves, NoWayOfRenamingReplacesAFile) {
    const auto byFile = [](services::PathView from, services::PathView to) {
        return services::renameFile(from, to) ? Renaming::done : Renaming::failed;
    };
    for (const auto way : {+byFile, services::renameExclusively, services::renameByLinking,
                           services::renameAfterLooking}) {
        writeBytes("from", "new");
        writeBytes("to", "old");
        EXPECT_EQ(way("from", "to"), Renaming::failed);
        EXPECT_EQ(namesIn("."), both);
        EXPECT_EQ(bytesOf("from"), "new");
        EXPECT_EQ(bytesOf("to"), "old");
    }
}

TEST_F(FileMoves, NoWayOfRenamingReplacesADanglingLink) {
    writeBytes("from", "new");
    fs::create_symlink("nowhere", "to");
    for (const auto way :
         {services::renameExclusively, services::renameByLinking, services::renameAfterLooking}) {
        EXPECT_EQ(way("from", "to"), Renaming::failed);
        EXPECT_EQ(namesIn("."), both);
        EXPECT_TRUE(fs::is_symlink("to"));
    }
}

TEST_F(FileMoves, EveryWayOfRenamingMovesTheFile) {
    for (const auto way :
         {services::renameExclusively, services::renameByLinking, services::renameAfterLooking}) {
        writeBytes("from", "content");
        EXPECT_EQ(way("from", "to"), Renaming::done);
        EXPECT_EQ(namesIn("."), std::set<std::string>{"to"});
        EXPECT_EQ(bytesOf("to"), "content");
        fs::remove("to");
    }
}

// Where renaming takes two steps, a run that was cut off in between leaves both names.
TEST_F(FileMoves, ARenameThatWasCutOffBetweenItsStepsIsCompleted) {
    writeBytes("from", "content");
    fs::create_hard_link("from", "to");
    EXPECT_EQ(services::renameByLinking("from", "to"), Renaming::done);
    EXPECT_EQ(namesIn("."), std::set<std::string>{"to"});
    EXPECT_EQ(bytesOf("to"), "content");
}

TEST_F(FileMoves, AFileIsNotRenamedToItself) {
    writeBytes("from", "content");
    fs::create_hard_link("from", "other");
    EXPECT_EQ(services::renameByLinking("from", "from"), Renaming::failed);
    EXPECT_EQ(bytesOf("from"), "content");
}

TEST_F(FileMoves, FilesOfTwoFileSystemsAreNeverTakenForOne) {
    struct stat here = {};
    struct stat there = {};
    if (stat(".", &here) != 0 || stat("/dev/shm", &there) != 0 || here.st_dev == there.st_dev)
        GTEST_SKIP() << "no second file system here";
    const fs::path elsewhere = fs::path("/dev/shm") / directory.filename();
    fs::create_directory(elsewhere);
    writeBytes("from", "content");
    writeBytes(elsewhere / "to", "content");
    fs::create_hard_link("from", "from again");
    fs::create_hard_link(elsewhere / "to", elsewhere / "to again");
    EXPECT_EQ(services::renameByLinking("from", (elsewhere / "to").string()), Renaming::failed);
    EXPECT_TRUE(fs::exists("from"));
    EXPECT_TRUE(fs::exists(elsewhere / "to"));
    fs::remove_all(elsewhere);
}

TEST_F(FileMoves, AMissingFileOrAnUnusablePathCanNotBeRenamed) {
    EXPECT_FALSE(services::renameFile("missing", "to"));
    writeBytes("from", "content");
    EXPECT_FALSE(services::renameFile("from", ""));
    EXPECT_FALSE(services::renameFile("", "to"));
    EXPECT_FALSE(services::renameFile("from", services::PathView("to\0x", 4)));
    EXPECT_FALSE(services::renameFile("from", "missing/to"));
    EXPECT_EQ(namesIn("."), std::set<std::string>{"from"});
}

TEST_F(FileMoves, CuttingKeepsTheBeginning) {
    writeBytes("file", "0123456789");
    EXPECT_TRUE(services::cutFile("file", 4));
    EXPECT_EQ(bytesOf("file"), "0123");
    EXPECT_TRUE(services::cutFile("file", 100));
    EXPECT_EQ(bytesOf("file"), "0123");
    EXPECT_FALSE(services::cutFile("file", -1));
    EXPECT_EQ(bytesOf("file"), "0123");
    EXPECT_FALSE(services::cutFile("missing", 0));
    EXPECT_FALSE(fs::exists("missing"));
}

TEST_F(FileMoves, OnlyRegularFilesAreDeleted) {
    writeBytes("file", "content");
    writeBytes("elsewhere", "content");
    fs::create_symlink("elsewhere", "link");
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    EXPECT_TRUE(services::deleteRegularFile("file"));
    for (const char* other : {"link", "directory", "fifo", "missing", ""})
        EXPECT_FALSE(services::deleteRegularFile(other)) << other;
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"directory", "elsewhere", "fifo", "link"}));
}

TEST_F(FileMoves, ADirectoryTellsItsNames) {
    fs::create_directory("sub");
    writeBytes("sub/one", "");
    writeBytes("sub/.two", "");
    const auto found = services::namesInDirectory("sub/");
    EXPECT_EQ(std::set<std::string>(found.begin(), found.end()),
              (std::set<std::string>{".two", "one"}));
    EXPECT_TRUE(services::namesInDirectory("missing/").empty());
    EXPECT_TRUE(services::namesInDirectory("").empty());
}

}  // namespace
