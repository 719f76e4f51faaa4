#include "settings/path_text.h"

#include "services/directories.h"

namespace settings {

namespace {

bool isOwnBytes(services::TextView text) {
    return services::isUtf8(text) && !services::isUtf8WithinLatin1(text);
}

}  // namespace

services::Text pathToStoredText(services::PathView path) {
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
