// What goes wrong below the files: calls that are cut short, interrupted or refused.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string>
#include <vector>

#include "services/disk/file_copies.h"
#include "services/disk/file_moves.h"
#include "services/disk/numbered_files.h"
#include "services/disk/posix/descriptors.h"
#include "services/disk/system_files.h"
#include "tests/stand_ins/file_size_limit.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

using services::descriptorOf;
using services::noDescriptor;
using services::openFileOf;
using services::Opening;
using services::openRegularFile;

// A descriptor that is closed at the end of its test.
struct Descriptor {
    int number = noDescriptor;

    explicit Descriptor(int opened) : number(opened) {}
    ~Descriptor() {
        if (number != noDescriptor) close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
};

// Two sockets of which the second receives each message of the first by a call of its own.
struct Messages {
    Descriptor sender{noDescriptor};
    Descriptor receiver{noDescriptor};

    Messages() {
        std::array<int, 2> ends{noDescriptor, noDescriptor};
        EXPECT_EQ(0, socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()));
        sender.number = ends[0];
        receiver.number = ends[1];
    }
};

std::span<std::byte> bytesOf(std::string& text) {
    return std::as_writable_bytes(std::span(text));
}

std::span<const std::byte> constBytesOf(const std::string& text) {
    return std::as_bytes(std::span(text));
}

class OpenFiles : public stand_ins::StandInTest {
  protected:
    void TearDown() override {
        for (int number = 0; number < services::fileNumberLimit; ++number)
            services::closeFile(number);
        StandInTest::TearDown();
    }

    static mode_t modeOf(const char* name) {
        struct stat status = {};
        EXPECT_EQ(0, stat(name, &status)) << name;
        return status.st_mode & 07777U;
    }
};

TEST_F(OpenFiles, ReadingGoesOnAfterAShortCall) {
    const Messages messages;
    ASSERT_EQ(3, write(messages.sender.number, "abc", 3));
    ASSERT_EQ(2, write(messages.sender.number, "de", 2));
    std::string block(5, '-');
    EXPECT_EQ(5, services::readFully(openFileOf(messages.receiver.number), bytesOf(block)));
    EXPECT_EQ("abcde", block);
}

TEST_F(OpenFiles, ReadingEndsWhereTheFileDoes) {
    Messages messages;
    ASSERT_EQ(3, write(messages.sender.number, "abc", 3));
    close(messages.sender.number);
    messages.sender.number = noDescriptor;
    std::string block(5, '-');
    EXPECT_EQ(3, services::readFully(openFileOf(messages.receiver.number), bytesOf(block)));
    EXPECT_EQ("abc--", block);
}

int interruptedSender = noDescriptor;

TEST_F(OpenFiles, ReadingGoesOnAfterAnInterruption) {
    const Messages messages;
    interruptedSender = messages.sender.number;
    struct sigaction action = {};
    action.sa_handler = [](int) { static_cast<void>(!write(interruptedSender, "abc", 3)); };
    struct sigaction previous = {};
    ASSERT_EQ(0, sigaction(SIGALRM, &action, &previous));
    const itimerval soon = {.it_interval = {}, .it_value = {.tv_sec = 0, .tv_usec = 50'000}};
    ASSERT_EQ(0, setitimer(ITIMER_REAL, &soon, nullptr));
    std::string block(3, '-');
    EXPECT_EQ(3, services::readFully(openFileOf(messages.receiver.number), bytesOf(block)));
    EXPECT_EQ("abc", block);
    sigaction(SIGALRM, &previous, nullptr);
}

TEST_F(OpenFiles, AReadErrorIsNotTheEndOfTheFile) {
    const Descriptor memory(descriptorOf(openRegularFile("/proc/self/mem", Opening::read)));
    if (memory.number == noDescriptor) GTEST_SKIP() << "no such file here";
    std::string block(16, '-');
    EXPECT_EQ(-1, services::readFully(openFileOf(memory.number), bytesOf(block)));

    // Behind a page that can be read lies one that can't.
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const pages =
        mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(MAP_FAILED, pages);
    ASSERT_EQ(0, munmap(static_cast<char*>(pages) + page, page));
    const auto start = reinterpret_cast<std::intptr_t>(pages);
    ASSERT_EQ(start, lseek(memory.number, start, SEEK_SET));
    std::string both(2 * page, '-');
    EXPECT_EQ(-1, services::readFully(openFileOf(memory.number), bytesOf(both)));
    munmap(pages, page);
}

TEST_F(OpenFiles, NumbersReadNothingWhereReadingFails) {
    if (!services::readFile(0, "/proc/self/mem")) GTEST_SKIP() << "no such file here";
    std::array<std::byte, 8> block{};
    EXPECT_EQ(0U, services::readBlock(0, block));
    EXPECT_EQ(0, services::readLong(0));
    EXPECT_EQ(0, services::readQuad(0));
}

TEST_F(OpenFiles, AWriteErrorIsAFailure) {
    const Descriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
    if (full.number == noDescriptor) GTEST_SKIP() << "no such file here";
    EXPECT_FALSE(services::writeFully(openFileOf(full.number), constBytesOf("abc")));
    EXPECT_TRUE(services::writeFully(openFileOf(full.number), {}));
}

TEST_F(OpenFiles, WritingGoesOnAfterAShortCallAndFailsWhereTheDiskIsFull) {
    ASSERT_TRUE(services::createFile(0, "file"));
    const std::string text(3000, 'x');
    bool written = true;
    {
        const stand_ins::FileSizeLimit full(1000);
        written = services::writeText(0, text);
    }
    EXPECT_FALSE(written);
    EXPECT_EQ(1000, services::lengthOfFile(0));
}

int interruptedReceiver = noDescriptor;

// A socket whose buffer is full makes the writer wait; the interruption empties it.
TEST_F(OpenFiles, WritingGoesOnAfterAnInterruption) {
    const Messages messages;
    interruptedReceiver = messages.receiver.number;
    const std::string text(1000, 'x');
    while (send(messages.sender.number, text.data(), text.size(), MSG_DONTWAIT) > 0) {
    }
    struct sigaction action = {};
    action.sa_handler = [](int) {
        std::array<char, 1000> ignored{};
        while (recv(interruptedReceiver, ignored.data(), ignored.size(), MSG_DONTWAIT) > 0) {
        }
    };
    struct sigaction previous = {};
    ASSERT_EQ(0, sigaction(SIGALRM, &action, &previous));
    const itimerval soon = {.it_interval = {}, .it_value = {.tv_sec = 0, .tv_usec = 50'000}};
    ASSERT_EQ(0, setitimer(ITIMER_REAL, &soon, nullptr));
    EXPECT_TRUE(services::writeFully(openFileOf(messages.sender.number), constBytesOf(text)));
    sigaction(SIGALRM, &previous, nullptr);
}

TEST_F(OpenFiles, FlushingTellsWhenTheSystemRefuses) {
    const Messages messages;  // no file, so nothing that could be on a disk
    EXPECT_FALSE(services::flushOpenFile(openFileOf(messages.sender.number)));
    EXPECT_FALSE(services::flushOpenFile(services::noFile));
    if (!services::readFile(0, "/proc/self/mem")) GTEST_SKIP() << "no such file here";
    EXPECT_FALSE(services::flushFile(0));
}

// Whose files others may read or write is for the user's mask to say.
TEST_F(OpenFiles, NewFilesHaveTheRightsThatTheUsersMaskLeaves) {
    struct Row {
        mode_t mask;
        mode_t mode;
    };
    const mode_t before = umask(0);
    for (const Row& row : {Row{0, 0666}, Row{022, 0644}, Row{077, 0600}}) {
        SCOPED_TRACE(row.mode);
        umask(row.mask);
        std::filesystem::remove("opened");
        std::filesystem::remove("created");
        std::filesystem::remove("copied");
        EXPECT_TRUE(services::openFile(0, "opened"));
        EXPECT_TRUE(services::createFile(1, "created"));
        services::CopyGroup group;
        EXPECT_TRUE(services::addCopy(group, "created", "copied", "part"));
        EXPECT_EQ(services::completeCopies(group), std::vector<bool>{true});
        EXPECT_EQ(row.mode, modeOf("opened"));
        EXPECT_EQ(row.mode, modeOf("created"));
        EXPECT_EQ(row.mode, modeOf("copied"));
    }
    umask(before);
}

// A file that lies in memory and refuses to shrink.
int fileThatCantShrink() {
    const int descriptor = memfd_create("file", MFD_ALLOW_SEALING | MFD_CLOEXEC);
    if (descriptor < 0) return noDescriptor;
    EXPECT_EQ(3, write(descriptor, "abc", 3));
    EXPECT_EQ(0, fcntl(descriptor, F_ADD_SEALS, F_SEAL_SHRINK));
    return descriptor;
}

TEST_F(OpenFiles, AFileThatCantBeEmptiedIsNotLeftOpen) {
    const Descriptor sealed(fileThatCantShrink());
    if (sealed.number == noDescriptor) GTEST_SKIP() << "no such files here";
    const std::string path = "/proc/self/fd/" + std::to_string(sealed.number);
    ASSERT_TRUE(services::openFile(0, path));
    EXPECT_EQ(3, services::lengthOfFile(0));
    EXPECT_FALSE(services::createFile(0, path));
    EXPECT_EQ(-1, services::lengthOfFile(0));
    EXPECT_FALSE(services::cutFile(path, 1));
    EXPECT_TRUE(services::cutFile(path, 3));
}

TEST_F(OpenFiles, AMissingFileIsMadeOnlyWhenAskedFor) {
    EXPECT_EQ(services::noFile, openRegularFile("file", Opening::read));
    EXPECT_EQ(services::noFile, openRegularFile("file", Opening::write));
    EXPECT_FALSE(std::filesystem::exists("file"));
    const Descriptor made(descriptorOf(openRegularFile("file", Opening::update)));
    EXPECT_NE(noDescriptor, made.number);
    EXPECT_TRUE(std::filesystem::exists("file"));
}

TEST_F(OpenFiles, AreClosedInWhateverProgramIsStarted) {
    const Descriptor file(descriptorOf(openRegularFile("file", Opening::update)));
    EXPECT_NE(0, fcntl(file.number, F_GETFD) & FD_CLOEXEC);
}

}  // namespace
