// demo_card: writes a card with invented trainings, to try the program on.

#include <ctime>
#include <exception>
#include <iostream>
#include <span>

#include "tools/demo_files.h"

namespace {

// What a clock on the wall shows; the beginning of 1970 if the system does not tell.
services::DateValue wallClock() {
    const std::time_t moment = std::time(nullptr);
    std::tm fields = {};
    if (localtime_r(&moment, &fields) == nullptr) return 0;
    return services::makeDate(std::int64_t{fields.tm_year} + 1900, fields.tm_mon + 1,
                              fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const std::span<const char* const> all(arguments, static_cast<std::size_t>(argumentCount));
    try {
        const auto options =
            tools::parseDemoOptions(all.empty() ? all : all.subspan(1), wallClock());
        if (!options) {
            std::cerr << "usage: demo_card DIRECTORY [--trainings N] [--seed S] [--until DAY]\n"
                         "Writes DIRECTORY/data/result/ergo_bike with N (1 to "
                      << tools::mostDemoTrainings
                      << ", default 300) invented trainings,\n"
                         "the last one on DAY ("
                      << tools::firstDemoYear << "-01-01 to " << tools::lastDemoYear
                      << "-12-31, default today).\n";
            return 2;
        }
        const std::string problem = tools::writeDemoCard(*options);
        if (problem.empty()) return 0;
        std::cerr << "demo_card: " << problem << "\n";
    } catch (const std::exception& error) {
        std::cerr << "demo_card: " << error.what() << "\n";
    }
    return 1;
}
