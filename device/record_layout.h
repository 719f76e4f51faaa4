// How a record's numbers lie in its bytes: little-endian integers and IEEE-754 singles at fixed
// offsets. A layout is a tuple of fields, and decoding and encoding both walk it.
//
// Floats travel as their bits and are never computed with on the way, so that a NaN keeps its
// payload.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <tuple>
#include <type_traits>

#include "services/text/latin1.h"

namespace device {

static_assert(sizeof(float) == 4);

template <std::size_t size>
using UnsignedOfSize = std::conditional_t<
    size == 1, std::uint8_t,
    std::conditional_t<size == 2, std::uint16_t,
                       std::conditional_t<size == 4, std::uint32_t, std::uint64_t>>>;

// One number of a record: where it lies on disk and which member holds it.
template <typename Record, typename Value>
struct Field {
    std::size_t offset;
    Value Record::*member;

    static constexpr std::size_t size = sizeof(Value);
};

template <typename Record, typename Value>
Field(std::size_t, Value Record::*) -> Field<Record, Value>;

template <typename Value>
constexpr Value readNumber(std::span<const std::byte> bytes, std::size_t offset) {
    using Bits = UnsignedOfSize<sizeof(Value)>;
    std::uint64_t bits = 0;
    for (std::size_t i = sizeof(Value); i-- > 0;) {
        bits = (bits << 8U) | std::to_integer<std::uint64_t>(bytes[offset + i]);
    }
    return std::bit_cast<Value>(static_cast<Bits>(bits));
}

template <typename Value>
constexpr void appendNumber(services::Text& bytes, Value value) {
    std::uint64_t bits = std::bit_cast<UnsignedOfSize<sizeof(Value)>>(value);
    for (std::size_t i = 0; i < sizeof(Value); ++i) {
        bytes += static_cast<char>(static_cast<unsigned char>(bits & 0xFFU));
        bits >>= 8U;
    }
}

template <typename Record, typename Layout>
void readFields(std::span<const std::byte> bytes, const Layout& layout, Record& record) {
    const auto read = [&](const auto& field) {
        auto& value = record.*field.member;
        value = readNumber<std::remove_reference_t<decltype(value)>>(bytes, field.offset);
    };
    std::apply([&](const auto&... field) { (read(field), ...); }, layout);
}

template <typename Record, typename Layout>
void appendFields(services::Text& bytes, const Layout& layout, const Record& record) {
    std::apply([&](const auto&... field) { (appendNumber(bytes, record.*field.member), ...); },
               layout);
}

// Whether the fields follow one another from `begin` to `end` without a gap or an overlap.
template <typename Layout>
constexpr bool fillsExactly(const Layout& layout, std::size_t begin, std::size_t end) {
    std::size_t next = begin;
    bool backToBack = true;
    const auto check = [&](const auto& field) {
        backToBack = backToBack && field.offset == next;
        next = field.offset + field.size;
    };
    std::apply([&](const auto&... field) { (check(field), ...); }, layout);
    return backToBack && next == end;
}

inline constexpr std::byte byteOrderExample[] = {std::byte{0x78}, std::byte{0x56}, std::byte{0x34},
                                                 std::byte{0x92}, std::byte{0xFF}, std::byte{0x80},
                                                 std::byte{0x00}, std::byte{0x81}};
static_assert(readNumber<std::uint64_t>(byteOrderExample, 0) == 0x810080FF92345678U);
static_assert(readNumber<std::int32_t>(byteOrderExample, 0) == -0x6DCBA988);
static_assert(readNumber<std::int16_t>(byteOrderExample, 4) == -0x7F01);
static_assert(readNumber<std::int8_t>(byteOrderExample, 5) == -128);

}  // namespace device
