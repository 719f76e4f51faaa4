#include "export/default_name.h"

#include <algorithm>
#include <cstdint>

#include "services/text/dates.h"
#include "services/text/numbers.h"
#include "services/text/text.h"

namespace exporting {

using services::Text;

namespace {

bool isUnfitForNames(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return character == '/' || byte < 0x20 || (byte >= 0x7F && byte < 0xA0);
}

// Four characters, for a number from 2 to the power of 63 on those of the negative number with the
// same bits: "00-1" for ffffffffffffffff.
Text trainingNumber(const device::DictionaryRecord& training) {
    const auto number = static_cast<std::int64_t>(services::hexadecimalToNumber(training.fileName));
    const Text padded = services::concatenate("0000", services::integerToText(number));
    return Text(services::right(padded, 4));
}

}  // namespace

Text defaultTrainingName(const device::DictionaryRecord& training) {
    const Text date = services::replace(services::dateAndTimeText(training.startDate), ".", "_");
    const Text numberAndDate = services::concatenate(trainingNumber(training), "  ", date);
    const Text minutes = services::floatToText(static_cast<float>(training.rideTime) / 60.0F, 0);
    const Text kilometres =
        services::withDecimalComma(services::floatToText(training.distance / 1000.0F, 1));
    Text name = services::concatenate(services::replace(numberAndDate, ":", "_"), "   ", minutes,
                                      "min   ", kilometres, "km  ", training.description, ".csv");
    std::ranges::replace_if(name, isUnfitForNames, '_');
    return name;
}

}  // namespace exporting
