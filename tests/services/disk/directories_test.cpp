#include "services/disk/directories.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/stand_ins/stand_ins.h"

namespace {

using services::canReadFile;
using services::createDirectory;
using services::currentDirectory;
using services::deleteFile;
using services::isDirectory;
using services::Path;
using services::setCurrentDirectory;

class Directories : public stand_ins::StandInTest {
  protected:
    static void makeFile(const std::string& name) { std::ofstream(name) << "x"; }

    std::string own() const { return directory.string() + "/"; }
};

TEST_F(Directories, TheCurrentDirectoryEndsWithASlash) {
    EXPECT_EQ(own(), currentDirectory());
    ASSERT_TRUE(setCurrentDirectory("/"));
    EXPECT_EQ("/", currentDirectory());
}

TEST_F(Directories, NamesBeyondLatin1AndBeyondUtf8ComeBackByteForByte) {
    for (const Path name : {"Łódź", "Bücher", "\xFF\xFE"}) {
        ASSERT_TRUE(createDirectory(own() + name));
        ASSERT_TRUE(setCurrentDirectory(own() + name));
        EXPECT_EQ(own() + name + "/", currentDirectory());
    }
}

TEST_F(Directories, ALongPathComesBackWhole) {
    Path expected = own();
    const Path name(200, 'd');
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(createDirectory(name));
        ASSERT_TRUE(setCurrentDirectory(name));
        expected += name + "/";
    }
    EXPECT_EQ(expected, currentDirectory());
}

TEST_F(Directories, TheCurrentOneIsKnownHoweverItIsWritten) {
    std::filesystem::create_directory("below");
    std::filesystem::create_symlink(".", "link");
    for (const services::Path& path : {services::Path("."), services::Path("below/.."),
                                       services::Path("link/"), services::currentDirectory()}) {
        EXPECT_TRUE(services::isCurrentDirectory(path)) << path;
    }
    for (const char* path : {"", "below", "missing"})
        EXPECT_FALSE(services::isCurrentDirectory(path)) << path;
}

TEST_F(Directories, ADirectoryThatIsGoneHasNoName) {
    ASSERT_TRUE(createDirectory("gone"));
    ASSERT_TRUE(setCurrentDirectory("gone"));
    std::filesystem::remove(directory / "gone");
    EXPECT_EQ("", currentDirectory());
}

TEST_F(Directories, AFailedChangeLeavesTheDirectory) {
    makeFile("file");
    EXPECT_FALSE(setCurrentDirectory("missing"));
    EXPECT_FALSE(setCurrentDirectory("file"));
    EXPECT_FALSE(setCurrentDirectory(""));
    EXPECT_EQ(own(), currentDirectory());
}

TEST_F(Directories, NewDirectoriesAreTheirOwnersOnly) {
    EXPECT_TRUE(createDirectory("data"));
    EXPECT_TRUE(createDirectory("data/result/"));
    EXPECT_FALSE(createDirectory("data"));
    EXPECT_FALSE(createDirectory("missing/result"));
    EXPECT_FALSE(createDirectory(""));
    struct stat status = {};
    ASSERT_EQ(0, stat("data", &status));
    EXPECT_EQ(0700U, status.st_mode & 0777U);
    EXPECT_TRUE(isDirectory("data/result"));
}

TEST_F(Directories, DeletingTakesFilesOnly) {
    makeFile("file");
    ASSERT_TRUE(createDirectory("data"));
    EXPECT_TRUE(deleteFile("file"));
    EXPECT_FALSE(std::filesystem::exists("file"));
    EXPECT_FALSE(deleteFile("file"));
    EXPECT_FALSE(deleteFile("data"));
    EXPECT_TRUE(isDirectory("data"));
    EXPECT_FALSE(deleteFile(""));
}

TEST_F(Directories, DeletingALinkLeavesWhatItLeadsTo) {
    makeFile("file");
    std::filesystem::create_symlink("file", "link");
    EXPECT_TRUE(deleteFile("link"));
    EXPECT_TRUE(canReadFile("file"));
}

TEST_F(Directories, OnlyRegularFilesCanBeRead) {
    makeFile("file");
    ASSERT_TRUE(createDirectory("data"));
    ASSERT_EQ(0, mkfifo("fifo", 0600));
    std::filesystem::create_symlink("file", "link");
    std::filesystem::create_symlink("missing", "dangling");
    std::filesystem::create_symlink("loop", "loop");
    EXPECT_TRUE(canReadFile("file"));
    EXPECT_TRUE(canReadFile("link"));
    EXPECT_FALSE(canReadFile("data"));
    EXPECT_FALSE(canReadFile("fifo"));
    EXPECT_FALSE(canReadFile("/dev/null"));
    EXPECT_FALSE(canReadFile("missing"));
    for (const char* name : {"missing", "dangling", "data", "fifo", "file/below", "loop"})
        EXPECT_EQ(services::lookUpFile(name), services::FileLookup::missing) << name;
    EXPECT_EQ(services::lookUpFile(std::string(300, 'x')), services::FileLookup::missing);
    EXPECT_EQ(services::lookUpFile("file"), services::FileLookup::readable);
    EXPECT_FALSE(canReadFile("dangling"));
    EXPECT_FALSE(canReadFile(""));
    EXPECT_FALSE(std::filesystem::exists("missing"));
}

TEST_F(Directories, ALackOfDescriptorsHidesNoFile) {
    makeFile("file");
    rlimit before{};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &before));
    const rlimit none = {.rlim_cur = 0, .rlim_max = before.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    const bool found = canReadFile("file");
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &before));
    EXPECT_TRUE(found);
}

TEST_F(Directories, APathIsNotCutAtANulByte) {
    makeFile("file");
    ASSERT_TRUE(createDirectory("data"));
    EXPECT_FALSE(canReadFile(Path("file\0x", 6)));
    EXPECT_FALSE(deleteFile(Path("file\0x", 6)));
    EXPECT_FALSE(isDirectory(Path("data\0x", 6)));
    EXPECT_FALSE(setCurrentDirectory(Path("data\0x", 6)));
    EXPECT_FALSE(createDirectory(Path("new\0x", 5)));
    EXPECT_TRUE(canReadFile("file"));
}

TEST_F(Directories, OnlyDirectoriesAreDirectories) {
    makeFile("file");
    EXPECT_TRUE(isDirectory("."));
    EXPECT_TRUE(isDirectory(own()));
    EXPECT_FALSE(isDirectory("file"));
    EXPECT_FALSE(isDirectory("missing"));
    EXPECT_FALSE(isDirectory(""));
}

TEST_F(Directories, TheProgramKnowsWhereItLies) {
    const Path path = services::executableDirectory();
    EXPECT_EQ(std::filesystem::read_symlink("/proc/self/exe").parent_path().string() + "/", path);
}

}  // namespace
