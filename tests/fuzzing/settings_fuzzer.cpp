// Any bytes as the start settings file.

#include "device/device_state.h"
#include "services/disk/directories.h"
#include "services/disk/preferences.h"
#include "settings/path_text.h"
#include "settings/settings_state.h"
#include "settings/start_settings.h"
#include "tests/fuzzing/fuzzing.h"
#include "tests/stand_ins/stand_ins.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& directory = fuzzing::ownDirectory();
    const std::string_view bytes = fuzzing::textOf(data, size);

    const auto groups = services::parsePreferences(bytes);
    const std::string written = services::formatPreferences(groups);
    fuzzing::require(
        services::formatPreferences(services::parsePreferences(written)).size() <= written.size(),
        "what was written does not grow by reading");

    const services::Path path = settings::storedTextToPath(bytes);
    if (bytes.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos) {
        fuzzing::require(settings::storedTextToPath(settings::pathToStoredText(path)) == path,
                         "a path comes back");
    }

    device::state = {};
    device::state.programDirectory = directory;
    fuzzing::writeFile(directory + std::string(settings::fileName), bytes);
    settings::loadStartSettings();
    fuzzing::require(settings::state.windowWidth >= settings::smallestStoredSize &&
                         settings::state.windowHeight >= settings::smallestStoredSize,
                     "the window has a size");
    settings::applyMenuPreselection();
    services::setCurrentDirectory(directory);
    return 0;
}
