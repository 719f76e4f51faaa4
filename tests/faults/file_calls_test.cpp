// What the services for files make of single system calls that fail: of the services that a file
// system lacks, of interruptions, and of errors at the one moment that matters.
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "services/disk/directories.h"
#include "services/disk/file_copies.h"
#include "services/disk/file_moves.h"
#include "services/disk/held_directory.h"
#include "services/disk/numbered_files.h"
#include "services/disk/posix/renaming.h"
#include "services/disk/preferences.h"
#include "services/disk/system_files.h"
#include "services/disk/whole_files.h"
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
using services::Renaming;

std::size_t openDescriptors() {
    const fs::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

// Every call of the one function, or of the two, fails.
Fault failing(int error, std::string_view name, std::string_view other = "") {
    return {.kind = FaultKind::fail, .error = error, .goesOn = true, .names = {name, other}};
}

// Only the call of that number fails.
Fault failingAt(int at, int error, std::string_view name) {
    return {.kind = FaultKind::fail, .at = at, .error = error, .names = {name}};
}

// What `run` gives while the fault is there.
template <typename Run>
auto under(const Fault& fault, const Run& run) {
    fault_injector::arm(fault);
    const auto result = run();
    EXPECT_GT(fault_injector::disarm(), fault.at) << "the call was never made";
    return result;
}

// A group of one.
bool copyFile(services::PathView source, services::PathView target, services::PathView temporary) {
    services::CopyGroup group;
    services::addCopy(group, source, target, temporary);
    return services::completeCopies(group).front();
}

using FileCalls = stand_ins::StandInTest;

const std::set<std::string> both = {"from", "to"};

TEST_F(FileCalls, AFileSystemWithoutExclusiveRenamingRenamesByLinks) {
    for (const int error : {EINVAL, ENOSYS, EPERM, EOPNOTSUPP}) {
        writeBytes("from", "content");
        EXPECT_TRUE(
            under(failing(error, "renameat2"), [] { return services::renameFile("from", "to"); }));
        EXPECT_EQ(namesIn("."), std::set<std::string>{"to"});
        EXPECT_EQ(bytesOf("to"), "content");
        fs::remove("to");
    }
}

TEST_F(FileCalls, AFileSystemWithoutLinksRenamesAfterLooking) {
    for (const int error : {EINVAL, ENOSYS, EPERM, EOPNOTSUPP}) {
        writeBytes("from", "content");
        EXPECT_TRUE(under(failing(error, "renameat2", "link"),
                          [] { return services::renameFile("from", "to"); }));
        EXPECT_EQ(namesIn("."), std::set<std::string>{"to"});
        EXPECT_EQ(bytesOf("to"), "content");
        fs::remove("to");
    }
}

TEST_F(FileCalls, NoWayOfRenamingReplacesAFileWhateverTheFileSystemLacks) {
    writeBytes("from", "new");
    writeBytes("to", "old");
    for (const Fault& fault : {failing(EINVAL, "renameat2"), failing(EINVAL, "renameat2", "link")})
        EXPECT_FALSE(under(fault, [] { return services::renameFile("from", "to"); }));
    EXPECT_EQ(bytesOf("from"), "new");
    EXPECT_EQ(bytesOf("to"), "old");
}

// A directory refuses, a full disk: another way would not do better, or even harm.
TEST_F(FileCalls, ARefusedRenameIsNotTriedInAnotherWay) {
    writeBytes("from", "content");
    for (const int error : {EACCES, EIO, EROFS, EEXIST}) {
        EXPECT_FALSE(
            under(failing(error, "renameat2"), [] { return services::renameFile("from", "to"); }));
        EXPECT_EQ(
            under(failing(error, "link"), [] { return services::renameByLinking("from", "to"); }),
            Renaming::failed);
        EXPECT_EQ(namesIn("."), std::set<std::string>{"from"});
    }
}

TEST_F(FileCalls, AnOldNameThatCantBeRemovedTakesTheNewOneBack) {
    writeBytes("from", "content");
    EXPECT_EQ(under(failingAt(0, EACCES, "unlink"),
                    [] { return services::renameByLinking("from", "to"); }),
              Renaming::failed);
    EXPECT_EQ(namesIn("."), std::set<std::string>{"from"});
    EXPECT_EQ(bytesOf("from"), "content");
}

// Two files that were never one: neither goes.
TEST_F(FileCalls, TwoFilesOfSeveralNamesEachAreNotTakenForOne) {
    writeBytes("from", "one");
    writeBytes("to", "two");
    fs::create_hard_link("from", "from again");
    fs::create_hard_link("to", "to again");
    EXPECT_EQ(services::renameByLinking("from", "to"), Renaming::failed);
    EXPECT_EQ(bytesOf("from"), "one");
    EXPECT_EQ(bytesOf("to"), "two");
}

TEST_F(FileCalls, TheTwoNamesOfAnInterruptedRenameStayWhereNobodyCanLook) {
    writeBytes("from", "content");
    fs::create_hard_link("from", "to");
    for (const int at : {0, 1}) {
        EXPECT_EQ(under(failingAt(at, EIO, "lstat"),
                        [] { return services::renameByLinking("from", "to"); }),
                  Renaming::failed);
        EXPECT_EQ(namesIn("."), both);
    }
}

TEST_F(FileCalls, AnInterruptedCallIsMadeAgain) {
    writeBytes("file", "0123456789");
    EXPECT_TRUE(under(failingAt(0, EINTR, "open"), [] { return services::flushPath("file"); }));
    EXPECT_TRUE(under(failingAt(0, EINTR, "fsync"), [] { return services::flushPath("file"); }));
    EXPECT_TRUE(
        under(failingAt(0, EINTR, "ftruncate"), [] { return services::cutFile("file", 4); }));
    EXPECT_EQ(bytesOf("file"), "0123");
    EXPECT_TRUE(
        under(failingAt(0, EINTR, "ftruncate"), [] { return services::createFile(0, "file"); }));
    services::closeFile(0);
    EXPECT_EQ(bytesOf("file"), "");
}

TEST_F(FileCalls, AFileThatCantBeLookedAtIsNotOpened) {
    writeBytes("file", "content");
    const std::size_t before = openDescriptors();
    EXPECT_EQ(under(failing(EIO, "fstat"),
                    [] { return services::openRegularFile("file", services::Opening::read); }),
              services::noFile);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(FileCalls, AFileThatCantBeComparedToItsCopyIsNotTakenForCopied) {
    writeBytes("from", "content");
    writeBytes("to", "content");
    const std::size_t before = openDescriptors();
    // Two calls of fstat look at what was opened, the next two at the lengths.
    for (const Fault& fault : {failingAt(2, EIO, "fstat"), failingAt(3, EIO, "fstat"),
                               failingAt(0, EIO, "read"), failing(EIO, "read")}) {
        EXPECT_FALSE(under(fault, [] { return copyFile("from", "to", "part"); }));
    }
    int reads = 0;
    fault_injector::arm({.names = {"read"}});
    EXPECT_TRUE(copyFile("from", "to", "part"));
    reads = fault_injector::disarm();
    for (int at = 0; at < reads; ++at) {
        EXPECT_FALSE(under(failingAt(at, EIO, "read"), [] {
            return copyFile("from", "to", "part");
        })) << at;
    }
    EXPECT_EQ(namesIn("."), both);
    EXPECT_EQ(bytesOf("to"), "content");
    EXPECT_EQ(openDescriptors(), before);
}

std::vector<bool> copyGroup(const Fault& fault) {
    for (const char* name : {"A", "B", "C"})
        fs::remove(name);
    return under(fault, [] {
        services::CopyGroup group;
        for (const std::string name : {"A", "B", "C"})
            services::addCopy(group, "from", name, name + ".part");
        return services::completeCopies(group);
    });
}

TEST_F(FileCalls, CopiesAreFlushedOneByOneWhereThatCantBeDoneAtOnce) {
    writeBytes("from", "content");
    const std::set<std::string> all = {"from", "A", "B", "C"};
    for (const char* call : {"fstatfs", "sync_file_range", "syncfs"}) {
        EXPECT_EQ(copyGroup(failing(ENOSYS, call)), (std::vector<bool>{true, true, true})) << call;
        EXPECT_EQ(namesIn("."), all) << call;
        // Then each has to be on the disk. The directory is flushed as well, and can't be either.
        EXPECT_EQ(copyGroup(failing(ENOSYS, call, "fsync")),
                  (std::vector<bool>{false, false, false}))
            << call;
        EXPECT_EQ(namesIn("."), std::set<std::string>{"from"}) << call;
    }
}

// The system tells of it once: flushing the file again finds nothing to do and succeeds.
TEST_F(FileCalls, ACopyOfWhichTheDiskHasLostAPartIsNone) {
    writeBytes("from", "content");
    for (const int error : {EIO, ENOSPC, EDQUOT}) {
        EXPECT_EQ(copyGroup(failing(error, "sync_file_range")),
                  (std::vector<bool>{false, false, false}))
            << error;
        EXPECT_EQ(namesIn("."), std::set<std::string>{"from"}) << error;
        // Three calls begin to write, three wait for what was written.
        EXPECT_EQ(copyGroup(failingAt(4, error, "sync_file_range")),
                  (std::vector<bool>{true, false, true}))
            << error;
        EXPECT_EQ(namesIn("."), (std::set<std::string>{"from", "A", "C"})) << error;
    }
}

TEST_F(FileCalls, ACopyThatIsNotOnTheDiskLeavesTheOthersOfItsGroup) {
    writeBytes("from", "content");
    std::vector<std::vector<bool>> results;
    for (int at = 0; at < 3; ++at) {
        // A source is closed when its copy is written, and again, before the copy, when that was
        // compared with it.
        results.push_back(copyGroup(failingAt(4 + 2 * at, EIO, "close")));
        EXPECT_EQ(namesIn(".").size(), 3U);
    }
    EXPECT_EQ(results, (std::vector<std::vector<bool>>{
                           {false, true, true}, {true, false, true}, {true, true, false}}));
}

TEST_F(FileCalls, NamesThatAreNotOnTheDiskMakeNoCopies) {
    writeBytes("from", "content");
    // The first call is for the files.
    EXPECT_EQ(copyGroup(failingAt(1, EIO, "fsync")), (std::vector<bool>{false, false, false}));
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"from", "A", "B", "C"}));
}

TEST_F(FileCalls, ACutThatIsNotOnTheDiskIsAFailure) {
    writeBytes("file", "0123456789");
    EXPECT_FALSE(under(failing(EIO, "fsync"), [] { return services::cutFile("file", 4); }));
}

TEST_F(FileCalls, OnlyAFailingDiskKeepsADirectoryFromCounting) {
    const auto flush = [] { return services::flushDirectoryOf("file"); };
    for (const int error : {EINVAL, EBADF, EROFS, EACCES})
        EXPECT_TRUE(under(failing(error, "fsync"), flush)) << error;
    for (const int error : {EIO, ENOSPC, EDQUOT})
        EXPECT_FALSE(under(failing(error, "fsync"), flush)) << error;
    EXPECT_TRUE(under(failing(EACCES, "open"), flush));
}

TEST_F(FileCalls, AWholeFileThatCantBeReadIsUnreadableAndNotMissing) {
    writeBytes("file", "content");
    const std::size_t before = openDescriptors();
    const auto stateUnder = [](const Fault& fault) {
        return under(fault,
                     [] { return services::readWholeFile("file", services::LinksAre::refused); })
            .state;
    };
    using State = services::WholeFile::State;
    EXPECT_EQ(stateUnder(failing(EIO, "lstat", "open")), State::unreadable);
    EXPECT_EQ(stateUnder(failing(EACCES, "open")), State::unreadable);
    EXPECT_EQ(stateUnder(failingAt(0, EIO, "fstat")), State::unreadable);
    EXPECT_EQ(stateUnder(failingAt(1, EIO, "fstat")), State::unreadable);
    EXPECT_EQ(stateUnder(failing(EIO, "read")), State::unreadable);
    EXPECT_EQ(stateUnder(failing(ENOENT, "lstat")), State::missing);
    EXPECT_EQ(stateUnder(failing(ENOTDIR, "lstat")), State::missing);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(FileCalls, PresenceIsUnknownWhereNobodyCanLook) {
    writeBytes("file", "content");
    const auto presence = [] { return services::presenceOf("file"); };
    EXPECT_EQ(under(failing(EIO, "lstat"), presence), services::Presence::unknown);
    EXPECT_EQ(under(failing(ENOENT, "lstat"), presence), services::Presence::missing);
    EXPECT_EQ(under(failing(ENOTDIR, "lstat"), presence), services::Presence::missing);
}

TEST_F(FileCalls, ADirectoryThatCantBeHeldIsNotHeldByAnother) {
    const std::size_t before = openDescriptors();
    services::HeldDirectory held;
    const auto hold = [&held] { return services::holdDirectory(held, {}); };
    EXPECT_EQ(under(failing(ENOLCK, "flock"), hold), services::Holding::impossible);
    EXPECT_EQ(under(failing(EWOULDBLOCK, "flock"), hold), services::Holding::heldByAnother);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(hold(), services::Holding::done);
    services::letGo(held);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(FileCalls, WhetherAFileCanBeReadIsUntoldWhereNobodyCanLook) {
    writeBytes("file", "content");
    const auto lookUp = [] { return services::lookUpFile("file"); };
    EXPECT_EQ(lookUp(), services::FileLookup::readable);
    for (const int error : {EIO, EACCES, ENOMEM}) {
        EXPECT_EQ(under(failing(error, "stat"), lookUp), services::FileLookup::untold);
        EXPECT_EQ(under(failing(error, "access"), lookUp), services::FileLookup::untold);
    }
    for (const int error : {ENOENT, ENOTDIR}) {
        EXPECT_EQ(under(failing(error, "stat"), lookUp), services::FileLookup::missing);
        EXPECT_EQ(under(failing(error, "access"), lookUp), services::FileLookup::missing);
    }
}

TEST_F(FileCalls, PreferencesOfUnknownLengthGiveDefaults) {
    writeBytes("settings", "key = value\n");
    const std::size_t before = openDescriptors();
    EXPECT_TRUE(under(failingAt(1, EIO, "fstat"),
                      [] { return services::openPreferences("settings").groups.empty(); }));
    EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
