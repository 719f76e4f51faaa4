#include "charts/values/value_catalogue.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "services/text/dates.h"
#include "services/text/numbers.h"

namespace charts {
namespace {

using device::DictionaryRecord;
using device::TrainingSample;
using services::operator""_l1;

// Integer fields become single-precision reals before any arithmetic; for 32 bits that rounds.
constexpr float real(std::int32_t field) {
    return static_cast<float>(field);
}

// The menu text of value 0 (and 50) promises another formula than its label; the label is right.
constexpr std::array<OverviewValue, overviewValueCount> overviewTable = {{
    {0, "Watt / Puls / RPM * 100"_l1, "Watt/Puls*RPM/100"_l1, 2,
     [](const DictionaryRecord& record) {
         return record.watt / record.pulse * record.rpm / 100.0F;
     }},
    {1, "Watt / Puls"_l1, "Watt/Puls"_l1, 2,
     [](const DictionaryRecord& record) { return record.watt / record.pulse; }},
    {2, "RPM / Puls"_l1, "RPM/Puls"_l1, 2,
     [](const DictionaryRecord& record) { return record.rpm / record.pulse; }},
    {3, "Watt"_l1, "Watt"_l1, 0, [](const DictionaryRecord& record) { return record.watt; }},
    {4, "Unbekannt 1"_l1, "Unbekannt1"_l1, 2,
     [](const DictionaryRecord& record) { return record.unknown1; }},
    {5, "Puls"_l1, "Puls"_l1, 0, [](const DictionaryRecord& record) { return record.pulse; }},
    {6, "RPM"_l1, "RPM"_l1, 0, [](const DictionaryRecord& record) { return record.rpm; }},
    {7, "km/h"_l1, "km/h"_l1, 1, [](const DictionaryRecord& record) { return record.speed; }},
    {8, "KJoule / Minute"_l1, "KJoule/Min."_l1, 2,
     [](const DictionaryRecord& record) { return record.kJoulePerMinute; }},
    {9, "Fahrzeit"_l1, "Fahrzeit"_l1, durationDecimals,
     [](const DictionaryRecord& record) { return real(record.rideTime); }},
    {10, "Strecke"_l1, "km"_l1, 2, [](const DictionaryRecord& record) { return record.distance; }},
    {11, "Max. km/h"_l1, "Max.km/h"_l1, 2,
     [](const DictionaryRecord& record) { return record.maxSpeed; }},
    {12, "Unbekannt 2"_l1, "Unbekannt2"_l1, 2,
     [](const DictionaryRecord& record) { return real(record.unknown2); }},
    {13, "Max. RPM"_l1, "Max. RPM"_l1, 0,
     [](const DictionaryRecord& record) { return record.maxRpm; }},
    {14, "Unbekannt 3"_l1, "Unbekannt3"_l1, 0,
     [](const DictionaryRecord& record) { return record.unknown3; }},
    {15, "Max. Joule / Minute"_l1, "Max.Joule/Minute"_l1, 2,
     [](const DictionaryRecord& record) { return record.maxKJoulePerMinute; }},
    {16, "KJoule"_l1, "KJoule"_l1, 0, [](const DictionaryRecord& record) { return record.kJoule; }},
    {17, "Unbekannt 4"_l1, "Unbekannt4"_l1, 2,
     [](const DictionaryRecord& record) { return record.unknown4; }},
    {18, "Unbekannt 5"_l1, "Unbekannt5"_l1, 2,
     [](const DictionaryRecord& record) { return real(record.unknown5); }},
    {19, "Unbekannt 6"_l1, "Unbekannt6"_l1, 2,
     [](const DictionaryRecord& record) { return real(record.unknown6); }},
}};

// Value 52 divides the stored tenths, so it is ten times the ratio of what 57 and 62 show. "KJolue"
// is how the menu has always spelled value 54. A pulse of 0 divides all the same: the result is an
// infinity or not a number.
constexpr std::array<TrainingValue, trainingValueCount> trainingTable = {{
    {50, "Watt / Puls / RPM * 100"_l1, "Watt/Puls*RPM/100"_l1, 2,
     [](const TrainingSample& sample) {
         return real(sample.watt) / real(sample.pulse) * real(sample.rpm) / 1000.0F;
     }},
    {51, "Watt / Puls"_l1, "Watt/Puls"_l1, 2,
     [](const TrainingSample& sample) { return real(sample.watt) / real(sample.pulse); }},
    {52, "RPM / Puls"_l1, "RPM/Puls"_l1, 2,
     [](const TrainingSample& sample) { return real(sample.rpm) / real(sample.pulse); }},
    {53, "km"_l1, "Gefahrene km"_l1, 2,
     [](const TrainingSample& sample) { return sample.distance / 1000.0F; }},
    {54, "KJolue"_l1, "KJoule"_l1, 0, [](const TrainingSample& sample) { return sample.kJoule; }},
    {55, "Steigung"_l1, "Steigung"_l1, 2,
     [](const TrainingSample& sample) { return real(sample.slope) / 10.0F; }},
    {56, "Newtonmeter"_l1, "Newtonmeter"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.torque) / 10.0F; }},
    {57, "RPM"_l1, "RPM"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.rpm) / 10.0F; }},
    {58, "km/h"_l1, "km/h"_l1, 2,
     [](const TrainingSample& sample) { return real(sample.speed) / 10.0F; }},
    {59, "Watt"_l1, "Watt"_l1, 0, [](const TrainingSample& sample) { return real(sample.watt); }},
    {60, "Gang"_l1, "Gang"_l1, 2, [](const TrainingSample& sample) { return real(sample.gear); }},
    {61, "Gerät"_l1, "Gerät"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.deviceActive); }},
    {62, "Puls"_l1, "Puls"_l1, 0, [](const TrainingSample& sample) { return real(sample.pulse); }},
    {63, "Pulszeit 1"_l1, "Pulszeit 1"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.pulseTime1); }},
    {64, "Pulszeit 2"_l1, "Pulszeit 2"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.pulseTime2); }},
    {65, "Pulszeit 3"_l1, "Pulszeit 3"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.pulseTime3); }},
    {66, "Pulszeit 4"_l1, "Pulszeit 4"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.pulseTime4); }},
    {67, "Pulszeit 5"_l1, "Pulszeit 5"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.pulseTime5); }},
    {68, "Pulszeit 6"_l1, "Pulszeit 6"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.pulseTime6); }},
    {69, "Trainingsart"_l1, "Trainingsart"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.trainingType); }},
    {70, "Pulsart"_l1, "Pulsart"_l1, 0,
     [](const TrainingSample& sample) { return real(sample.pulseType); }},
    {71, "Trainingswert"_l1, "Trainingswert"_l1, 2,
     [](const TrainingSample& sample) { return sample.trainingValue; }},
}};

template <typename Table>
constexpr bool isNumberedFrom(const Table& table, int first) {
    for (const auto& row : table) {
        if (row.number != first++) return false;
    }
    return true;
}
// A value's row is found by its number alone.
static_assert(isNumberedFrom(overviewTable, 0));
static_assert(isNumberedFrom(trainingTable, firstTrainingValue));

}  // namespace

std::span<const OverviewValue, overviewValueCount> overviewValues() {
    return overviewTable;
}

std::span<const TrainingValue, trainingValueCount> trainingValues() {
    return trainingTable;
}

std::optional<ValueTexts> valueTexts(int valueNumber) {
    if (valueNumber >= 0 && valueNumber < overviewValueCount) {
        const OverviewValue& row = overviewTable[static_cast<std::size_t>(valueNumber)];
        return ValueTexts{row.menuText, row.label, row.decimals};
    }
    if (valueNumber >= firstTrainingValue && valueNumber < valueNumberLimit) {
        const TrainingValue& row =
            trainingTable[static_cast<std::size_t>(valueNumber - firstTrainingValue)];
        return ValueTexts{row.menuText, row.label, row.decimals};
    }
    return std::nullopt;
}

ValueRange valueRange(ChartKind kind) {
    return kind == ChartKind::overview ? ValueRange{0, overviewValueCount}
                                       : ValueRange{firstTrainingValue, valueNumberLimit};
}

services::Text valueText(int valueNumber, float value) {
    const std::optional<ValueTexts> texts = valueTexts(valueNumber);
    if (!texts) return {};
    if (texts->decimals == durationDecimals && std::isfinite(value)) {
        // A limit may be any float; those beyond 64 bits are whole numbers.
        constexpr float beyond64Bits = 0x1p63F;
        return std::fabs(value) < beyond64Bits
                   ? services::durationText(services::roundToInt64(static_cast<double>(value)))
                   : services::durationTextOfDigits(services::floatToText(value, 0));
    }
    return services::floatToText(value, texts->decimals);
}

}  // namespace charts
