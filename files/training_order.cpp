#include "files/training_order.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace files {
namespace {

using device::DictionaryRecord;
using services::Text;

void sortByDate(std::vector<DictionaryRecord>& records) {
    std::stable_sort(records.begin(), records.end(),
                     [](const auto& a, const auto& b) { return a.startDate < b.startDate; });
}

// Record numbers in the order of the second sort mode.
std::vector<std::size_t> orderByDescription(const std::vector<DictionaryRecord>& records) {
    std::vector<Text> keys;  // folded once a record, not once a comparison
    keys.reserve(records.size());
    for (const DictionaryRecord& record : records)
        keys.push_back(foldLetterCase(record.description));

    std::vector<std::size_t> order(records.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    // Of descriptions that differ in letter case alone, the one that comes first stays first, with
    // all trainings that bear it.
    std::unordered_map<services::TextView, std::size_t> firstOf;
    std::vector<std::size_t> first(records.size());
    for (std::size_t i = 0; i < records.size(); ++i)
        first[i] = firstOf.try_emplace(records[i].description, i).first->second;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        const int difference = keys[a].compare(keys[b]);
        return difference > 0 || (difference == 0 && first[a] < first[b]);
    });

    const auto earlier = [&](std::size_t a, std::size_t b) {
        return records[a].startDate < records[b].startDate;
    };
    const auto at = [&](std::size_t place) {
        return order.begin() + static_cast<std::ptrdiff_t>(place);
    };
    std::size_t groupStart = 0;
    for (std::size_t i = 1; i < order.size(); ++i) {
        const bool isLast = i + 1 == order.size();
        const bool differs = records[order[i]].description != records[order[i - 1]].description;
        if (!differs && !isLast) continue;
        // The last record always closes the run before it, even with a description of its own, and
        // may so end up inside that group. Users know the list that way.
        std::stable_sort(at(groupStart), at(isLast ? i + 1 : i), earlier);
        groupStart = i;
    }
    return order;
}

char foldedCharacter(char character) {
    const auto byte = static_cast<unsigned char>(character);
    constexpr unsigned char multiplicationSign = 0xD7;  // stands among the capital letters
    const bool isCapital = (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 0xC0 && byte <= 0xDE && byte != multiplicationSign);
    return isCapital ? static_cast<char>(byte + 0x20) : character;
}

}  // namespace

void sortTrainings(std::vector<DictionaryRecord>& records, SortMode mode) {
    if (mode == SortMode::byDate) {
        sortByDate(records);
        return;
    }
    std::vector<DictionaryRecord> sorted;
    sorted.reserve(records.size());
    for (const std::size_t number : orderByDescription(records))
        sorted.push_back(std::move(records[number]));
    records = std::move(sorted);
}

services::Text foldLetterCase(services::TextView text) {
    Text folded;
    folded.reserve(text.size());
    std::transform(text.begin(), text.end(), std::back_inserter(folded), foldedCharacter);
    return folded;
}

}  // namespace files
