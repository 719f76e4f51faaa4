#include "tools/demo_plan.h"

#include <algorithm>
#include <array>

#include "services/text/dates.h"

namespace tools {

using services::operator""_l1;

namespace {

constexpr services::DateValue secondsPerDay = 86'400;

bool isHoliday(services::DateValue day) {
    const services::CalendarDate date = services::calendarDate(day * secondsPerDay);
    const int key = date.month * 100 + date.day;
    return (key >= 722 && key <= 812) || key >= 1223 || key <= 102;
}

bool isSummer(services::DateValue day) {
    const int month = services::month(day * secondsPerDay);
    return month >= 5 && month <= 9;
}

bool isWeekend(services::DateValue day) {
    const services::DateValue weekday = (day + 4) % 7;  // 1970 began on a Thursday
    return weekday == 0 || weekday == 6;
}

// Days since 1970, ascending; found backwards from the last training.
std::vector<services::DateValue> planDays(int count, services::DateValue last, Random& random) {
    constexpr std::array gaps = {1, 2, 2, 2, 3, 3};
    std::vector<services::DateValue> days;
    services::DateValue day = last;
    while (static_cast<int>(days.size()) < count) {
        if (day != last && isHoliday(day)) {
            --day;
            continue;
        }
        days.push_back(day);
        day -= gaps[static_cast<std::size_t>(nextInteger(random, 0, gaps.size() - 1))];
        if (isSummer(day)) day -= nextInteger(random, 0, 2);              // rides outdoors instead
        if (nextReal(random) < 0.015) day -= nextInteger(random, 8, 14);  // has a cold
    }
    std::ranges::reverse(days);
    return days;
}

std::int32_t startOn(services::DateValue day, Random& random) {
    const int hour = isWeekend(day) ? nextInteger(random, 9, 11) : nextInteger(random, 17, 19);
    return static_cast<std::int32_t>(day * secondsPerDay + hour * 3600 +
                                     nextInteger(random, 0, 3599));
}

void warmUp(std::vector<Stretch>& stretches, int minutes) {
    stretches.push_back({minutes * 60, 0.35, 0.62, 0});
}

void coolDown(std::vector<Stretch>& stretches, int minutes) {
    stretches.push_back({minutes * 60, 0.48, 0.32, 0});
}

void planSteady(PlannedTraining& training, Random& random) {
    training.trainingType = 1;
    training.cadence = 86;
    const int minutes = nextInteger(random, 6, 13) * 5;
    training.description =
        minutes > 45 ? "Lange Grundlage, gleichmäßig"_l1 : "Grundlage gleichmäßig"_l1;
    warmUp(training.stretches, 6);
    training.stretches.push_back({minutes * 60, 0.66, 0.68, 0});
    coolDown(training.stretches, 5);
}

void planIntervals(PlannedTraining& training, Random& random) {
    training.trainingType = 2;
    training.cadence = 92;
    const bool isShort = nextInteger(random, 0, 1) == 0;
    training.description =
        isShort ? "Intervalle 10 × 1 min, kräftig"_l1 : "Intervalle 5 × 4 min"_l1;
    warmUp(training.stretches, 9);
    for (int i = 0; i < (isShort ? 10 : 5); ++i) {
        const double hard = isShort ? 1.28 : 1.06;
        training.stretches.push_back({isShort ? 60 : 240, hard, hard, 0});
        training.stretches.push_back({isShort ? 90 : 180, 0.5, 0.5, 0});
    }
    coolDown(training.stretches, 6);
}

void planHills(PlannedTraining& training, Random& random) {
    training.trainingType = 5;
    training.cadence = 78;
    training.description = nextInteger(random, 0, 1) == 0 ? "Hügelrunde über die Dörfer"_l1
                                                          : "Bergetappe mit drei Pässen"_l1;
    warmUp(training.stretches, 6);
    const int hills = nextInteger(random, 3, 6);
    for (int i = 0; i < hills; ++i) {
        const double slope = 3 + 0.5 * nextInteger(random, 0, 8);
        const double push = 0.74 + 0.03 * slope;
        const int seconds = nextInteger(random, 4, 7) * 60;
        training.stretches.push_back({seconds, push - 0.05, push, slope});
        training.stretches.push_back({seconds / 2, 0.55, 0.52, -slope * 0.6});
    }
    coolDown(training.stretches, 5);
}

void planThreshold(PlannedTraining& training, Random& random) {
    training.trainingType = 3;
    training.cadence = 88;
    training.description = "Schwellentraining 2 × 15 min"_l1;
    warmUp(training.stretches, nextInteger(random, 8, 11));
    for (int i = 0; i < 2; ++i) {
        training.stretches.push_back({15 * 60, 0.92, 0.95, 0});
        training.stretches.push_back({5 * 60, 0.5, 0.5, 0});
    }
    coolDown(training.stretches, 5);
}

void planEasy(PlannedTraining& training, Random& random) {
    training.trainingType = 4;
    training.cadence = 82;
    training.description = "Lockeres Ausfahren nach Büroschluss"_l1;
    const int minutes = nextInteger(random, 20, 35);
    training.stretches.push_back({3 * 60, 0.32, 0.45, 0});
    training.stretches.push_back({minutes * 60, 0.47, 0.47, 0});
    training.stretches.push_back({2 * 60, 0.42, 0.32, 0});
}

void planPyramid(PlannedTraining& training, Random& random) {
    training.trainingType = 6;
    training.cadence = 87;
    training.description = "Pyramide auf und ab, höchste Stufe kurz"_l1;
    warmUp(training.stretches, nextInteger(random, 6, 8));
    constexpr std::array steps = {0.6, 0.7, 0.8, 0.9, 1.0, 1.1, 1.0, 0.9, 0.8, 0.7, 0.6};
    for (const double step : steps) {
        training.stretches.push_back({step > 1.05 ? 90 : 180, step, step, 0});
    }
    coolDown(training.stretches, 5);
}

void planContents(PlannedTraining& training, Random& random) {
    // How often each is ridden, out of 20.
    const int choice = nextInteger(random, 0, 19);
    if (choice < 7) return planSteady(training, random);
    if (choice < 11) return planIntervals(training, random);
    if (choice < 14) return planHills(training, random);
    if (choice < 16) return planThreshold(training, random);
    if (choice < 19) return planEasy(training, random);
    planPyramid(training, random);
}

}  // namespace

int lengthOf(const PlannedTraining& training) {
    int seconds = 0;
    for (const Stretch& stretch : training.stretches)
        seconds += stretch.seconds;
    return seconds;
}

std::vector<PlannedTraining> planTrainings(int count, services::DateValue until, Random& random) {
    const std::vector<services::DateValue> days = planDays(count, until / secondsPerDay, random);
    std::vector<PlannedTraining> trainings;
    double fitness = 0.15;  // 0 to 1: grows with each training, shrinks with each week of rest
    for (std::size_t i = 0; i < days.size(); ++i) {
        if (i > 0) {
            const auto rest = static_cast<double>(days[i] - days[i - 1]);
            if (rest > 4) fitness -= fitness * std::min(0.25, 0.008 * (rest - 4));
        }
        const double elapsed = static_cast<double>(i) / static_cast<double>(days.size());

        PlannedTraining training;
        training.startDate = startOn(days[i], random);
        // A good or bad day on top of fitness and of what years of riding add.
        training.thresholdPower = 168 + 45 * fitness + 14 * elapsed + 3 * nextNormal(random);
        training.withPulseBelt = nextReal(random) >= 0.05;
        training.sampleSeconds = nextInteger(random, 1, 3);
        planContents(training, random);
        training.cadence += 1.5 * nextNormal(random);
        trainings.push_back(training);

        fitness += (1 - fitness) * 0.015;
    }
    if (!trainings.empty()) {
        // Nobody has ridden this evening's training at noon. Right after midnight it began
        // yesterday.
        PlannedTraining& last = trainings.back();
        const services::DateValue latest = until - lengthOf(last);
        if (last.startDate > latest) last.startDate = static_cast<std::int32_t>(latest);
    }
    return trainings;
}

}  // namespace tools
