#include "services/disk/file_moves.h"
#include "services/disk/directories.h"
#include "services/disk/posix/renaming.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "tests/stand_ins/stand_ins.h"

namespace {

namespace fs = std::filesystem;
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
