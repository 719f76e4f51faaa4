#include "services/disk/numbered_files.h"

#include <array>
#include <bit>

#include "services/disk/regular_files.h"

namespace services {

namespace {

struct OpenFiles {
    std::array<int, fileNumberLimit> descriptors;
};

constexpr OpenFiles noOpenFiles() {
    OpenFiles files{};
    files.descriptors.fill(noDescriptor);
    return files;
}

OpenFiles openFiles = noOpenFiles();

bool isFileNumber(int number) {
    return number >= 0 && number < fileNumberLimit;
}

int descriptorOf(int number) {
    return isFileNumber(number) ? openFiles.descriptors[static_cast<std::size_t>(number)]
                                : noDescriptor;
}

bool openUnder(int number, PathView path, int flags) {
    if (!isFileNumber(number)) return false;
    closeFile(number);
    const int descriptor = openRegularFile(path, flags);
    openFiles.descriptors[static_cast<std::size_t>(number)] = descriptor;
    return descriptor != noDescriptor;
}

// Only the bytes that are there are filled in; the rest of the number stays 0.
template <std::size_t size>
std::uint64_t readLittleEndian(int number) {
    std::array<std::byte, size> bytes{};
    const std::size_t count = readBlock(number, bytes);
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value |= std::to_integer<std::uint64_t>(bytes[i]) << (8 * i);
    return value;
}

}  // namespace

bool readFile(int number, PathView path) {
    return openUnder(number, path, O_RDONLY);
}

bool openFile(int number, PathView path) {
    return openUnder(number, path, O_RDWR | O_CREAT);
}

bool openFileItself(int number, PathView path) {
    return openUnder(number, path, O_RDWR | O_CREAT | O_NOFOLLOW);
}

bool createFile(int number, PathView path) {
    // Emptied only once it is known to be a regular file.
    if (!openFileItself(number, path)) return false;
    int result = 0;
    do {
        result = ftruncate(descriptorOf(number), 0);
    } while (result != 0 && errno == EINTR);
    if (result != 0) closeFile(number);
    return result == 0;
}

void closeFile(int number) {
    const int descriptor = descriptorOf(number);
    if (descriptor == noDescriptor) return;
    close(descriptor);
    openFiles.descriptors[static_cast<std::size_t>(number)] = noDescriptor;
}

std::int64_t lengthOfFile(int number) {
    struct stat status = {};
    const int descriptor = descriptorOf(number);
    if (descriptor == noDescriptor || fstat(descriptor, &status) != 0) return -1;
    return status.st_size;
}

bool endOfFile(int number) {
    const int descriptor = descriptorOf(number);
    if (descriptor == noDescriptor) return true;
    return lseek(descriptor, 0, SEEK_CUR) >= lengthOfFile(number);
}

bool seekFile(int number, std::int64_t position) {
    const int descriptor = descriptorOf(number);
    if (descriptor == noDescriptor || position < 0) return false;
    return lseek(descriptor, position, SEEK_SET) == position;
}

std::int32_t readByte(int number) {
    return static_cast<std::int8_t>(readLittleEndian<1>(number));
}

std::int32_t readWord(int number) {
    return static_cast<std::int16_t>(readLittleEndian<2>(number));
}

std::int32_t readLong(int number) {
    return static_cast<std::int32_t>(readLittleEndian<4>(number));
}

std::int64_t readQuad(int number) {
    return static_cast<std::int64_t>(readLittleEndian<8>(number));
}

float readFloat(int number) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(readLittleEndian<4>(number)));
}

std::size_t readBlock(int number, std::span<std::byte> block) {
    const int descriptor = descriptorOf(number);
    if (descriptor == noDescriptor) return 0;
    const std::int64_t count = readFully(descriptor, block);
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

bool writeLong(int number, std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    const std::array<std::byte, 4> bytes = {
        static_cast<std::byte>(bits & 0xFFU), static_cast<std::byte>(bits >> 8U & 0xFFU),
        static_cast<std::byte>(bits >> 16U & 0xFFU), static_cast<std::byte>(bits >> 24U)};
    return writeBlock(number, bytes);
}

bool writeFloat(int number, float value) {
    return writeLong(number, std::bit_cast<std::int32_t>(value));
}

bool writeText(int number, TextView text) {
    return writeBlock(number, std::as_bytes(std::span(text)));
}

bool writeBlock(int number, std::span<const std::byte> block) {
    const int descriptor = descriptorOf(number);
    return descriptor != noDescriptor && writeFully(descriptor, block);
}

bool flushFile(int number) {
    const int descriptor = descriptorOf(number);
    return descriptor != noDescriptor && flushDescriptor(descriptor);
}

}  // namespace services
