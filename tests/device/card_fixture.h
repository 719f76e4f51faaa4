// The device's files for tests: bytes built field by field at the offsets of docs/formats.md,
// without the product's own writer.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "device/device_state.h"
#include "services/text/latin1.h"
#include "tests/builders/file_bytes.h"
#include "tests/stand_ins/stand_ins.h"

namespace device_tests {

// Bytes in the making: every number is put at its place in little-endian order.
struct RecordBytes {
    std::string bytes;

    explicit RecordBytes(std::size_t size) : bytes(size, '\0') {}

    RecordBytes& put(std::size_t offset, std::uint64_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            bytes[offset + i] = static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
        }
        return *this;
    }
    RecordBytes& int32(std::size_t offset, std::int32_t value) {
        return put(offset, static_cast<std::uint32_t>(value), 4);
    }
    RecordBytes& real(std::size_t offset, float value) {
        return put(offset, std::bit_cast<std::uint32_t>(value), 4);
    }
    RecordBytes& text(std::size_t offset, std::string_view value) {
        bytes.replace(offset, value.size(), value);
        return *this;
    }
};

// An index record that is kept when a file of the name `number` exists: an hour's riding, pulse and
// cadence measured, everything else 0.
inline RecordBytes indexRecord(std::uint64_t number, std::int32_t startDate = 0) {
    RecordBytes record(152);
    record.put(0, number, 8).int32(76, startDate).real(92, 130).real(96, 85).int32(108, 3600);
    return record;
}

inline std::string nameOf(std::uint64_t number) {
    std::string name;
    for (int shift = 60; shift >= 0; shift -= 4) {
        name += "0123456789abcdef"[(number >> static_cast<unsigned>(shift)) & 0xFU];
    }
    return name;
}

using builders::bytesOf;
using builders::writeBytes;

inline void writeTrainingFile(std::uint64_t number) {
    writeBytes(nameOf(number), std::string(44, '\0'));
}

inline std::span<const std::byte> asBytes(const std::string& bytes) {
    return std::as_bytes(std::span(bytes));
}

inline void expectUnreadableIndex() {
    stand_ins::expectMessage(
        "Dateifehler",
        "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!");
}

class CardTest : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        StandInTest::SetUp();
        device::state = {};
    }
};

}  // namespace device_tests
