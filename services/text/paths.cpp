#include "services/text/paths.h"

namespace services {

bool isUsablePath(PathView path) {
    return !path.empty() && path.find('\0') == PathView::npos;
}

Text pathToText(PathView path) {
    return utf8ToLatin1(path);
}

Path textToPath(TextView text) {
    return latin1ToUtf8(text);
}

PathView driveOf(PathView path) {
    const std::size_t slash = path.find('/', 1);
    return slash == PathView::npos ? PathView() : path.substr(0, slash);
}

}  // namespace services
