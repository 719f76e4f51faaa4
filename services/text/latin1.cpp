#include "services/text/latin1.h"

#include <cstdint>

namespace services {

namespace {

constexpr std::uint32_t invalid = 0xFFFFFFFFU;

struct Decoded {
    std::uint32_t character = invalid;
    std::size_t length = 1;  // 1 for an invalid byte: decoding goes on behind it
};

Decoded decodeAt(std::string_view bytes, std::size_t at) {
    const auto byteAt = [&](std::size_t i) {
        return std::uint32_t{static_cast<unsigned char>(bytes[i])};
    };
    const std::uint32_t first = byteAt(at);
    if (first < 0x80) return {first, 1};

    std::size_t length = 0;
    std::uint32_t smallest = 0;  // what needs this length; less is an overlong form
    std::uint32_t character = 0;
    if ((first & 0xE0U) == 0xC0U) {
        length = 2, smallest = 0x80, character = first & 0x1FU;
    } else if ((first & 0xF0U) == 0xE0U) {
        length = 3, smallest = 0x800, character = first & 0x0FU;
    } else if ((first & 0xF8U) == 0xF0U) {
        length = 4, smallest = 0x10000, character = first & 0x07U;
    } else {
        return {};
    }
    if (length > bytes.size() - at) return {};
    for (std::size_t i = 1; i < length; ++i) {
        const std::uint32_t next = byteAt(at + i);
        if ((next & 0xC0U) != 0x80U) return {};
        character = (character << 6U) | (next & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < smallest || character > 0x10FFFF || surrogate) return {};
    return {character, length};
}

// The largest character of the bytes, `invalid` when any byte is not UTF-8, 0 for no bytes.
std::uint32_t largestCharacter(std::string_view bytes) {
    std::uint32_t largest = 0;
    for (std::size_t at = 0; at < bytes.size();) {
        const Decoded decoded = decodeAt(bytes, at);
        if (decoded.character > largest) largest = decoded.character;
        at += decoded.length;
    }
    return largest;
}

}  // namespace

std::string latin1ToUtf8(TextView text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            utf8 += character;
        } else {
            utf8 += static_cast<char>(0xC0U | (byte >> 6U));
            utf8 += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return utf8;
}

Text utf8ToLatin1(std::string_view utf8) {
    Text text;
    text.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const Decoded decoded = decodeAt(utf8, at);
        text += decoded.character <= 0xFF ? static_cast<char>(decoded.character) : '?';
        at += decoded.length;
    }
    return text;
}

bool isUtf8(std::string_view bytes) {
    return largestCharacter(bytes) != invalid;
}

bool isUtf8WithinLatin1(std::string_view bytes) {
    return largestCharacter(bytes) <= 0xFF;
}

}  // namespace services
