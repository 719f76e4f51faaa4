// Whole charts against the same charts painted mark by mark: every style on random series, sizes,
// marks and pixel ratios, the texts between the marks included.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "charts/chart_drawing.h"
#include "charts/values/value_catalogue.h"
#include "services/text/text.h"
#include "tests/charts/chart_test.h"
#include "tests/charts/plain_chart.h"

namespace {

using charts::ChartKind;
using charts::Option;
using services::Surface;
using services::operator""_l1;
using stand_ins::TextCall;
using stand_ins::world;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

class Dice {
  public:
    explicit Dice(unsigned seed) : random(seed) {}

    int between(int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    }
    bool onceIn(int times) { return between(1, times) == 1; }
    float real(float low, float high) {
        const auto part = static_cast<float>(random() % 100'001) / 100'000.0F;
        return low + (high - low) * part;
    }
    template <typename Value>
    Value oneOf(std::initializer_list<Value> values) {
        return values.begin()[between(0, static_cast<int>(values.size()) - 1)];
    }

  private:
    std::mt19937 random;
};

// Shapes of data: each gives the next value of a curve.
class Curve {
  public:
    explicit Curve(Dice& source)
        : dice(source),
          shape(dice.between(0, 8)),
          level(dice.real(1, 300)),
          step(dice.oneOf({0.01F, 0.5F, 5.0F, 40.0F})) {}

    float next() {
        switch (shape) {
            case 0:  // noise
                return dice.real(0, 300);
            case 1:  // a few whole numbers: many equal rows and halves of pixels
                return static_cast<float>(dice.between(0, 4));
            case 2:  // constant
                return level;
            case 3:  // holes
                return dice.onceIn(5) ? dice.oneOf({nan, infinity, -infinity, 0.0F, -7.0F})
                                      : walk();
            case 4:  // single holes that are not numbers
                return dice.onceIn(9) ? nan : walk();
            case 5:  // spikes
                return dice.onceIn(20) ? level * 50 : walk();
            case 6:  // anything
                return dice.onceIn(3) ? dice.oneOf({3.4028235e38F, -3.4028235e38F, 1e-45F, 1e20F})
                                      : walk();
            default:
                return walk();
        }
    }

  private:
    float walk() {
        level = std::clamp(level + dice.real(-step, step), 1.0F, 30'000.0F);
        return level;
    }

    Dice& dice;
    int shape;
    float level;
    float step;
};

std::int16_t whole16(float value) {
    return value > -32768 && value < 32767 ? static_cast<std::int16_t>(value) : std::int16_t{0};
}
std::int8_t whole8(float value) {
    return value > -128 && value < 127 ? static_cast<std::int8_t>(value) : std::int8_t{0};
}

std::vector<device::TrainingSample> randomSamples(Dice& dice, int count) {
    std::vector<device::TrainingSample> samples(static_cast<std::size_t>(count));
    Curve reals[] = {Curve(dice), Curve(dice), Curve(dice)};
    Curve wholes[] = {Curve(dice), Curve(dice), Curve(dice), Curve(dice), Curve(dice)};
    const bool pulseStops = dice.onceIn(2);
    for (device::TrainingSample& sample : samples) {
        sample.distance = reals[0].next() * 1000;
        sample.kJoule = reals[1].next();
        sample.trainingValue = reals[2].next();
        sample.watt = whole16(wholes[0].next());
        sample.rpm = whole16(wholes[1].next() * 10);
        sample.pulse = pulseStops && dice.onceIn(50) ? std::int16_t{0} : whole16(wholes[2].next());
        sample.speed = sample.slope = whole16(wholes[3].next());
        sample.torque = sample.pulseTime1 = whole16(wholes[4].next());
        sample.gear = sample.trainingType = whole8(wholes[4].next());
    }
    return samples;
}

std::vector<device::DictionaryRecord> randomRecords(Dice& dice, int count) {
    std::vector<device::DictionaryRecord> records(static_cast<std::size_t>(count));
    Curve reals[] = {Curve(dice), Curve(dice), Curve(dice), Curve(dice), Curve(dice), Curve(dice)};
    const int leftOut = dice.oneOf({3, 1000});
    for (device::DictionaryRecord& record : records) {
        record.watt = reals[0].next();
        record.unknown1 = reals[1].next();
        record.pulse = reals[2].next();
        record.rpm = reals[3].next();
        record.speed = record.maxSpeed = reals[4].next();
        record.distance = record.kJoule = reals[5].next();
        record.rideTime = dice.between(-100, 10'000);
        record.unknown2 = dice.between(0, 3);
        record.selected = dice.onceIn(leftOut) ? 0 : 1;
    }
    return records;
}

// Texts blend with what is below them and with each other, each in the room that it may take.
void paintText(Surface& surface, const TextCall& call) {
    services::blendBox(surface, call.x - 2, call.y + 1, static_cast<int>(call.text.size()) * 7 + 3,
                       13, call.colour ^ 0x00A5);
}

class ChartPixels : public chart_tests::ChartTest {
  protected:
    void SetUp() override {
        chart_tests::ChartTest::SetUp();
        world.paintText = paintText;
    }

    static void clearMarks() {
        charts::clearOptions(ChartKind::overview);
        charts::clearOptions(ChartKind::training);
    }

    // One message for each marked item without data; it removes the mark.
    static void expectMessages(ChartKind kind) {
        const charts::ValueRange range = charts::valueRange(kind);
        const charts::MarkedOptions marks = charts::readMarkedOptions();
        for (int value = range.first; value < range.end; ++value) {
            if (marks.bits[static_cast<std::size_t>(value)] == 0) continue;
            charts::ValueSeries series;
            charts::computeSeries(kind, value, series);
            if (series.hasData) continue;
            for (int option = 1; option <= charts::lastMarkOption; ++option) {
                if (!marks.has(value, static_cast<Option>(option))) continue;
                const services::Text text = services::concatenate(
                    "Das Menü '"_l1, charts::valueTexts(value)->label, "' enthält keine Daten!"_l1);
                stand_ins::expectMessage("Fehler"_l1, text);
            }
        }
    }

    static std::vector<std::tuple<std::string, int, int, int>> sortedTexts() {
        std::vector<std::tuple<std::string, int, int, int>> texts;
        for (const TextCall& call : world.texts)
            texts.emplace_back(std::string(call.text), call.x, call.y, call.colour);
        std::sort(texts.begin(), texts.end());
        world.texts.clear();
        return texts;
    }

    // Draws the chart both ways and compares pixels and texts.
    static void expectEqualPictures(ChartKind kind, int width, int height, double ratio,
                                    const plain_chart::Painter& painter) {
        Surface plain;
        services::resizeSurface(plain, width, height, ratio);
        Surface drawn = plain;
        for (std::uint32_t& pixel : drawn.pixels)
            pixel = 0xFF123456U;  // of an earlier chart
        world.texts.clear();
        ASSERT_TRUE(plain_chart::drawChart(kind, plain, painter));
        const auto plainTexts = sortedTexts();
        expectMessages(kind);
        ASSERT_TRUE(charts::drawChart(kind, drawn));
        ASSERT_EQ(plainTexts, sortedTexts());
        const auto wrong =
            std::mismatch(plain.pixels.begin(), plain.pixels.end(), drawn.pixels.begin());
        const auto index = static_cast<int>(wrong.first - plain.pixels.begin());
        ASSERT_EQ(wrong.first, plain.pixels.end())
            << "first wrong device pixel " << index % plain.deviceWidth << ", "
            << index / plain.deviceWidth << ": " << std::hex << *wrong.second << " instead of "
            << *wrong.first;
    }

    struct Case {
        ChartKind kind;
        int width, height;
        double ratio;
        std::size_t count;
    };

    // Fills the tables, the colours, the limits and the marks.
    static Case randomCase(Dice& dice, int largestSide, int largestCount) {
        Case c;
        c.kind = dice.onceIn(2) ? ChartKind::overview : ChartKind::training;
        c.ratio = dice.oneOf({1.0, 1.0, 1.0, 1.25, 1.5, 2.0, 2.0, 1.1, 1.75, 3.0});
        c.width = dice.onceIn(20) ? dice.between(0, 135) : dice.between(135, largestSide);
        c.height = dice.onceIn(20) ? dice.between(0, 45) : dice.between(45, largestSide);
        const int count = dice.oneOf({2, dice.between(2, 30), dice.between(2, largestCount)});
        device::state = {};
        charts::state = {};
        if (c.kind == ChartKind::overview) {
            device::state.dictionary = randomRecords(dice, count);
        } else {
            device::state.samples = randomSamples(dice, count);
        }
        c.count = static_cast<std::size_t>(count);
        for (services::Colour& colour : charts::state.colours)
            colour = dice.between(0, 0xFFFFFF);
        clearMarks();
        const charts::ValueRange range = charts::valueRange(c.kind);
        const int marks = dice.oneOf({1, 2, 6, 40});
        for (int i = 0; i < marks; ++i) {
            chart_tests::mark(dice.between(range.first, range.end - 1),
                              static_cast<Option>(dice.between(1, charts::lastMarkOption)));
        }
        for (charts::Limits& limits : charts::state.limits) {
            if (dice.onceIn(6)) limits.lower = dice.real(-5, 200);
            if (dice.onceIn(6)) limits.upper = dice.real(-5, 200);
        }
        return c;
    }

    static void runRandomCases(unsigned seed, int cases, int largestSide, int largestCount,
                               const plain_chart::Painter& painter) {
        Dice dice(seed);
        for (int i = 0; i < cases && !HasFatalFailure(); ++i) {
            const Case c = randomCase(dice, largestSide, largestCount);
            SCOPED_TRACE("case " + std::to_string(i) + ": " + std::to_string(c.count) +
                         " values on " + std::to_string(c.width) + " x " +
                         std::to_string(c.height) + " at " + std::to_string(c.ratio));
            expectEqualPictures(c.kind, c.width, c.height, c.ratio, painter);
        }
    }
};

TEST_F(ChartPixels, ChartsOfFewValuesAreWhatTheirMarksPaint) {
    runRandomCases(1, 1500, 320, 40, plain_chart::raster);
}

TEST_F(ChartPixels, ChartsOfManyValuesAreWhatTheirMarksPaint) {
    runRandomCases(2, 1500, 300, 1500, plain_chart::raster);
}

// Dozens of values a column.
TEST_F(ChartPixels, CrowdedChartsAreWhatTheirMarksPaint) {
    runRandomCases(6, 150, 260, 12'000, plain_chart::raster);
}

TEST_F(ChartPixels, LargeChartsAreWhatTheirMarksPaint) {
    runRandomCases(3, 60, 1200, 6000, plain_chart::raster);
}

TEST_F(ChartPixels, ChartsAreWhatTheReferencePainterPaints) {
    runRandomCases(4, 60, 190, 30, plain_chart::reference);
}

// Every option of every value.
void markAllOptions(ChartKind kind) {
    const charts::ValueRange range = charts::valueRange(kind);
    for (int value = range.first; value < range.end; ++value) {
        for (int option = 1; option <= charts::lastMarkOption; ++option)
            chart_tests::mark(value, static_cast<Option>(option));
    }
}

TEST_F(ChartPixels, FullChartsAreWhatTheirMarksPaint) {
    Dice dice(5);
    for (const ChartKind kind : {ChartKind::overview, ChartKind::training}) {
        for (const double ratio : {1.0, 1.25, 2.0}) {
            SCOPED_TRACE(ratio);
            device::state.dictionary = randomRecords(dice, 700);
            device::state.samples = randomSamples(dice, 2000);
            markAllOptions(kind);
            expectEqualPictures(kind, 500, 330, ratio, plain_chart::raster);
            clearMarks();
        }
    }
}

// One value alone is both minimum and maximum, and others lie below it.
TEST_F(ChartPixels, ValuesBelowAMinimumThatIsTheMaximumAreTheSameInStrips) {
    for (const int count : {4, 40, 3000}) {
        device::state.dictionary.assign(static_cast<std::size_t>(count), {});
        for (int i = 0; i < count; ++i) {
            device::DictionaryRecord& record =
                device::state.dictionary[static_cast<std::size_t>(i)];
            record.watt = i == count / 2 ? 0.0F : i < count / 2 ? 2.0F : 3.0F;
            record.rideTime = 60;
            record.selected = 1;
        }
        for (int option = 1; option <= charts::lastMarkOption; ++option) {
            SCOPED_TRACE(std::to_string(count) + ", option " + std::to_string(option));
            clearMarks();
            chart_tests::mark(3, static_cast<Option>(option));
            chart_tests::mark(4, Option::mean);  // without data
            for (const double ratio : {1.0, 1.5})
                expectEqualPictures(ChartKind::overview, 500, 330, ratio, plain_chart::raster);
        }
    }
}

// Where six logical pixels are about a whole number and a half of device pixels, rounding makes
// squares of three sizes; from a ratio of more than 4 on crowds are not stamped.
TEST_F(ChartPixels, FullChartsOnOddScreensAreWhatTheirMarksPaint) {
    Dice dice(8);
    const double justBelow17To6 = std::nextafter(17.0 / 6, 0.0);
    for (const double ratio : {7.0 / 6, 13.0 / 6, justBelow17To6, 4.0, 4.25, 5.0}) {
        SCOPED_TRACE(ratio);
        device::state.samples = randomSamples(dice, 1600);
        markAllOptions(ChartKind::training);
        expectEqualPictures(ChartKind::training, 400, 210, ratio, plain_chart::raster);
        clearMarks();
    }
}

// Bars that begin below the last row there is.
TEST_F(ChartPixels, BarsOfAnImageThatIsCutAreWhatTheirMarksPaint) {
    Dice dice(9);
    device::state.samples = randomSamples(dice, 300);
    for (device::TrainingSample& sample : device::state.samples)
        sample.watt = static_cast<std::int16_t>(dice.oneOf({1, 2, 3, 500}));
    const charts::ValueRange range = charts::valueRange(ChartKind::training);
    for (int value = range.first; value < range.end; ++value)
        chart_tests::mark(value, Option::bars);
    expectEqualPictures(ChartKind::training, 250, 16'500, 2, plain_chart::raster);
}

}  // namespace
