#include "services/text/paths.h"

namespace services {

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
