#include "tests/builders/card_builder.h"

#include <fstream>
#include <string>

#include "device/training_sample.h"
#include "services/text/numbers.h"

namespace builders {

device::DictionaryRecord makeRecord(std::uint64_t number) {
    const auto n = static_cast<std::int32_t>(number % 1000);
    device::DictionaryRecord record;
    record.fileName = services::numberToHexadecimal16(number);
    record.trainingType = 1;
    record.description = "Training " + std::to_string(number);
    record.startDate = 1356998400 + n * 86400;  // 01.01.2013 and on
    record.endDate = record.startDate + 3600;
    record.watt = 100.0F + static_cast<float>(n);
    record.pulse = 120.0F;
    record.rpm = 80.0F;
    record.speed = 25.0F;
    record.kJoulePerMinute = 6.0F;
    record.rideTime = 3600;
    record.distance = 25000.0F;
    record.maxSpeed = 40.0F;
    record.maxRpm = 100.0F;
    record.maxKJoulePerMinute = 12.0F;
    record.kJoule = 360.0F;
    record.selected = 1;
    return record;
}

void writeCard(const std::filesystem::path& root, std::span<const device::DictionaryRecord> records,
               int samples) {
    const std::filesystem::path tree = root / "data" / "result" / "ergo_bike";
    std::filesystem::create_directories(tree);
    std::ofstream index(tree / "dictionary.2", std::ios::binary);
    const std::string training(static_cast<std::size_t>(samples) * device::trainingSampleSize,
                               '\0');
    for (const device::DictionaryRecord& record : records) {
        index << device::encodeDictionaryRecord(record);
        std::ofstream(tree / record.fileName, std::ios::binary) << training;
    }
}

void writeCard(const std::filesystem::path& root, int trainings) {
    std::vector<device::DictionaryRecord> records;
    for (int i = 1; i <= trainings; ++i)
        records.push_back(makeRecord(static_cast<std::uint64_t>(i)));
    writeCard(root, records);
}

}  // namespace builders
