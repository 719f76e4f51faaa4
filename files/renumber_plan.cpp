#include "files/renumber_plan.h"

#include <cstdint>

#include "services/text/numbers.h"
#include "services/text/text.h"

namespace files {
namespace {

bool isAbove(std::uint64_t number, std::uint64_t other) {
    return static_cast<std::int64_t>(number) > static_cast<std::int64_t>(other);
}

}  // namespace

std::vector<RenumberStep> planRenumbering(std::span<const device::DictionaryRecord> records) {
    std::vector<RenumberStep> steps;
    if (records.empty()) return steps;
    steps.reserve(records.size());
    std::uint64_t next = services::hexadecimalToNumber(records.front().fileName);
    for (const device::DictionaryRecord& record : records) {
        steps.push_back({.oldName = record.fileName,
                         .newName = services::numberToHexadecimal16(next),
                         .renames = isAbove(services::hexadecimalToNumber(record.fileName), next)});
        ++next;  // wraps after the last number there is
    }
    return steps;
}

services::Text renumberLine(const RenumberStep& step) {
    return services::concatenate(step.oldName, " = ", step.newName);
}

}  // namespace files
