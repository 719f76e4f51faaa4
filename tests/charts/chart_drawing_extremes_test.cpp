// Every option of every value at once, on data and images at the edge of what there can be.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "charts/chart_drawing.h"
#include "charts/values/value_catalogue.h"
#include "services/text/text.h"
#include "tests/charts/chart_test.h"

namespace {

using services::operator""_l1;
using charts::ChartKind;
using charts::Option;
using services::Surface;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

class ChartExtremes : public chart_tests::ChartTest {
  protected:
    void markEverything(ChartKind kind) {
        const charts::ValueRange range = charts::valueRange(kind);
        for (int value = range.first; value < range.end; ++value) {
            for (int option = 1; option <= charts::lastMarkOption; ++option) {
                chart_tests::mark(value, static_cast<Option>(option));
            }
        }
    }

    // Draws with everything marked and returns how many items were found without data.
    int drawEverything(ChartKind kind, int width, int height, double pixelRatio = 1.0) {
        markEverything(kind);
        const charts::ValueRange range = charts::valueRange(kind);
        int without = 0;
        for (int value = range.first; value < range.end; ++value) {
            charts::ValueSeries series;
            charts::computeSeries(kind, value, series);
            if (series.hasData) continue;
            const charts::ValueTexts texts = charts::valueTexts(value).value();
            for (int option = 1; option <= charts::lastMarkOption; ++option) {
                const services::Text text = services::concatenate("Das Menü '"_l1, texts.label,
                                                                  "' enthält keine Daten!"_l1);
                stand_ins::expectMessage("Fehler"_l1, text);
                ++without;
            }
        }
        services::resizeSurface(surface, width, height, pixelRatio);
        EXPECT_TRUE(charts::drawChart(kind, surface));
        return without;
    }

    std::size_t colouredPixels() const {
        std::size_t count = 0;
        for (const std::uint32_t pixel : surface.pixels) {
            if (pixel != 0xFFFFFFFFU) ++count;
        }
        return count;
    }

    Surface surface;
};

device::TrainingSample fullSample(std::int16_t base, float real) {
    device::TrainingSample sample;
    sample.distance = real;
    sample.kJoule = real;
    sample.trainingValue = real;
    sample.slope = sample.torque = sample.rpm = sample.speed = sample.watt = base;
    sample.pulse = base;
    sample.pulseTime1 = sample.pulseTime2 = sample.pulseTime3 = base;
    sample.pulseTime4 = sample.pulseTime5 = sample.pulseTime6 = base;
    sample.gear = sample.deviceActive = static_cast<std::int8_t>(base % 100);
    sample.trainingType = sample.pulseType = static_cast<std::int8_t>(base % 50);
    return sample;
}

TEST_F(ChartExtremes, EverythingMarkedOnTwoSamples) {
    device::state.samples = {fullSample(101, 5), fullSample(149, 9)};
    EXPECT_EQ(drawEverything(ChartKind::training, 900, 560), 0);
    // 22 values of 7 items with 3 texts each, and a maximum, a mean and a per cent for each value.
    EXPECT_EQ(stand_ins::world.texts.size(), 22U * 7U * 3U + 22U * 3U);
    EXPECT_GT(colouredPixels(), 100000U);
}

TEST_F(ChartExtremes, EverythingMarkedWithoutAnyPulse) {
    for (int i = 0; i < 500; ++i) {
        device::TrainingSample sample = fullSample(static_cast<std::int16_t>(i % 180), 5);
        sample.watt = static_cast<std::int16_t>(i % 3 == 0 ? 0 : i % 7 == 0 ? -50 : 150);
        sample.pulse = 0;
        device::state.samples.push_back(sample);
    }
    EXPECT_EQ(drawEverything(ChartKind::training, 900, 560), 7);  // the pulse itself
    int infinities = 0;
    for (const auto& call : stand_ins::world.texts)
        infinities += call.text == "+Infinity" ? 1 : 0;
    // Minimum and maximum of 7 items of 3 values, and the maxima beside the point clouds.
    EXPECT_EQ(infinities, 3 * 7 * 2 + 3);
}

TEST_F(ChartExtremes, EverythingMarkedOnThousandsOfSamplesWithHoles) {
    for (int i = 0; i < 5000; ++i) {
        const float reals[] = {nan, infinity, -infinity, 3.4028235e38F, -3.4028235e38F, 1e-45F, 7};
        device::state.samples.push_back(
            fullSample(static_cast<std::int16_t>(i * 13), reals[i % 7]));
    }
    EXPECT_EQ(drawEverything(ChartKind::training, 900, 560), 0);
    EXPECT_GT(colouredPixels(), 100000U);
}

TEST_F(ChartExtremes, EverythingMarkedOnTheLargestAndSmallestIntegers) {
    device::DictionaryRecord least = chart_tests::recordOfWatt(-3.4028235e38F);
    least.startDate = least.endDate = std::numeric_limits<std::int32_t>::min();
    least.rideTime = least.unknown2 = least.unknown5 = least.unknown6 =
        std::numeric_limits<std::int32_t>::min();
    device::DictionaryRecord most = chart_tests::recordOfWatt(3.4028235e38F);
    most.startDate = most.endDate = std::numeric_limits<std::int32_t>::max();
    most.rideTime = most.unknown2 = most.unknown5 = most.unknown6 =
        std::numeric_limits<std::int32_t>::max();
    most.unknown1 = most.unknown3 = most.unknown4 = nan;
    device::state.dictionary = {least, most, most};
    EXPECT_GT(drawEverything(ChartKind::overview, 900, 560), 0);
}

TEST_F(ChartExtremes, EverythingMarkedOnInfiniteTrainings) {
    for (const float real : {infinity, 1.0F, -infinity, nan}) {
        device::DictionaryRecord record = chart_tests::recordOfWatt(real);
        record.pulse = record.rpm = record.speed = record.kJoule = record.distance = real;
        record.unknown1 = record.unknown3 = record.unknown4 = 1;
        device::state.dictionary.push_back(record);
    }
    drawEverything(ChartKind::overview, 900, 560);
}

TEST_F(ChartExtremes, EverythingMarkedOnImagesOfEverySize) {
    struct Row {
        const char* name;
        int width;
        int height;
        double pixelRatio;
    };
    const Row rows[] = {
        {"smallest window", 256, 256, 1.0},
        {"narrower than its margins", 100, 300, 1.0},
        {"lower than its margins", 300, 30, 1.0},
        {"one pixel", 1, 1, 1.0},
        {"no pixel", 0, 0, 1.0},
        {"fractional screen", 500, 200, 1.25},
        {"fine screen", 500, 200, 2.0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        device::state.samples.clear();
        for (int i = 0; i < 300; ++i) {
            device::state.samples.push_back(
                fullSample(static_cast<std::int16_t>(50 + i % 40), static_cast<float>(i + 1)));
        }
        EXPECT_EQ(drawEverything(ChartKind::training, row.width, row.height, row.pixelRatio), 0);
    }
}

TEST_F(ChartExtremes, ADrawingIsTheSameEveryTime) {
    for (int i = 0; i < 300; ++i) {
        device::state.samples.push_back(
            fullSample(static_cast<std::int16_t>(50 + i % 40), static_cast<float>(i + 1)));
    }
    drawEverything(ChartKind::training, 500, 400);
    const auto first = surface.pixels;
    drawEverything(ChartKind::training, 500, 400);
    EXPECT_EQ(surface.pixels, first);
}

}  // namespace
