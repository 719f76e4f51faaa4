// The groups and keys of the settings file, for its reader and its writer.
#pragma once

#include "services/text/latin1.h"
#include "services/text/numbers.h"
#include "services/text/text.h"

namespace settings::keys {

using services::TextView;
using services::operator""_l1;

inline constexpr TextView programGroup = "Programmeinstellungen"_l1;
inline constexpr TextView windowWidth = "WindowBreite"_l1;
inline constexpr TextView windowHeight = "WindowHöhe"_l1;
inline constexpr TextView deviceDirectory = "Verzeichnis"_l1;
inline constexpr TextView backupDirectory = "Sicherheitskopie"_l1;
inline constexpr TextView renumbering = "Nummerieren"_l1;

inline constexpr TextView colourGroup = "Farben"_l1;
inline constexpr TextView colour = "Farbe "_l1;  // and the value number

inline constexpr TextView menuGroup = "Menüvorwahl"_l1;
inline constexpr TextView menuMark = "Menu "_l1;  // and the item number

inline services::Text numberedKey(TextView name, int number) {
    return services::concatenate(name, services::integerToText(number));
}

}  // namespace settings::keys
