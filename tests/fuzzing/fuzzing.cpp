#include "tests/fuzzing/fuzzing.h"

#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <vector>

#include "charts/marks/chart_frame.h"
#include "charts/marks/chart_texts.h"
#include "charts/marks/mark_geometry.h"
#include "charts/values/value_catalogue.h"
#include "charts/values/value_series.h"
#include "export/csv_text.h"
#include "export/default_name.h"
#include "files/training_order.h"
#include "files/training_rows.h"
#include "tests/stand_ins/stand_ins.h"

namespace fuzzing {

namespace {

std::string makeOwnDirectory() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "kurbelbuch-fuzz-XXXXXX").string();
    require(mkdtemp(pattern.data()) != nullptr, "a directory can be made");
    std::filesystem::current_path(pattern);
    std::atexit([] {
        const std::filesystem::path own = std::filesystem::current_path();
        std::filesystem::current_path("/");
        std::error_code ignored;
        std::filesystem::remove_all(own, ignored);
    });
    stand_ins::world.anyMessageIsFine = true;
    return pattern + "/";
}

void useSeries(int number, const charts::ValueSeries& series) {
    for (const auto& [width, height] :
         {std::pair{0, 0}, std::pair{300, 200}, std::pair{1600, 900}}) {
        const charts::ChartFrame frame = charts::chartFrame(width, height);
        charts::BarMarks bars;
        charts::computeBars(frame, series, bars);
        std::vector<charts::LineMark> lines;
        charts::computeLine(frame, series, lines);
        charts::PointMarks points;
        charts::computeCircles(frame, series, points);
        charts::computeSquares(frame, series, points);
        charts::computeCloud(frame, series, points);
        charts::ItemTextPlace place;
        charts::itemTexts(frame, number, series, 0, place);
        charts::CloudTextPlace cloudPlace;
        charts::cloudText(frame, number, series, 0, cloudPlace);
        if (const auto mean = charts::computeMean(frame, series))
            charts::meanText(frame, number, series, *mean, 0);
        if (const auto trend = charts::computeTrend(frame, series))
            charts::trendText(frame, *trend, 0);
        charts::overviewBottomLine(frame, series);
    }
}

// Limits that a user can have set for these values: none, some, and none that any value keeps.
std::array<charts::Limits, 3> limitsFor(const charts::ValueSeries& series) {
    return {{{}, {series.mean, series.maximum}, {series.maximum, series.minimum}}};
}

}  // namespace

const std::string& ownDirectory() {
    static const std::string directory = makeOwnDirectory();
    return directory;
}

void writeFile(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    require(file.good(), "a file can be written");
}

void useRecords(std::span<const device::DictionaryRecord> records) {
    for (const device::DictionaryRecord& record : records) {
        for (int column = 0; column < files::trainingColumnCount; ++column)
            files::trainingCell(record, column);
        const services::Text name = exporting::defaultTrainingName(record);
        require(name.find('/') == services::Text::npos, "a default name has no directory");
        charts::trainingBottomLine(charts::chartFrame(800, 600), record);
    }
    charts::ValueSeries series;
    for (int number = 0; number < charts::overviewValueCount; ++number) {
        charts::computeOverviewSeries(number, records, {}, series);
        for (const charts::Limits& limits : limitsFor(series)) {
            charts::computeOverviewSeries(number, records, limits, series);
            useSeries(number, series);
        }
    }
    exporting::indexCsv(records);
    std::vector<device::DictionaryRecord> sorted(records.begin(), records.end());
    files::sortTrainings(sorted, files::SortMode::byDescription);
    require(sorted.size() == records.size(), "sorting keeps every record");
    files::sortTrainings(sorted, files::SortMode::byDate);
}

void useSamples(std::span<const device::TrainingSample> samples) {
    charts::ValueSeries series;
    for (int i = 0; i < charts::trainingValueCount; ++i) {
        const int number = charts::firstTrainingValue + i;
        charts::computeTrainingSeries(number, samples, {}, series);
        for (const charts::Limits& limits : limitsFor(series)) {
            charts::computeTrainingSeries(number, samples, limits, series);
            useSeries(number, series);
        }
    }
    exporting::trainingCsv(samples);
}

}  // namespace fuzzing
