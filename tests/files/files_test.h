// The fixture of the training list and the file commands: a card in the test's own directory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "charts/chart_state.h"
#include "device/device_state.h"
#include "device/dictionary.h"
#include "services/text/numbers.h"
#include "tests/builders/card_builder.h"
#include "tests/builders/file_bytes.h"
#include "tests/stand_ins/stand_ins.h"

namespace files_tests {

using builders::bytesOf;
using builders::namesIn;
using builders::writeBytes;

inline std::string nameOf(std::uint64_t number) {
    return services::numberToHexadecimal16(number);
}

// The file numbers that an index's records carry, in file order.
inline std::vector<std::uint64_t> numbersInIndex(const std::filesystem::path& index) {
    const std::string bytes = bytesOf(index);
    std::vector<std::uint64_t> numbers;
    for (std::size_t at = 0; at + 152 <= bytes.size(); at += 152) {
        std::uint64_t number = 0;
        for (std::size_t i = 8; i-- > 0;)
            number = number << 8U | static_cast<unsigned char>(bytes[at + i]);
        numbers.push_back(number);
    }
    return numbers;
}

inline services::Event shortcutEvent(int window, int item) {
    return {.kind = services::EventKind::menu, .window = window, .item = item};
}

inline services::Event closeEvent(int window) {
    return {.kind = services::EventKind::close, .window = window};
}

// A record of `number` that was ridden on day `day` of the card.
inline device::DictionaryRecord recordOf(std::uint64_t number, int day) {
    device::DictionaryRecord record = builders::makeRecord(number);
    record.startDate = 1356998400 + day * 86400;  // 01.01.2013 and on
    return record;
}

class FilesTest : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        StandInTest::SetUp();
        device::state = {};
        charts::state = {};
        tree = directory / "data" / "result" / "ergo_bike";
    }

    // Writes a card of these records, makes its tree the working directory and loads it. Each
    // training file holds its own number, so that files that change places are noticed.
    void useCard(const std::vector<device::DictionaryRecord>& records) {
        builders::writeCard(directory, records);
        for (const device::DictionaryRecord& record : records)
            writeBytes(tree / record.fileName, contentOf(record.fileName));
        std::filesystem::current_path(tree);
        device::loadDictionary();
    }

    static std::string contentOf(const std::string& trainingName) {
        return trainingName + std::string(44, 'x');
    }

    // Trainings of the numbers 1, 2, 3 …, each on the day of its number.
    void useTrainings(int count) {
        std::vector<device::DictionaryRecord> records;
        for (int i = 1; i <= count; ++i)
            records.push_back(recordOf(static_cast<std::uint64_t>(i), i));
        useCard(records);
    }

    std::filesystem::path tree;
};

}  // namespace files_tests
