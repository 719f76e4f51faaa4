#include "services/disk/numbered_files.h"

#include <sys/stat.h>

#include <array>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>

#include "tests/builders/file_bytes.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

using namespace services;
using builders::bytesOf;
using builders::writeBytes;

class NumberedFiles : public stand_ins::StandInTest {
  protected:
    void TearDown() override {
        for (int number = 0; number < fileNumberLimit; ++number)
            closeFile(number);
        StandInTest::TearDown();
    }
};

TEST_F(NumberedFiles, ReadingNeedsAnExistingFile) {
    EXPECT_FALSE(readFile(0, "missing"));
    EXPECT_FALSE(std::filesystem::exists("missing"));
    writeBytes("file", "abc");
    EXPECT_TRUE(readFile(0, "file"));
    EXPECT_EQ(3, lengthOfFile(0));
}

TEST_F(NumberedFiles, AFileOpenedForReadingCantBeWritten) {
    writeBytes("file", "abc");
    ASSERT_TRUE(readFile(0, "file"));
    EXPECT_FALSE(writeText(0, "xyz"));
    EXPECT_EQ("abc", bytesOf("file"));
}

TEST_F(NumberedFiles, OpeningCreatesWhatIsMissingAndNeverCuts) {
    ASSERT_TRUE(openFile(0, "new"));
    EXPECT_EQ(0, lengthOfFile(0));
    writeBytes("old", "abcdef");
    ASSERT_TRUE(openFile(1, "old"));
    EXPECT_TRUE(writeText(1, "XY"));
    EXPECT_EQ("XYcdef", bytesOf("old"));
}

TEST_F(NumberedFiles, CreatingEmptiesWhatIsThere) {
    writeBytes("old", "abcdef");
    ASSERT_TRUE(createFile(0, "old"));
    EXPECT_EQ(0, lengthOfFile(0));
    EXPECT_TRUE(writeText(0, "x"));
    EXPECT_TRUE(seekFile(0, 0));
    EXPECT_EQ('x', readByte(0));
    EXPECT_EQ("x", bytesOf("old"));
}

TEST_F(NumberedFiles, OnlyRegularFilesCanBeOpened) {
    std::filesystem::create_directory("directory");
    ASSERT_EQ(0, mkfifo("fifo", 0600));
    std::filesystem::create_symlink("fifo", "link");
    for (const char* name : {"directory", "fifo", "link", "/dev/null", "/dev/full", ""}) {
        EXPECT_FALSE(readFile(0, name)) << name;
        EXPECT_FALSE(openFile(0, name)) << name;
        EXPECT_FALSE(createFile(0, name)) << name;
        EXPECT_EQ(-1, lengthOfFile(0)) << name;
    }
    EXPECT_TRUE(std::filesystem::is_fifo("fifo"));
}

TEST_F(NumberedFiles, APathIsNotCutAtANulByte) {
    writeBytes("file", "abc");
    EXPECT_FALSE(readFile(0, Path("file\0x", 6)));
    EXPECT_FALSE(createFile(0, Path("file\0x", 6)));
    EXPECT_EQ("abc", bytesOf("file"));
}

TEST_F(NumberedFiles, OpeningUnderANumberClosesWhatItHeld) {
    writeBytes("a", "a");
    writeBytes("b", "bb");
    ASSERT_TRUE(readFile(0, "a"));
    ASSERT_TRUE(readFile(0, "b"));
    EXPECT_EQ(2, lengthOfFile(0));
    EXPECT_FALSE(readFile(0, "missing"));
    EXPECT_EQ(-1, lengthOfFile(0));
}

TEST_F(NumberedFiles, ReopeningLeaksNoDescriptors) {
    writeBytes("a", "a");
    std::filesystem::create_directory("directory");
    const auto openDescriptors = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    ASSERT_TRUE(readFile(0, "a"));
    const auto before = openDescriptors();
    for (int i = 0; i < 50; ++i) {
        readFile(0, "directory");
        readFile(0, "a");
    }
    EXPECT_EQ(before, openDescriptors());
    closeFile(0);
    EXPECT_EQ(before - 1, openDescriptors());
}

TEST_F(NumberedFiles, NumbersAreIndependent) {
    writeBytes("a", "abc");
    ASSERT_TRUE(readFile(0, "a"));
    ASSERT_TRUE(readFile(fileNumberLimit - 1, "a"));
    EXPECT_EQ('a', readByte(0));
    EXPECT_EQ('b', readByte(0));
    EXPECT_EQ('a', readByte(fileNumberLimit - 1));
    closeFile(0);
    EXPECT_EQ('b', readByte(fileNumberLimit - 1));
}

TEST_F(NumberedFiles, ANumberThatIsNotOpenIsHarmless) {
    writeBytes("a", "abc");
    std::array<std::byte, 4> block{};
    for (const int number : {0, -1, fileNumberLimit, INT32_MIN, INT32_MAX}) {
        closeFile(number);
        EXPECT_EQ(-1, lengthOfFile(number));
        EXPECT_TRUE(endOfFile(number));
        EXPECT_FALSE(seekFile(number, 0));
        EXPECT_EQ(0, readByte(number));
        EXPECT_EQ(0, readWord(number));
        EXPECT_EQ(0, readLong(number));
        EXPECT_EQ(0, readQuad(number));
        EXPECT_EQ(0.0F, readFloat(number));
        EXPECT_EQ(0U, readBlock(number, block));
        EXPECT_FALSE(writeLong(number, 1));
        EXPECT_FALSE(writeFloat(number, 1.0F));
        EXPECT_FALSE(writeText(number, ""));
        EXPECT_FALSE(writeBlock(number, block));
        EXPECT_FALSE(flushFile(number));
    }
    for (const int number : {-1, fileNumberLimit})
        EXPECT_FALSE(readFile(number, "a"));
}

TEST_F(NumberedFiles, NumbersAreLittleEndianAndSignExtended) {
    writeBytes("file", std::string("\x80\x7F"
                                   "\xFE\xFF"
                                   "\x34\x12"
                                   "\xFF\xFF\xFF\xFF"
                                   "\x78\x56\x34\x12"
                                   "\x01\x00\x00\x00\x00\x00\x00\x80"
                                   "\x00\x00\xC0\x3F",
                                   26));
    ASSERT_TRUE(readFile(0, "file"));
    EXPECT_EQ(-128, readByte(0));
    EXPECT_EQ(127, readByte(0));
    EXPECT_EQ(-2, readWord(0));
    EXPECT_EQ(0x1234, readWord(0));
    EXPECT_EQ(-1, readLong(0));
    EXPECT_EQ(0x12345678, readLong(0));
    EXPECT_EQ(INT64_MIN + 1, readQuad(0));
    EXPECT_FALSE(endOfFile(0));
    EXPECT_EQ(1.5F, readFloat(0));
    EXPECT_TRUE(endOfFile(0));
}

TEST_F(NumberedFiles, WritingPutsDownTheseBytes) {
    ASSERT_TRUE(createFile(0, "file"));
    EXPECT_TRUE(writeLong(0, 0x12345678));
    EXPECT_TRUE(writeLong(0, -2));
    EXPECT_TRUE(writeFloat(0, 1.5F));
    EXPECT_TRUE(writeText(0, TextView("a\0\xE4", 3)));
    EXPECT_TRUE(writeText(0, ""));
    EXPECT_EQ(std::string("\x78\x56\x34\x12\xFE\xFF\xFF\xFF\x00\x00\xC0\x3F"
                          "a\0\xE4",
                          15),
              bytesOf("file"));
}

TEST_F(NumberedFiles, TheBitsOfAFloatSurvive) {
    const auto payload = std::bit_cast<float>(0x7FA12345U);  // a signalling NaN
    ASSERT_TRUE(createFile(0, "file"));
    ASSERT_TRUE(writeLong(0, 0x7FA12345));
    ASSERT_TRUE(seekFile(0, 0));
    const float value = readFloat(0);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(payload), std::bit_cast<std::uint32_t>(value));
    ASSERT_TRUE(writeFloat(0, value));
    EXPECT_EQ("\x45\x23\xA1\x7F\x45\x23\xA1\x7F", bytesOf("file"));
}

TEST_F(NumberedFiles, BytesMissingAtTheEndReadAsZero) {
    writeBytes("file", "\xFF\xFE\xFD");
    ASSERT_TRUE(readFile(0, "file"));
    EXPECT_EQ(0x00FDFEFF, readLong(0));
    ASSERT_TRUE(seekFile(0, 2));
    EXPECT_EQ(0xFD, readWord(0));
    ASSERT_TRUE(seekFile(0, 1));
    EXPECT_EQ(0xFDFE, readQuad(0));
}

TEST_F(NumberedFiles, PastTheEndEveryReadYieldsZero) {
    writeBytes("file", "abc");
    ASSERT_TRUE(readFile(0, "file"));
    ASSERT_TRUE(seekFile(0, 100));
    EXPECT_TRUE(endOfFile(0));
    EXPECT_EQ(0, readByte(0));
    EXPECT_EQ(0, readWord(0));
    EXPECT_EQ(0, readLong(0));
    EXPECT_EQ(0, readQuad(0));
    EXPECT_EQ(0.0F, readFloat(0));
    std::array<std::byte, 4> block{};
    EXPECT_EQ(0U, readBlock(0, block));
}

TEST_F(NumberedFiles, TheEndIsKnownBeforeAndAfterReading) {
    writeBytes("empty", "");
    ASSERT_TRUE(readFile(0, "empty"));
    EXPECT_TRUE(endOfFile(0));
    writeBytes("file", "ab");
    ASSERT_TRUE(readFile(0, "file"));
    EXPECT_FALSE(endOfFile(0));
    readByte(0);
    EXPECT_FALSE(endOfFile(0));
    readByte(0);
    EXPECT_TRUE(endOfFile(0));
}

TEST_F(NumberedFiles, BlocksAreFilledAsFarAsTheFileGoes) {
    writeBytes("file", "abcde");
    ASSERT_TRUE(readFile(0, "file"));
    std::array<std::byte, 4> block{};
    EXPECT_EQ(4U, readBlock(0, block));
    EXPECT_EQ(std::byte{'d'}, block[3]);
    EXPECT_EQ(1U, readBlock(0, block));
    EXPECT_EQ(std::byte{'e'}, block[0]);
    EXPECT_EQ(std::byte{'b'}, block[1]);
}

TEST_F(NumberedFiles, NegativePositionsAreRefused) {
    writeBytes("file", "abc");
    ASSERT_TRUE(readFile(0, "file"));
    readByte(0);
    EXPECT_FALSE(seekFile(0, -1));
    EXPECT_FALSE(seekFile(0, INT64_MIN));
    EXPECT_EQ('b', readByte(0));
}

TEST_F(NumberedFiles, LengthsAndPositionsHaveSixtyFourBits) {
    constexpr std::int64_t far = std::int64_t{5} << 30;
    writeBytes("file", "");
    std::filesystem::resize_file("file", far);  // sparse
    ASSERT_TRUE(openFile(0, "file"));
    EXPECT_EQ(far, lengthOfFile(0));
    ASSERT_TRUE(seekFile(0, far - 1));
    EXPECT_FALSE(endOfFile(0));
    EXPECT_TRUE(writeText(0, "xy"));
    EXPECT_EQ(far + 1, lengthOfFile(0));
    ASSERT_TRUE(seekFile(0, far));
    EXPECT_EQ('y', readByte(0));
}

TEST_F(NumberedFiles, FlushingSucceedsOnAnOpenFile) {
    ASSERT_TRUE(createFile(0, "file"));
    ASSERT_TRUE(writeText(0, "abc"));
    EXPECT_TRUE(flushFile(0));
    EXPECT_EQ("abc", bytesOf("file"));
}

}  // namespace
