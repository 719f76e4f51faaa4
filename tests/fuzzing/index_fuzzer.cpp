// Any bytes as the index of a card whose trainings 0 to 15 are there.

#include <algorithm>
#include <vector>

#include "device/device_state.h"
#include "device/dictionary.h"
#include "services/text/numbers.h"
#include "tests/fuzzing/fuzzing.h"

namespace {

void makeTrainings() {
    for (std::uint64_t i = 0; i < 16; ++i)
        fuzzing::writeFile(services::numberToHexadecimal16(i), std::string(44, '\0'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool made = (fuzzing::ownDirectory(), makeTrainings(), true);
    static_cast<void>(made);
    const std::string_view bytes = fuzzing::textOf(data, size);

    // Every record, whether or not a file goes with it.
    std::vector<device::DictionaryRecord> records;
    for (std::size_t at = 0; at + device::dictionaryRecordSize <= size && records.size() < 64;
         at += device::dictionaryRecordSize) {
        const auto stored = bytes.substr(at, device::dictionaryRecordSize);
        device::DictionaryRecord record =
            device::decodeDictionaryRecord(std::as_bytes(std::span(stored)));
        const std::string_view text = stored.substr(12, 64);
        record.description = text.substr(0, text.find_first_of(std::string_view("\0\r\n", 3)));
        const services::Text encoded = device::encodeDictionaryRecord(record);
        fuzzing::require(encoded.size() == device::dictionaryRecordSize, "a record keeps its size");
        fuzzing::require(encoded.substr(108, 4) == stored.substr(108, 4), "a field keeps its bits");
        records.push_back(std::move(record));
    }
    fuzzing::useRecords(records);

    fuzzing::writeFile("dictionary.2", bytes);
    device::loadDictionary();
    fuzzing::require(device::state.dictionaryUnreadable == (size < device::dictionaryRecordSize),
                     "whole records can be read");
    fuzzing::useRecords(device::state.dictionary);
    if (device::state.dictionaryUnreadable) return 0;
    const std::size_t count = device::state.dictionary.size();
    const bool descriptionsFit =
        std::ranges::all_of(device::state.dictionary, [](const device::DictionaryRecord& record) {
            return record.description.size() <= device::descriptionSize;
        });
    device::saveDictionary(device::SaveMode::all);
    device::loadDictionary();
    if (count > 0 && descriptionsFit)
        fuzzing::require(device::state.dictionary.size() == count, "a save keeps every training");
    return 0;
}
