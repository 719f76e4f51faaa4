#include "services/text/latin1.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using services::operator""_l1;
using services::isUtf8;
using services::isUtf8WithinLatin1;
using services::latin1ToUtf8;
using services::Text;
using services::utf8ToLatin1;

TEST(Latin1, LiteralsBecomeOneByteACharacter) {
    EXPECT_EQ("äöüßÄÖÜ"_l1, "\xE4\xF6\xFC\xDF\xC4\xD6\xDC");
    EXPECT_EQ("plain"_l1, "plain");
    EXPECT_TRUE(""_l1.empty());
}

TEST(Latin1, LiteralsAreFollowedByANulByte) {
    EXPECT_EQ('\0', "Übersicht"_l1.data()[9]);
}

TEST(Latin1, EveryByteSurvivesTheWayToUtf8AndBack) {
    Text all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const std::string utf8 = latin1ToUtf8(all);
    EXPECT_EQ(128U + 2 * 128U, utf8.size());
    EXPECT_TRUE(isUtf8(utf8));
    EXPECT_TRUE(isUtf8WithinLatin1(utf8));
    EXPECT_EQ(all, utf8ToLatin1(utf8));
}

struct Row {
    const char* name;
    std::string utf8;
    Text latin1;
    bool valid;
    bool withinLatin1;
};

const Row rows[] = {
    {"empty", "", "", true, true},
    {"ascii with NUL", std::string("a\0b", 3), std::string("a\0b", 3), true, true},
    {"umlaut", "\xC3\xB6", "\xF6", true, true},
    {"first beyond ASCII", "\xC2\x80", "\x80", true, true},
    {"last of Latin-1", "\xC3\xBF", "\xFF", true, true},
    {"first beyond Latin-1", "\xC4\x80", "?", true, false},
    {"two letters beyond", "\xC5\x81\xC3\xB3\xC5\xBA", "?\xF3?", true, false},
    {"three bytes", "\xE2\x82\xAC", "?", true, false},
    {"four bytes", "\xF0\x9F\x9A\xB2", "?", true, false},
    {"last character", "\xF4\x8F\xBF\xBF", "?", true, false},
    {"beyond the last character", "\xF4\x90\x80\x80", "????", false, false},
    {"overlong two", "\xC1\xBF", "??", false, false},
    {"overlong three", "\xE0\x9F\xBF", "???", false, false},
    {"overlong four", "\xF0\x8F\xBF\xBF", "????", false, false},
    {"surrogate", "\xED\xA0\x80", "???", false, false},
    {"lone continuation", "a\x80z", "a?z", false, false},
    {"cut at the end", "\xE2\x82", "??", false, false},
    {"cut by a letter", "\xC3z", "?z", false, false},
    {"five-byte lead", "\xF8\x88\x80\x80\x80", "?????", false, false},
    {"bare Latin-1", "H\xF6he", "H?he", false, false},
};

TEST(Latin1, Utf8IsReadStrictly) {
    for (const Row& row : rows) {
        EXPECT_EQ(row.latin1, utf8ToLatin1(row.utf8)) << row.name;
        EXPECT_EQ(row.valid, isUtf8(row.utf8)) << row.name;
        EXPECT_EQ(row.withinLatin1, isUtf8WithinLatin1(row.utf8)) << row.name;
    }
}

std::string utf8Of(char32_t character) {
    const auto byte = [](char32_t bits) {
        return static_cast<char>(static_cast<unsigned char>(bits));
    };
    if (character < 0x80) return {byte(character)};
    if (character < 0x800) return {byte(0xC0 + character / 64), byte(0x80 + character % 64)};
    if (character < 0x10000) {
        return {byte(0xE0 + character / 4096), byte(0x80 + character / 64 % 64),
                byte(0x80 + character % 64)};
    }
    return {byte(0xF0 + character / 262144), byte(0x80 + character / 4096 % 64),
            byte(0x80 + character / 64 % 64), byte(0x80 + character % 64)};
}

TEST(Latin1, EveryCharacterOfUtf8IsKnown) {
    for (char32_t character = 0; character < 0x110000; ++character) {
        const std::string utf8 = utf8Of(character);
        const bool surrogate = character >= 0xD800 && character < 0xE000;
        ASSERT_EQ(!surrogate, isUtf8(utf8)) << std::uint32_t{character};
        ASSERT_EQ(character <= 0xFF, isUtf8WithinLatin1(utf8)) << std::uint32_t{character};
        if (surrogate) continue;
        const Text expected(1, character <= 0xFF ? static_cast<char>(character) : '?');
        ASSERT_EQ(expected, utf8ToLatin1(utf8)) << std::uint32_t{character};
    }
}

TEST(Latin1, NothingIsReadBehindTheEnd) {
    for (const char32_t character : {U'\u00FC', U'\u20AC', U'\U0001F6B2'}) {
        const std::string whole = utf8Of(character);
        for (std::size_t length = 1; length < whole.size(); ++length) {
            const std::string_view cut = std::string_view(whole).substr(0, length);
            EXPECT_FALSE(isUtf8(cut)) << length;
            EXPECT_EQ(Text(length, '?'), utf8ToLatin1(cut));
            const std::string behindOthers = "ab" + whole;
            EXPECT_FALSE(isUtf8(std::string_view(behindOthers).substr(0, 2 + length))) << length;
        }
    }
}

}  // namespace
