#include "files/training_rows.h"

#include <array>
#include <cstddef>

#include "charts/values/value_catalogue.h"
#include "services/text/dates.h"
#include "services/text/numbers.h"
#include "services/text/text.h"

namespace files {
namespace {

using device::DictionaryRecord;
using services::floatToText;
using services::rightAlign;
using services::Text;
using services::operator""_l1;

// The derived values are those of the overview chart: list and chart never disagree.
float overviewValue(std::size_t number, const DictionaryRecord& record) {
    return charts::overviewValues()[number].source(record);
}

Text wholeNumber(float value) {
    Text text = floatToText(value, 0);
    return text == "-0" ? "0" : text;
}

// Watt and pulse are padded with zeros where all others have blanks: users know the list that way.
// A text longer than its column keeps its first characters.
constexpr std::array<TrainingColumn, trainingColumnCount> columnTable = {{
    {"Datum"_l1, 15, 1.7, false, "00.00.0000 00:00:00"_l1,
     [](const DictionaryRecord& record) { return services::dateAndTimeText(record.startDate); }},
    {"Training"_l1, 29, 1.3, false, ""_l1,
     [](const DictionaryRecord& record) { return record.description; }},
    {"km"_l1, 6.25, 1.3, true, "000.0"_l1,
     [](const DictionaryRecord& record) {
         return rightAlign(floatToText(record.distance / 1000.0F, 1), 5);
     }},
    {"Zeit"_l1, 7.5, 1.3, true, "0:00:00"_l1,
     [](const DictionaryRecord& record) { return services::durationText(record.rideTime); }},
    {"km/h"_l1, 5.63, 1.3, true, "000.0"_l1,
     [](const DictionaryRecord& record) { return rightAlign(floatToText(record.speed, 1), 5); }},
    {"Watt"_l1, 5.63, 1.3, true, "000.0"_l1,
     [](const DictionaryRecord& record) {
         return rightAlign(floatToText(record.watt, 1), 5, '0');
     }},
    {"Puls"_l1, 5.63, 1.3, true, "000.0"_l1,
     [](const DictionaryRecord& record) {
         return rightAlign(floatToText(record.pulse, 1), 5, '0');
     }},
    {"Watt/Puls"_l1, 8, 1.3, true, "000.00"_l1,
     [](const DictionaryRecord& record) {
         return rightAlign(floatToText(overviewValue(1, record), 2), 6);
     }},
    {"Fitness"_l1, 7, 1.3, true, "000.000"_l1,
     [](const DictionaryRecord& record) {
         return rightAlign(floatToText(overviewValue(0, record), 3), 7);
     }},
    {"RPM"_l1, 5.63, 1.3, true, "000.0"_l1,
     [](const DictionaryRecord& record) { return rightAlign(floatToText(record.rpm, 1), 5); }},
    {"RPM/Puls"_l1, 9, 1.3, true, "000000.00"_l1,
     [](const DictionaryRecord& record) {
         return rightAlign(floatToText(overviewValue(2, record), 2), 9);
     }},
    {"kJoule"_l1, 7, 1.3, true, "00000"_l1,
     [](const DictionaryRecord& record) { return rightAlign(wholeNumber(record.kJoule), 5); }},
    {"Dateiname"_l1, 15, 1.3, false, "0000000000000000"_l1,
     [](const DictionaryRecord& record) { return record.fileName; }},
}};

}  // namespace

std::span<const TrainingColumn, trainingColumnCount> trainingColumns() {
    return columnTable;
}

int columnWidth(const TrainingColumn& column, int characterWidth) {
    return services::roundToInt32(characterWidth * column.characters * column.factor);
}

services::Text trainingCell(const device::DictionaryRecord& record, int column) {
    if (column < 0 || column >= trainingColumnCount) return {};
    return columnTable[static_cast<std::size_t>(column)].cell(record);
}

}  // namespace files
