#include "services/disk/preference_text.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "services/text/text.h"

namespace services {

namespace {

TextView withoutLeadingSpace(TextView text) {
    return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

TextView withoutTrailingSpace(TextView text) {
    const std::size_t last = text.find_last_not_of(" \t");
    return last == TextView::npos ? TextView() : text.substr(0, last + 1);
}

// Takes the next line off the front of `bytes`: to LF, CR or the end. CR LF counts as an empty line
// more, which says nothing.
TextView takeLine(TextView& bytes) {
    const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
    const TextView line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    return line;
}

PreferenceEntry parseEntry(TextView line) {
    const std::size_t equals = line.find('=');
    PreferenceEntry entry;
    entry.key = withoutTrailingSpace(line.substr(0, equals));
    if (equals != TextView::npos) entry.value = withoutLeadingSpace(line.substr(equals + 1));
    return entry;
}

PreferenceEntry parseComment(TextView line) {
    line.remove_prefix(1);
    if (left(line, 1) == " ") line.remove_prefix(1);
    return {.key = {}, .value = Text(line), .isComment = true};
}

void formatEntries(const PreferenceGroup& group, std::string& bytes) {
    for (const PreferenceEntry& entry : group.entries) {
        if (entry.isComment)
            bytes += "; ";
        else
            bytes += entry.key, bytes += " = ";
        bytes += entry.value;
        bytes += '\n';
    }
}

}  // namespace

Text foldCase(TextView text) {
    Text folded = lowerCase(text);
    for (char& character : folded) {
        const auto byte = static_cast<unsigned char>(character);
        // 0xD7 is the multiplication sign amid the capital letters.
        if (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7)
            character = static_cast<char>(byte + 0x20U);
    }
    return folded;
}

std::vector<PreferenceGroup> parsePreferences(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    Text converted;
    if (bytes.substr(0, byteOrderMark.size()) == byteOrderMark) {
        converted = utf8ToLatin1(bytes.substr(byteOrderMark.size()));
        bytes = converted;
    }

    constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
    std::vector<PreferenceGroup> groups;
    std::unordered_map<Text, std::size_t> positions;
    const auto positionOf = [&](TextView name) {
        const auto [place, isNew] = positions.try_emplace(foldCase(name), groups.size());
        if (isNew) groups.push_back({Text(name), {}});
        return place->second;
    };
    std::size_t current = none;
    while (!bytes.empty()) {
        const TextView line = withoutLeadingSpace(takeLine(bytes));
        if (line.empty()) continue;
        if (line.front() == '[') {
            current = positionOf(line.substr(1, line.find(']') - 1));
            continue;
        }
        if (current == none) current = positionOf({});
        groups[current].entries.push_back(line.front() == ';' ? parseComment(line)
                                                              : parseEntry(line));
    }
    return groups;
}

std::string formatPreferences(const std::vector<PreferenceGroup>& groups) {
    // What belongs to no group would, behind a header, belong to the header's group.
    std::string bytes;
    for (const PreferenceGroup& group : groups) {
        if (group.name.empty()) formatEntries(group, bytes);
    }
    for (const PreferenceGroup& group : groups) {
        if (group.name.empty() || group.entries.empty()) continue;
        bytes += '[';
        bytes += group.name;
        bytes += "]\n";
        formatEntries(group, bytes);
    }
    return bytes;
}

}  // namespace services
