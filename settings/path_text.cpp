#include "settings/path_text.h"

#include <algorithm>

#include "services/disk/directories.h"

namespace settings {

namespace {

bool isAscii(services::TextView text) {
    return std::ranges::all_of(
        text, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

bool isOwnBytes(services::TextView text) {
    return services::isUtf8(text) && !isAscii(text);
}

}  // namespace

services::Text pathToStoredText(services::PathView path) {
    constexpr services::PathView unstorable("\r\n\0", 3);
    if (path.find_first_of(unstorable) != services::PathView::npos) return {};
    if (services::isUtf8WithinLatin1(path)) {
        services::Text latin1 = services::utf8ToLatin1(path);
        if (!isOwnBytes(latin1)) return latin1;
    }
    return services::Text(path);
}

services::Path storedTextToPath(services::TextView text) {
    if (isOwnBytes(text)) return services::Path(text);
    services::Path path = services::textToPath(text);
    if (path != text && !services::isDirectory(path) && services::isDirectory(text)) {
        return services::Path(text);
    }
    return path;
}

}  // namespace settings
