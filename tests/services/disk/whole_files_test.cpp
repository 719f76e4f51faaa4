#include "services/disk/whole_files.h"

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
using services::LinksAre;
using services::PathView;
using services::Presence;
using State = services::WholeFile::State;

using WholeFiles = stand_ins::StandInTest;

// Empty, and with a NUL behind which another name would begin.
constexpr PathView unusable[] = {PathView(""), PathView("file\0x", 6)};

TEST_F(WholeFiles, WhatHasANameIsThere) {
    writeBytes("file", "");
    fs::create_directory("directory");
    fs::create_symlink("nowhere", "dangling");
    for (const char* path : {"file", "directory", "dangling"})
        EXPECT_EQ(services::presenceOf(path), Presence::there) << path;
    for (const char* path : {"other", "directory/file", "file/below"})
        EXPECT_EQ(services::presenceOf(path), Presence::missing) << path;
    for (const PathView path : unusable)
        EXPECT_EQ(services::presenceOf(path), Presence::missing);
}

TEST_F(WholeFiles, AreReadWithTheirStateTold) {
    writeBytes("file", std::string("a\0b", 3));
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    fs::create_symlink("file", "link");
    fs::create_symlink("nowhere", "dangling");
    const struct {
        const char* path;
        State followed;
        State refused;
    } rows[] = {
        {"file", State::read, State::read},
        {"link", State::read, State::notRegular},
        {"dangling", State::missing, State::notRegular},
        {"directory", State::notRegular, State::notRegular},
        {"fifo", State::notRegular, State::notRegular},
        {"other", State::missing, State::missing},
        {"file/below", State::missing, State::missing},
    };
    for (const auto& row : rows) {
        for (const LinksAre links : {LinksAre::followed, LinksAre::refused}) {
            const services::WholeFile file = services::readWholeFile(row.path, links);
            EXPECT_EQ(file.state, links == LinksAre::followed ? row.followed : row.refused)
                << row.path;
            EXPECT_EQ(file.bytes,
                      file.state == State::read ? std::string("a\0b", 3) : std::string())
                << row.path;
        }
    }
    for (const PathView path : unusable)
        EXPECT_EQ(services::readWholeFile(path, LinksAre::followed).state, State::missing);
}

TEST_F(WholeFiles, AreReplacedUnderTheirName) {
    writeBytes("file", "old and longer");
    writeBytes("part", "left by a run that was cut off");
    EXPECT_TRUE(services::replaceWholeFile("file", "part", "new"));
    EXPECT_EQ(bytesOf("file"), "new");
    EXPECT_EQ(namesIn("."), std::set<std::string>{"file"});
}

TEST_F(WholeFiles, AnUnusableNameReplacesNothing) {
    writeBytes("file", "old");
    for (const PathView path : unusable) {
        EXPECT_FALSE(services::replaceWholeFile(path, "part", "new"));
        EXPECT_FALSE(services::replaceWholeFile("file", path, "new"));
    }
    EXPECT_EQ(bytesOf("file"), "old");
    EXPECT_EQ(namesIn("."), std::set<std::string>{"file"});
}

TEST_F(WholeFiles, ADirectoryIsNotReplaced) {
    fs::create_directory("file");
    EXPECT_FALSE(services::replaceWholeFile("file", "part", "new"));
    EXPECT_EQ(namesIn("."), std::set<std::string>{"file"});
    EXPECT_TRUE(fs::is_directory("file"));
}

}  // namespace
