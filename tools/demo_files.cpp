#include "tools/demo_files.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "services/text/numbers.h"
#include "tools/demo_plan.h"
#include "tools/demo_training.h"

namespace tools {

namespace {

template <typename Number>
bool parseNumber(std::string_view text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stopped == end;
}

constexpr services::DateValue secondsPerDay = 86'400;

// "2013-12-18": the end of that day.
bool parseDay(std::string_view text, services::DateValue& until) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') return false;
    unsigned year = 0;  // of an unsigned number no sign is read
    unsigned month = 0;
    unsigned day = 0;
    if (!parseNumber(text.substr(0, 4), year) || !parseNumber(text.substr(5, 2), month) ||
        !parseNumber(text.substr(8, 2), day) || year < firstDemoYear || year > lastDemoYear) {
        return false;
    }
    const services::DateValue begin =
        services::makeDate(year, static_cast<int>(month), static_cast<int>(day), 0, 0, 0);
    // 30 February is another day of the calendar.
    const services::CalendarDate date = services::calendarDate(begin);
    if (date.year != year || date.month != static_cast<int>(month) ||
        date.day != static_cast<int>(day)) {
        return false;
    }
    until = begin + secondsPerDay - 1;
    return true;
}

// Fails when the file exists: a card with real trainings is never written over. A file that was
// begun and could not be finished is removed, so that only complete ones refuse the next run.
std::string writeNewFile(const std::filesystem::path& path, std::string_view bytes) {
    errno = 0;
    std::FILE* const file = std::fopen(path.c_str(), "wbx");
    if (file == nullptr) return path.string() + ": " + std::strerror(errno);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    const int writeError = errno;
    const bool closed = std::fclose(file) == 0;
    if (written && closed) return {};
    const int error = written ? errno : writeError;
    std::remove(path.c_str());
    return path.string() + ": " + std::strerror(error);
}

}  // namespace

std::optional<DemoOptions> parseDemoOptions(std::span<const char* const> arguments,
                                            services::DateValue now) {
    DemoOptions options;
    options.until = std::clamp(now, services::makeDate(firstDemoYear, 1, 1, 0, 0, 0),
                               services::makeDate(lastDemoYear, 12, 31, 23, 59, 59));
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--trainings" || argument == "--seed" || argument == "--until") {
            if (++i == arguments.size()) return std::nullopt;
            const std::string_view value = arguments[i];
            const bool understood = argument == "--seed"    ? parseNumber(value, options.seed)
                                    : argument == "--until" ? parseDay(value, options.until)
                                                            : parseNumber(value, options.trainings);
            if (!understood) return std::nullopt;
        } else if (argument.empty() || argument.starts_with("-") || !options.directory.empty()) {
            return std::nullopt;
        } else {
            options.directory = argument;
        }
    }
    if (options.directory.empty()) return std::nullopt;
    if (options.trainings < 1 || options.trainings > mostDemoTrainings) return std::nullopt;
    return options;
}

std::string writeDemoCard(const DemoOptions& options) {
    const std::filesystem::path tree =
        std::filesystem::path(options.directory) / "data" / "result" / "ergo_bike";
    const std::filesystem::path index = tree / "dictionary.2";
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(index, error))) {
        return index.string() + ": there is an index already, nothing was written";
    }
    std::filesystem::create_directories(tree, error);
    if (error) return tree.string() + ": " + error.message();

    Random random{options.seed};
    services::Text indexBytes;
    std::uint64_t number = 0;
    for (const PlannedTraining& training :
         planTrainings(options.trainings, options.until, random)) {
        const auto samples = rideTraining(training, random);
        const services::Text name = services::numberToHexadecimal16(++number);
        const std::string problem = writeNewFile(tree / name, encodeSamples(samples));
        if (!problem.empty()) return problem;
        indexBytes += device::encodeDictionaryRecord(summarize(training, samples, name));
    }
    return writeNewFile(index, indexBytes);
}

}  // namespace tools
