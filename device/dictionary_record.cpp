#include "device/dictionary_record.h"

#include "device/record_layout.h"
#include "services/text/numbers.h"

namespace device {

namespace {

using Record = DictionaryRecord;

constexpr std::size_t fileNameOffset = 0;

constexpr std::tuple beforeDescription{Field{8, &Record::trainingType}};

constexpr std::tuple behindDescription{
    Field{76, &Record::startDate},
    Field{80, &Record::endDate},
    Field{84, &Record::watt},
    Field{88, &Record::unknown1},
    Field{92, &Record::pulse},
    Field{96, &Record::rpm},
    Field{100, &Record::speed},
    Field{104, &Record::kJoulePerMinute},
    Field{rideTimeOffset, &Record::rideTime},
    Field{112, &Record::distance},
    Field{116, &Record::maxSpeed},
    Field{120, &Record::unknown2},
    Field{124, &Record::maxRpm},
    Field{128, &Record::unknown3},
    Field{132, &Record::maxKJoulePerMinute},
    Field{136, &Record::kJoule},
    Field{140, &Record::unknown4},
    Field{144, &Record::unknown5},
    Field{148, &Record::unknown6},
};

static_assert(fillsExactly(beforeDescription, fileNameOffset + sizeof(std::uint64_t),
                           descriptionOffset));
static_assert(fillsExactly(behindDescription, descriptionOffset + descriptionSize,
                           dictionaryRecordSize));
static_assert(std::get<8>(behindDescription).offset == rideTimeOffset);

}  // namespace

std::int32_t decodeRideTime(std::span<const std::byte> bytes) {
    return readNumber<std::int32_t>(bytes, rideTimeOffset);
}

DictionaryRecord decodeDictionaryRecord(std::span<const std::byte> bytes) {
    DictionaryRecord record;
    record.fileName =
        services::numberToHexadecimal16(readNumber<std::uint64_t>(bytes, fileNameOffset));
    readFields(bytes, beforeDescription, record);
    readFields(bytes, behindDescription, record);
    // Only +0.0 means "not measured": a -0.0 is some other device value and keeps its bits.
    if (std::bit_cast<std::uint32_t>(record.pulse) == 0) record.pulse = 1.0F;
    if (std::bit_cast<std::uint32_t>(record.rpm) == 0) record.rpm = 1.0F;
    record.selected = 1;
    return record;
}

services::Text encodeDictionaryRecord(const DictionaryRecord& record) {
    DictionaryRecord stored = record;
    if (stored.pulse == 1.0F) stored.pulse = 0.0F;
    if (stored.rpm == 1.0F) stored.rpm = 0.0F;

    services::Text bytes;
    appendNumber(bytes, services::hexadecimalToNumber(stored.fileName));
    appendFields(bytes, beforeDescription, stored);
    // A longer description pushes the rest back: cutting it would change what the card said.
    bytes += stored.description;
    if (stored.description.size() < descriptionSize) {
        bytes.append(descriptionSize - stored.description.size(), '\0');
    }
    appendFields(bytes, behindDescription, stored);
    return bytes;
}

}  // namespace device
