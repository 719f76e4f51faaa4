// Any bytes as the copy of an index, and, behind a length, as the index beside it.

#include <unordered_set>

#include "device/index_copy.h"
#include "services/disk/whole_files.h"
#include "services/text/numbers.h"
#include "tests/fuzzing/fuzzing.h"

namespace {

std::unordered_set<std::string> namesIn(std::string_view index) {
    std::unordered_set<std::string> names;
    for (std::size_t at = 0; at + device::dictionaryRecordSize <= index.size();
         at += device::dictionaryRecordSize) {
        std::uint64_t number = 0;
        for (std::size_t i = 8; i-- > 0;)
            number = number << 8U | static_cast<unsigned char>(index[at + i]);
        names.insert(services::numberToHexadecimal16(number));
    }
    return names;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes = fuzzing::textOf(data, size);
    device::decodeIndexCopy(bytes);
    if (size < 4) return 0;

    // The hash would keep all but a few inputs out: it is put behind here.
    const std::size_t cut = std::min<std::size_t>(size - 4, data[0] * 256U + data[1]);
    const std::size_t presentLength = std::min<std::size_t>(cut, data[2] * 256U + data[3]);
    bytes.remove_prefix(4);
    std::string whole(bytes.substr(0, cut));
    const std::uint64_t hash = services::hashOf(whole);
    for (unsigned i = 0; i < 8; ++i)
        whole += static_cast<char>(static_cast<unsigned char>(hash >> (8 * i)));
    const auto copy = device::decodeIndexCopy(whole);
    if (!copy) return 0;
    fuzzing::require(device::encodeIndexCopy(*copy) == whole, "a copy comes back");

    const std::string_view present = bytes.substr(cut);
    const auto isThere = [](const services::Text& name) { return name.back() % 2 == 0; };
    const auto outcomes = device::outcomesOf(
        *copy, isThere, [](const services::Text& name, const device::PendingRename& rename) {
            return name.back() % 2 == 0 && rename.length % 2 == 0;
        });
    for (const auto& index :
         {std::optional<std::string_view>(), std::optional(present),
          std::optional(std::string_view(copy->index)
                            .substr(0, std::min(presentLength, copy->index.size())))}) {
        const std::string repaired = device::repairedIndex(*copy, outcomes, index, isThere);
        if (!index) continue;
        fuzzing::require(repaired.size() / 152 >= index->size() / 152, "no record goes");
        if (!copy->renames.empty()) continue;
        const auto after = namesIn(repaired);
        for (const std::string& name : namesIn(*index))
            fuzzing::require(after.contains(name), "no training goes");
    }
    return 0;
}
