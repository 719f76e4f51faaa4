#include "services/disk/numbered_files.h"

#include <array>
#include <bit>

#include "services/disk/system_files.h"

namespace services {

namespace {

struct OpenFiles {
    std::array<OpenFile, fileNumberLimit> files;
};

constexpr OpenFiles noOpenFiles() {
    OpenFiles files{};
    files.files.fill(noFile);
    return files;
}

OpenFiles openFiles = noOpenFiles();

bool isFileNumber(int number) {
    return number >= 0 && number < fileNumberLimit;
}

OpenFile fileOf(int number) {
    return isFileNumber(number) ? openFiles.files[static_cast<std::size_t>(number)] : noFile;
}

bool openUnder(int number, PathView path, Opening opening) {
    if (!isFileNumber(number)) return false;
    closeFile(number);
    const OpenFile file = openRegularFile(path, opening);
    openFiles.files[static_cast<std::size_t>(number)] = file;
    return file != noFile;
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
    return openUnder(number, path, Opening::read);
}

bool openFile(int number, PathView path) {
    return openUnder(number, path, Opening::update);
}

bool openFileItself(int number, PathView path) {
    return openUnder(number, path, Opening::updateItself);
}

bool createFile(int number, PathView path) {
    // Emptied only once it is known to be a regular file.
    if (!openFileItself(number, path)) return false;
    const bool emptied = resizeOpenFile(fileOf(number), 0);
    if (!emptied) closeFile(number);
    return emptied;
}

void closeFile(int number) {
    const OpenFile file = fileOf(number);
    if (file == noFile) return;
    closeOpenFile(file);
    openFiles.files[static_cast<std::size_t>(number)] = noFile;
}

std::int64_t lengthOfFile(int number) {
    const OpenFile file = fileOf(number);
    return file == noFile ? -1 : lengthOfOpenFile(file);
}

bool endOfFile(int number) {
    const OpenFile file = fileOf(number);
    return file == noFile || positionInOpenFile(file) >= lengthOfOpenFile(file);
}

bool seekFile(int number, std::int64_t position) {
    const OpenFile file = fileOf(number);
    return file != noFile && position >= 0 && seekInOpenFile(file, position);
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
    const OpenFile file = fileOf(number);
    if (file == noFile) return 0;
    const std::int64_t count = readFully(file, block);
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
    const OpenFile file = fileOf(number);
    return file != noFile && writeFully(file, block);
}

bool flushFile(int number) {
    const OpenFile file = fileOf(number);
    return file != noFile && flushOpenFile(file);
}

}  // namespace services
