// The text of a preference file: "[group]" headers and "key = value" lines in Latin-1. Reading is
// total: any bytes parse without error.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "services/text/latin1.h"

namespace services {

struct PreferenceEntry {
    Text key;  // a comment when empty and `isComment` is set
    Text value;
    bool isComment = false;
};

struct PreferenceGroup {
    Text name;  // empty for the part before the first group header
    std::vector<PreferenceEntry> entries;
};

// The records of a preference file's bytes. Group headers of the same name (ignoring case) are one
// group, "[]" goes with the part before the first header; of repeated keys the first counts. Letter
// case is ignored for all letters of Latin-1. Takes time in proportion to the bytes.
std::vector<PreferenceGroup> parsePreferences(std::string_view bytes);

// The bytes of a preference file: LF line ends, "; " comment lines, groups without entries left
// out. The part without a name comes first. Texts are written as they are: what holds a line end, a
// value that begins with a blank or the like reads back as something else.
std::string formatPreferences(const std::vector<PreferenceGroup>& groups);

// Upper and lower case become the same for every letter that has both in Latin-1.
Text foldCase(TextView text);

}  // namespace services
