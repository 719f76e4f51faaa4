#include "services/disk/whole_files.h"

#include <sys/stat.h>

#include <filesystem>

#include "services/disk/held_directory.h"
#include "tests/builders/file_bytes.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

namespace fs = std::filesystem;
using builders::writeBytes;
using services::digestOfFile;
using services::FileDigest;
using services::HeldDirectory;
using services::holdDirectory;
using services::Holding;
using services::LinksAre;
using services::WholeFile;

using FileDigests = stand_ins::StandInTest;

TEST_F(FileDigests, ADigestIsThatOfTheBytes) {
    for (const std::size_t size : {0U, 1U, 65'535U, 65'536U, 200'000U}) {
        std::string bytes(size, 'x');
        if (size > 0) bytes.back() = 'y';
        writeBytes("file", bytes);
        const FileDigest digest = digestOfFile("file", LinksAre::followed);
        EXPECT_EQ(digest.state, WholeFile::State::read);
        EXPECT_EQ(digest.length, size);
        EXPECT_EQ(digest.hash, services::hashOf(bytes));
    }
}

TEST_F(FileDigests, WhatIsNoFileHasNeitherBytesNorADigest) {
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    fs::create_symlink("nowhere", "dangling");
    writeBytes("file", "bytes");
    fs::create_symlink("file", "link");
    const struct {
        const char* name;
        LinksAre links;
        WholeFile::State state;
    } cases[] = {
        {"directory", LinksAre::followed, WholeFile::State::notRegular},
        {"fifo", LinksAre::followed, WholeFile::State::notRegular},
        {"/dev/null", LinksAre::followed, WholeFile::State::notRegular},
        {"dangling", LinksAre::followed, WholeFile::State::missing},
        {"dangling", LinksAre::refused, WholeFile::State::notRegular},
        {"link", LinksAre::refused, WholeFile::State::notRegular},
        {"missing", LinksAre::followed, WholeFile::State::missing},
        {"file/below", LinksAre::followed, WholeFile::State::missing},
        {"", LinksAre::followed, WholeFile::State::missing},
        {"link", LinksAre::followed, WholeFile::State::read},
        {"file", LinksAre::refused, WholeFile::State::read},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        const bool isRead = one.state == WholeFile::State::read;
        const WholeFile file = services::readWholeFile(one.name, one.links);
        EXPECT_EQ(file.state, one.state);
        EXPECT_EQ(file.bytes, isRead ? "bytes" : "");
        const FileDigest digest = digestOfFile(one.name, one.links);
        EXPECT_EQ(digest.state, one.state);
        EXPECT_EQ(digest.length, isRead ? 5U : 0U);
    }
}

TEST_F(FileDigests, AFileThatNoMemoryHoldsIsUnreadable) {
    writeBytes("file", "");
    fs::resize_file("file", std::uintmax_t{1} << 42U);
    const WholeFile file = services::readWholeFile("file", LinksAre::followed);
    EXPECT_EQ(file.state, WholeFile::State::unreadable);
    EXPECT_EQ(file.bytes, "");
    EXPECT_EQ(digestOfFile("file", LinksAre::followed).state, WholeFile::State::unreadable);
}

TEST_F(FileDigests, ADirectoryIsHeldByOneAtATime) {
    fs::create_directory("tree");
    HeldDirectory first;
    HeldDirectory second;
    EXPECT_EQ(holdDirectory(first, "tree/"), Holding::done);
    EXPECT_EQ(holdDirectory(second, "tree"), Holding::heldByAnother);
    EXPECT_EQ(holdDirectory(second, {}), Holding::done);  // the one around it
    services::letGo(second);
    services::letGo(first);
    EXPECT_EQ(holdDirectory(second, "tree/"), Holding::done);
    services::letGo(second);
    writeBytes("file", "");
    EXPECT_EQ(holdDirectory(first, "file"), Holding::impossible);
    EXPECT_EQ(holdDirectory(first, "missing"), Holding::impossible);
    services::letGo(first);
}

}  // namespace
