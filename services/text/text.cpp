#include "services/text/text.h"

#include <algorithm>

namespace services {

namespace {

std::size_t clampedCount(TextView text, std::int64_t count) {
    return static_cast<std::size_t>(std::clamp<std::int64_t>(count, 0, length(text)));
}

}  // namespace

std::int64_t length(TextView text) {
    return static_cast<std::int64_t>(text.size());
}

TextView left(TextView text, std::int64_t count) {
    return text.substr(0, clampedCount(text, count));
}

TextView right(TextView text, std::int64_t count) {
    return text.substr(text.size() - clampedCount(text, count));
}

std::int64_t find(TextView text, TextView search, std::int64_t start) {
    if (search.empty() || start > length(text)) return 0;
    const auto from = static_cast<std::size_t>(std::max<std::int64_t>(start, 1) - 1);
    const std::size_t found = text.find(search, from);
    return found == TextView::npos ? 0 : static_cast<std::int64_t>(found) + 1;
}

Text replace(TextView text, TextView search, TextView replacement) {
    if (search.empty()) return Text(text);
    Text result;
    std::size_t from = 0;
    for (std::size_t found = text.find(search); found != TextView::npos;
         found = text.find(search, from)) {
        result += text.substr(from, found - from);
        result += replacement;
        from = found + search.size();
    }
    result += text.substr(from);
    return result;
}

Text lowerCase(TextView text) {
    Text lowered(text);
    for (char& character : lowered) {
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    }
    return lowered;
}

Text rightAlign(TextView text, std::int64_t width, char pad) {
    if (width <= length(text)) return Text(left(text, width));
    Text aligned(static_cast<std::size_t>(width) - text.size(), pad);
    aligned += text;
    return aligned;
}

bool equal(TextView a, TextView b) {
    return a == b;
}

}  // namespace services
