// The records of a preference file and its bytes: reading accepts everything, writing has one form.
#include "services/disk/preferences.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>

namespace {

using services::formatPreferences;
using services::parsePreferences;
using services::preferenceComment;
using services::PreferenceEntry;
using services::PreferenceGroup;
using services::preferenceGroup;
using services::Preferences;
using services::readInteger;
using services::readText;
using services::Text;
using services::writeInteger;
using services::writeText;
using services::operator""_l1;

Preferences preferencesOf(const std::string& bytes, services::TextView group) {
    Preferences preferences;
    preferences.groups = parsePreferences(bytes);
    preferenceGroup(preferences, group);
    return preferences;
}

struct Row {
    const char* name;
    std::string bytes;
    Text value;  // of "key" in "group"; "-" when there is none
};

const Row rows[] = {
    {"as written", "[group]\nkey = value\n", "value"},
    {"no blanks", "[group]\nkey=value\n", "value"},
    {"no line end", "[group]\nkey = value", "value"},
    {"CR", "[group]\rkey = value\r", "value"},
    {"CR LF", "[group]\r\nkey = value\r\n", "value"},
    {"LF CR is an empty line", "[group]\n\rkey = value\n\r", "value"},
    {"empty lines", "\n\n[group]\n\n\nkey = value\n\n", "value"},
    {"lines of blanks", "[group]\n \t \nkey = value\n", "value"},
    {"indented", " \t[group]\n\t key = value\n", "value"},
    {"blanks around the key", "[group]\n  key \t = value\n", "value"},
    {"blanks in front of the value", "[group]\nkey = \t  value\n", "value"},
    {"trailing blanks stay", "[group]\nkey = value \t\n", "value \t"},
    {"equals sign in the value", "[group]\nkey = a=b = c\n", "a=b = c"},
    {"no equals sign", "[group]\nkey\n", ""},
    {"nothing behind the equals sign", "[group]\nkey = \n", ""},
    {"semicolon in a value", "[group]\nkey = a ; b\n", "a ; b"},
    {"a comment is no entry", "[group]\n;key = value\n", "-"},
    {"an indented comment is none either", "[group]\n  ; key = value\n", "-"},
    {"rest of a header line", "[group] key = other\nkey = value\n", "value"},
    {"header without its end", "[group\nkey = value\n", "value"},
    {"second bracket", "[group]]\nkey = value\n", "value"},
    {"blanks belong to the group's name", "[ group]\nkey = value\n", "-"},
    {"letter case", "[GROUP]\nKEY = Value\n", "Value"},
    {"first of repeated keys", "[group]\nkey = value\nKey = other\n", "value"},
    {"first of repeated keys, empty", "[group]\nkey\nkey = other\n", ""},
    {"repeated groups are one", "[group]\na = b\n[x]\nkey = x\n[Group]\nkey = value\n", "value"},
    {"first in repeated groups", "[group]\nkey = value\n[x]\n[group]\nkey = y\n", "value"},
    {"other group", "[other]\nkey = value\n", "-"},
    {"before the first group", "key = value\n[group]\n", "-"},
    {"byte-order mark", "\xEF\xBB\xBF[group]\nkey = H\xC3\xB6he\n", "H\xF6he"},
    {"byte-order mark and beyond Latin-1", "\xEF\xBB\xBF[group]\nkey = \xC5\x81\n", "?"},
    {"UTF-8 without a mark stays", "[group]\nkey = H\xC3\xB6he\n", "H\xC3\xB6he"},
    {"mark that is cut", "\xEF\xBB[group]\nkey = value\n", "-"},
    {"NUL in the value", std::string("[group]\nkey = a\0b\n", 18), Text("a\0b", 3)},
    {"NUL in front of the key", std::string("[group]\n\0key = value\n", 21), "-"},
    {"NULs between", std::string("\0\n[group]\n\0\0\nkey = value\n", 25), "value"},
    {"empty file", "", "-"},
    {"nothing but a mark", "\xEF\xBB\xBF", "-"},
    {"form feed is no blank", "[group]\n\fkey = value\n", "-"},
};

TEST(Preferences, ReadingAcceptsMoreThanTheWriterProduces) {
    for (const Row& row : rows)
        EXPECT_EQ(row.value, readText(preferencesOf(row.bytes, "group"), "key", "-")) << row.name;
}

TEST(Preferences, LetterCaseIsIgnoredForUmlautsToo) {
    const Preferences preferences =
        preferencesOf("[MEN\xDCVORWAHL]\nWINDOWH\xD6HE = 600\n", "Menüvorwahl"_l1);
    EXPECT_EQ(600, readInteger(preferences, "WindowHöhe"_l1, 0));
}

TEST(Preferences, EveryLetterThatHasBothCasesIsFolded) {
    for (int byte = 0; byte < 256; ++byte) {
        const bool capital =
            (byte >= 'A' && byte <= 'Z') || (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7);
        const char other = static_cast<char>(byte + 0x20);
        const Text key{'k', static_cast<char>(byte)};
        Preferences preferences;
        preferenceGroup(preferences, "group");
        writeText(preferences, key, "value");
        EXPECT_EQ(capital ? "value" : "-", readText(preferences, Text{'K', other}, "-")) << byte;
    }
}

TEST(Preferences, ThePartBeforeTheFirstGroupHasTheEmptyName) {
    const std::string bytes = "key = value\n; note\n[group]\nkey = other\n[]\nmore = 1\n";
    const Preferences preferences = preferencesOf(bytes, "");
    EXPECT_EQ("value", readText(preferences, "key", "-"));
    EXPECT_EQ("1", readText(preferences, "more", "-"));
}

TEST(Preferences, AnEmptyKeyIsAKeyAndCommentsAreNot) {
    const Preferences preferences = preferencesOf("[group]\n; note\n= value\n", "group");
    EXPECT_EQ("value", readText(preferences, "", "-"));
}

TEST(Preferences, CommentsLoseOneBlankOnly) {
    const auto groups = parsePreferences(";a\n; b\n;  c\n;\n; \n");
    ASSERT_EQ(1U, groups.size());
    const char* const expected[] = {"a", "b", " c", "", ""};
    ASSERT_EQ(std::size(expected), groups[0].entries.size());
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_TRUE(groups[0].entries[i].isComment);
        EXPECT_EQ(expected[i], groups[0].entries[i].value);
        EXPECT_EQ("", groups[0].entries[i].key);
    }
}

struct IntegerRow {
    const char* name;
    Text value;
    std::int64_t number;
};

const IntegerRow integerRows[] = {
    {"plain", "42", 42},
    {"negative", "-42", -42},
    {"plus", "+42", 42},
    {"leading digits", "42abc", 42},
    {"leading zeros", "007", 7},
    {"no digits", "abc", 0},
    {"empty", "", 0},
    {"sign alone", "-", 0},
    {"fraction", "1.9", 1},
    {"hexadecimal is no decimal prefix", "$1F", 0},
    {"negative hexadecimal", "-$1F", 0},
    {"binary is none either", "%101", 0},
    {"digits in front of a dollar", "12$3", 12},
    {"beyond 32 bits", "4294967301", 4294967301},
    {"beyond 64 bits", "18446744073709551621", 5},
};

TEST(Preferences, IntegersAreReadAsADecimalPrefix) {
    for (const IntegerRow& row : integerRows) {
        const Preferences preferences = preferencesOf("[group]\nkey = " + row.value, "group");
        EXPECT_EQ(row.number, readInteger(preferences, "key", 77)) << row.name;
        EXPECT_EQ(77, readInteger(preferences, "missing", 77)) << row.name;
    }
}

TEST(Preferences, TheWriterHasOneForm) {
    Preferences preferences;
    preferenceGroup(preferences, "Programmeinstellungen");
    writeInteger(preferences, "WindowBreite", 900);
    writeInteger(preferences, "WindowHöhe"_l1, -560);
    writeText(preferences, "Verzeichnis", "");
    writeText(preferences, "Sicherheitskopie",
              "/media/B\xFC"
              "cher/");
    preferenceComment(preferences, "");
    preferenceGroup(preferences, "Farben");
    preferenceComment(preferences, "note");
    preferenceGroup(preferences, "Menüvorwahl"_l1);
    EXPECT_EQ(
        "[Programmeinstellungen]\n"
        "WindowBreite = 900\n"
        "WindowH\xF6he = -560\n"
        "Verzeichnis = \n"
        "Sicherheitskopie = /media/B\xFC"
        "cher/\n"
        "; \n"
        "[Farben]\n"
        "; note\n",
        formatPreferences(preferences.groups));
}

TEST(Preferences, GroupsWithoutEntriesAreLeftOut) {
    EXPECT_EQ("[b]\nk = v\n", formatPreferences(parsePreferences("[a]\n[b]\nk=v\n[c]\n")));
    EXPECT_EQ("", formatPreferences({}));
}

TEST(Preferences, WhatBelongsToNoGroupIsWrittenFirst) {
    Preferences preferences = preferencesOf("[group]\nkey = value\n", "");
    writeInteger(preferences, "first", 1);
    EXPECT_EQ("first = 1\n[group]\nkey = value\n", formatPreferences(preferences.groups));
}

TEST(Preferences, WritingSetsAnExistingKeyAndAddsANewOneAtTheEnd) {
    Preferences preferences = preferencesOf("[group]\nKey = 1\n; note\n[x]\n", "GROUP");
    EXPECT_FALSE(preferences.changed);
    writeText(preferences, "key", "2");
    EXPECT_TRUE(preferences.changed);
    writeText(preferences, "new", "3");
    writeText(preferences, "NEW", "4");
    EXPECT_EQ("2", readText(preferences, "key", "-"));
    EXPECT_EQ("4", readText(preferences, "new", "-"));
    EXPECT_EQ("[group]\nKey = 2\n; note\nnew = 4\n", formatPreferences(preferences.groups));
}

TEST(Preferences, ANewGroupComesAtTheEndWithItsFirstEntry) {
    Preferences preferences = preferencesOf("[a]\nk = v\n", "b");
    EXPECT_EQ("-", readText(preferences, "k", "-"));
    EXPECT_EQ(1U, preferences.groups.size());
    writeText(preferences, "k", "w");
    preferenceGroup(preferences, "B");
    EXPECT_EQ("w", readText(preferences, "k", "-"));
    EXPECT_EQ("[a]\nk = v\n[b]\nk = w\n", formatPreferences(preferences.groups));
}

TEST(Preferences, WhatWasWrittenIsReadBack) {
    const std::string bytes = "a = 1\n; \n[g]\nk = v \n = x\n; c\n[h]\nk = \n";
    EXPECT_EQ(bytes, formatPreferences(parsePreferences(bytes)));
}

TEST(Preferences, AnyBytesAreReadAndTheirOwnFormIsStable) {
    const std::string alphabet("[]=;\r\n \tkK\xD6\0\xEF\xBB\xBF", 15);
    std::uint32_t random = 1;
    for (int i = 0; i < 2000; ++i) {
        std::string bytes;
        for (int k = 0; k < 60; ++k) {
            random = random * 1664525U + 1013904223U;
            bytes += alphabet[(random >> 16U) % alphabet.size()];
        }
        const std::string once = formatPreferences(parsePreferences(bytes));
        // A mark that a first key happens to begin with would be read as one.
        if (once.rfind("\xEF\xBB\xBF", 0) == 0) continue;
        ASSERT_EQ(once, formatPreferences(parsePreferences(once))) << bytes;
    }
}

double secondsOf(const std::string& bytes) {
    const auto start = std::chrono::steady_clock::now();
    Preferences preferences = preferencesOf(bytes, "group");
    // As many reads as a start of the program makes.
    for (int i = 0; i < 600; ++i)
        EXPECT_EQ("-", readText(preferences, "missing", "-"));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Quadratic work on these takes minutes to hours.
constexpr double patience = 30.0;

TEST(Preferences, ALineOfTenMegabytesIsReadAtOnce) {
    const std::size_t size = 10'000'000;
    for (const char filling : {'k', ' ', '[', ']', '=', ';', '\0'})
        EXPECT_LT(secondsOf("[group]\n" + std::string(size, filling)), patience) << filling;
}

TEST(Preferences, AMillionLinesAreReadAtOnce) {
    std::string sameKey = "[group]\n";
    std::string otherKeys = "[group]\n";
    std::string otherGroups;
    for (int i = 0; i < 1'000'000; ++i) {
        const std::string number = std::to_string(i);
        sameKey += "k=v\n";
        otherKeys += number + "=v\r\n";
        otherGroups += "[" + number + "]\r";
    }
    EXPECT_LT(secondsOf(sameKey), patience);
    EXPECT_LT(secondsOf(otherKeys), patience);
    EXPECT_LT(secondsOf(otherGroups), patience);
}

}  // namespace
