// Latin-1 text inside the program, UTF-8 in its source files.
//
// Text is a byte string in Latin-1 (ä is the one byte 0xE4), kept byte for byte as it came from a
// card or a file. Literals are written as "Übersicht"_l1 and become Latin-1 while compiling; a
// character that Latin-1 lacks does not compile.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace services {

// Owned Latin-1 text and a view of one. An absent text is an empty view.
using Text = std::string;
using TextView = std::string_view;

template <std::size_t size>
struct Latin1Literal {
    char bytes[size] = {};
    std::size_t length = 0;

    // NOLINTNEXTLINE(google-explicit-constructor): a literal operator needs the conversion
    consteval Latin1Literal(const char (&utf8)[size]) {
        for (std::size_t i = 0; i + 1 < size; ++i) {
            const auto byte = static_cast<unsigned char>(utf8[i]);
            if (byte < 0x80) {
                bytes[length++] = utf8[i];
                continue;
            }
            // U+0080 to U+00FF are the two-byte sequences that begin with 0xC2 or 0xC3.
            if (byte != 0xC2 && byte != 0xC3) throw "Latin-1 has no such character";
            const auto next = static_cast<unsigned char>(utf8[++i]);
            bytes[length++] = static_cast<char>(((byte & 0x03U) << 6U) | (next & 0x3FU));
        }
    }
};

// A view of a Latin-1 literal: lives for the whole run and is followed by a NUL byte.
template <Latin1Literal literal>
consteval TextView operator""_l1() {
    return TextView(literal.bytes, literal.length);
}

// Every byte becomes the character of the same number; never fails.
std::string latin1ToUtf8(TextView text);

// Characters outside Latin-1, and each byte that is not valid UTF-8, become "?".
Text utf8ToLatin1(std::string_view utf8);

// True when the bytes are well-formed UTF-8 (no overlong forms, no surrogates).
bool isUtf8(std::string_view bytes);

// True when the bytes are well-formed UTF-8 and every character is in Latin-1.
bool isUtf8WithinLatin1(std::string_view bytes);

}  // namespace services
