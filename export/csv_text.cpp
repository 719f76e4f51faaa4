#include "export/csv_text.h"

#include <algorithm>
#include <cstddef>
#include <tuple>

#include "export/csv_formats.h"

namespace exporting {

namespace {

using Record = device::DictionaryRecord;
using Sample = device::TrainingSample;
using services::Text;
using services::TextView;

template <typename Owner, typename Value, typename Format>
struct Column {
    TextView title;
    Value Owner::*member;
    Format format;
};

template <typename Owner, typename Value, typename Format>
Column(TextView, Value Owner::*, Format) -> Column<Owner, Value, Format>;

// The distance alone is divided by 100 and keeps its point between columns with commas, and the
// maxima are not divided as the means are: spreadsheets made for these files rely on it.
constexpr std::tuple indexColumns{
    Column{"Trainingsart", &Record::trainingType, Integer{}},
    Column{"Beschreibung", &Record::description, AsStored{}},
    Column{"Startdatum", &Record::startDate, DateAndTime{}},
    Column{"Enddatum", &Record::endDate, DateAndTime{}},
    Column{"Watt", &Record::watt, RoundedInteger{}},
    Column{"Unbekannt1", &Record::unknown1, Fixed<0, '.'>{}},
    Column{"Puls", &Record::pulse, RoundedInteger{}},
    Column{"RPM", &Record::rpm, Fixed<0, '.', 10>{}},
    Column{"km/h", &Record::speed, Fixed<2, ',', 10>{}},
    Column{"KJoule/Min.", &Record::kJoulePerMinute, Fixed<2, ','>{}},
    Column{"Fahrzeit", &Record::rideTime, Duration{}},
    Column{"Strecke", &Record::distance, Fixed<2, '.', 100>{}},
    Column{"Max km/h", &Record::maxSpeed, Fixed<2, ','>{}},
    Column{"Unbekannt2", &Record::unknown2, Integer{}},
    Column{"Max. RPM", &Record::maxRpm, Fixed<0, '.'>{}},
    Column{"Unbekannt3", &Record::unknown3, RoundedInteger{}},
    Column{"Max. KJoule/Min.", &Record::maxKJoulePerMinute, Fixed<0, '.'>{}},
    Column{"KJoule", &Record::kJoule, Fixed<0, '.'>{}},
    Column{"Unbekannt4", &Record::unknown4, Fixed<0, '.'>{}},
    Column{"Unbekannt5", &Record::unknown5, Integer{}},
    Column{"Unbekannt6", &Record::unknown6, Integer{}},
};

// Not the order on disk: the pulse type stands before the training type, and the pulse times come
// last, five of them headed by a bare number. The tenths of slope, torque and cadence are rounded
// away.
constexpr std::tuple trainingColumns{
    Column{"Elapsed Time (s)", &Sample::elapsedTime, Integer{}},
    Column{"Distance (km)", &Sample::distance, Fixed<3, ',', 1000>{}},
    Column{"Phys. kJoule", &Sample::kJoule, RoundedInteger{}},
    Column{"Slope (%)", &Sample::slope, Fixed<0, '.', 10>{}},
    Column{"NM", &Sample::torque, Fixed<0, '.', 10>{}},
    Column{"RPM", &Sample::rpm, Fixed<0, '.', 10>{}},
    Column{"Speed (km/h)", &Sample::speed, Fixed<1, ',', 10>{}},
    Column{"Watt", &Sample::watt, Integer{}},
    Column{"Gear", &Sample::gear, Integer{}},
    Column{"Device Active", &Sample::deviceActive, Integer{}},
    Column{"Pulse", &Sample::pulse, Integer{}},
    Column{"Pulse Type", &Sample::pulseType, Integer{}},
    Column{"Training Type", &Sample::trainingType, Integer{}},
    Column{"Training Value", &Sample::trainingValue, Fixed<1, ','>{}},
    Column{"Pulse Time 1", &Sample::pulseTime1, Integer{}},
    Column{"2", &Sample::pulseTime2, Integer{}},
    Column{"3", &Sample::pulseTime3, Integer{}},
    Column{"4", &Sample::pulseTime4, Integer{}},
    Column{"5", &Sample::pulseTime5, Integer{}},
    Column{"6", &Sample::pulseTime6, Integer{}},
};

static_assert(std::tuple_size_v<decltype(indexColumns)> == 21);
static_assert(std::tuple_size_v<decltype(trainingColumns)> == 20);

// Writes one line, `write(at, column)` being the field of a column, and returns its end. The last
// separator gives way to the line end.
template <typename Columns, typename Write>
char* writeLine(char* line, const Columns& columns, const Write& write) {
    const auto writeFields = [line, &write](const auto&... column) {
        char* at = line;
        ((at = write(at, column), *at++ = ';'), ...);
        return at;
    };
    char* end = std::apply(writeFields, columns);
    end[-1] = '\r';
    *end++ = '\n';
    return end;
}

// The sum of `length(column)` with room for the separators and the line end.
template <typename Columns, typename Length>
std::size_t longestLine(const Columns& columns, const Length& length) {
    return std::apply(
        [&](const auto&... column) { return (std::size_t{1} + ... + (length(column) + 1)); },
        columns);
}

// `line` is room for the line in the making, kept from one line to the next.
template <typename Columns, typename Length, typename Write>
void appendLine(Text& text, Text& line, const Columns& columns, const Length& length,
                const Write& write) {
    const std::size_t room = longestLine(columns, length);
    if (line.size() < room) line.resize(room);
    char* const end = writeLine(line.data(), columns, write);
    text.append(line.data(), end);
}

template <typename Columns>
void appendHeader(Text& text, Text& line, const Columns& columns) {
    appendLine(
        text, line, columns, [](const auto& column) { return column.title.size(); },
        [](char* at, const auto& column) { return writeText(at, column.title); });
}

template <typename Columns, typename Owner>
void appendFields(Text& text, Text& line, const Columns& columns, const Owner& owner) {
    appendLine(
        text, line, columns,
        [&](const auto& column) { return column.format.longest(owner.*column.member); },
        [&](char* at, const auto& column) {
            return column.format.write(at, owner.*column.member);
        });
}

// A little more than usual lines need, so that the text is seldom moved while it grows.
constexpr std::size_t usualLine = 120;

constexpr std::size_t linesPerPiece = 8192;

void appendHeaderOf(Text& text, Text& line, std::span<const Record>) {
    appendHeader(text, line, indexColumns);
}

void appendHeaderOf(Text& text, Text& line, std::span<const Sample>) {
    appendHeader(text, line, trainingColumns);
}

void appendLines(Text& text, Text& line, std::span<const Record> records) {
    for (const Record& record : records) {
        if (record.selected != 0) appendFields(text, line, indexColumns, record);
    }
}

void appendLines(Text& text, Text& line, std::span<const Sample> samples) {
    for (const Sample& sample : samples)
        appendFields(text, line, trainingColumns, sample);
}

template <typename Owner>
Text wholeCsv(std::span<const Owner> owners) {
    Text text;
    Text line;
    text.reserve((owners.size() + 2) * usualLine);
    appendHeaderOf(text, line, owners);
    appendLines(text, line, owners);
    return text;
}

template <typename Owner>
void writeCsv(std::span<const Owner> owners, const TakePiece& take) {
    Text text;
    Text line;
    text.reserve((std::min(owners.size(), linesPerPiece) + 2) * usualLine);
    appendHeaderOf(text, line, owners);
    do {
        const std::size_t count = std::min(owners.size(), linesPerPiece);
        appendLines(text, line, owners.first(count));
        owners = owners.subspan(count);
        if (!text.empty() && !take(text)) return;
        text.clear();
    } while (!owners.empty());
}

}  // namespace

Text indexCsv(std::span<const Record> records) {
    return wholeCsv(records);
}

Text trainingCsv(std::span<const Sample> samples) {
    return wholeCsv(samples);
}

void writeIndexCsv(std::span<const Record> records, const TakePiece& take) {
    writeCsv(records, take);
}

void writeTrainingCsv(std::span<const Sample> samples, const TakePiece& take) {
    writeCsv(samples, take);
}

}  // namespace exporting
