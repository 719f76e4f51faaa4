#include "app/help_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

using services::Text;
using services::operator""_l1;

std::vector<Text> helpLines() {
    const Text text = app::helpText();
    std::vector<Text> lines;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find("\r\n", start);
        lines.push_back(text.substr(start, end - start));
        if (end == Text::npos) return lines;
        start = end + 2;
    }
}

const Text& line(const std::vector<Text>& lines, int number) {
    return lines.at(static_cast<std::size_t>(number) - 1);
}

TEST(HelpText, Has111LinesJoinedByCarriageReturnAndLineFeed) {
    const Text text = app::helpText();
    EXPECT_EQ(111U, helpLines().size());
    EXPECT_EQ(110, std::count(text.begin(), text.end(), '\r'));
    EXPECT_EQ(110, std::count(text.begin(), text.end(), '\n'));
    EXPECT_EQ("(1) 'Sinn und Zweck'", helpLines().front());
    EXPECT_EQ("Viel Spaß!"_l1, helpLines().back());
}

TEST(HelpText, KeepsItsLinesOfBlanksAndItsTrailingBlanks) {
    const std::vector<Text> lines = helpLines();
    for (const int number : {14, 31, 34, 38, 74, 101, 110})
        EXPECT_EQ(" ", line(lines, number)) << number;
    EXPECT_EQ("   ", line(lines, 94));
    EXPECT_EQ("    (3ca) 'Fertig' ", line(lines, 29));
    EXPECT_EQ("      angepasst.  ", line(lines, 50));
    std::vector<int> empty;
    for (int number = 1; number <= 111; ++number) {
        if (line(lines, number).empty()) empty.push_back(number);
    }
    EXPECT_EQ((std::vector<int>{4,  12, 19, 25, 28, 45, 51, 62, 65,  68,
                                69, 71, 77, 81, 88, 89, 91, 97, 106, 107}),
              empty);
}

TEST(HelpText, KeepsItsOddities) {
    const std::vector<Text> lines = helpLines();
    EXPECT_EQ("  'data/result/ergo_bike' bzw.'data\\result\\ergo_bike'", line(lines, 7));
    EXPECT_EQ("  (4c) 'Daten exportieren'", line(lines, 78));
    EXPECT_EQ(0U, line(lines, 82).find("  (4c) Es folgen"));
    EXPECT_EQ("  (5b) 'Dateie öffnen'"_l1, line(lines, 95));
}

// FNV-1a over 64 bits, of which the expected figure was computed from the manuscript.
TEST(HelpText, IsTheManuscriptByteForByte) {
    const Text text = app::helpText();
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char character : text)
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3U;
    EXPECT_EQ(4750U, text.size());
    EXPECT_EQ(0x3F6B5C49C8FF629EU, hash);
}

}  // namespace
