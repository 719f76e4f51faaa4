#include "device/index_copy.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "device/dictionary_record.h"
#include "device/record_layout.h"
#include "device/training_names.h"
#include "services/disk/whole_files.h"
#include "services/text/numbers.h"

namespace device {

namespace {

using services::Text;

constexpr std::size_t nameLength = 16;
constexpr std::size_t numberLength = sizeof(std::uint64_t);
constexpr std::size_t renameLength = numberLength + nameLength;
constexpr std::size_t copiedRenameLength = renameLength + 2 * numberLength;

// The trailer: the lengths, the old index, these words and a hash of everything before the hash.
constexpr std::string_view signature = "kurbelbuch-neu-1";
// With renames that also tell what their files hold.
constexpr std::string_view copyingSignature = "kurbelbuch-neu-2";
static_assert(signature.size() == copyingSignature.size());
constexpr std::size_t trailerLength = 5 * numberLength + signature.size();

bool tellsContents(const IndexCopy& copy) {
    return std::ranges::any_of(copy.renames,
                               [](const auto& rename) { return rename.isByCopying(); });
}

std::uint64_t numberAt(std::string_view bytes, std::uint64_t position) {
    return readNumber<std::uint64_t>(std::as_bytes(std::span(bytes)), position);
}

void putNumber(std::string& bytes, std::uint64_t position, std::uint64_t value) {
    Text stored;
    appendNumber(stored, value);
    bytes.replace(position, stored.size(), stored);
}

// The name that the training's file has now. A training whose file has vanished is looked for under
// the new name, unless another record of the same file tells where that went.
std::vector<std::uint64_t> presentNumbers(const IndexCopy& copy,
                                          std::span<const RenameOutcome> outcomes) {
    std::unordered_map<Text, std::uint64_t> moved;
    for (std::size_t i = 0; i < copy.renames.size(); ++i) {
        if (hasNewName(outcomes[i]))
            moved[copy.renames[i].oldName] = numberAt(copy.index, copy.renames[i].position);
    }
    std::vector<std::uint64_t> numbers;
    numbers.reserve(copy.renames.size());
    for (std::size_t i = 0; i < copy.renames.size(); ++i) {
        const PendingRename& rename = copy.renames[i];
        std::uint64_t number = numberAt(copy.index, rename.position);
        if (outcomes[i] == RenameOutcome::stays)
            number = services::hexadecimalToNumber(rename.oldName);
        else if (const auto found = moved.find(rename.oldName);
                 outcomes[i] == RenameOutcome::gone && found != moved.end())
            number = found->second;
        numbers.push_back(number);
    }
    return numbers;
}

bool beginsWithOldIndex(const IndexCopy& copy, std::string_view bytes) {
    return copy.oldLength > 0 && copy.oldLength <= bytes.size() &&
           services::hashOf(bytes.substr(0, copy.oldLength)) == copy.oldHash;
}

// The old index under the names that the files have.
std::string renamedOldIndex(const IndexCopy& copy, std::span<const RenameOutcome> outcomes,
                            std::span<const std::uint64_t> numbers, std::string_view present) {
    std::map<std::uint64_t, std::uint64_t> newNumbers;
    std::unordered_set<std::uint64_t> taken;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        newNumbers[services::hexadecimalToNumber(copy.renames[i].oldName)] = numbers[i];
        if (hasNewName(outcomes[i])) taken.insert(numbers[i]);
    }
    std::string index;
    std::size_t at = 0;
    for (; at + dictionaryRecordSize <= copy.oldLength; at += dictionaryRecordSize) {
        std::string record(present.substr(at, dictionaryRecordSize));
        const std::uint64_t number = numberAt(record, 0);
        if (const auto found = newNumbers.find(number); found != newNumbers.end())
            putNumber(record, 0, found->second);
        else if (taken.contains(number))
            continue;  // it had no file, or none could have taken its name
        index += record;
    }
    return index + std::string(present.substr(at));
}

// Behind the whole records of a new index that was cut short, or of which trainings were deleted
// since.
std::string completedIndex(std::string_view present, std::string_view copied,
                           const std::function<bool(const Text&)>& isThere) {
    if (copied.size() % dictionaryRecordSize != 0) return std::string(copied);
    std::size_t at = present.size() - present.size() % dictionaryRecordSize;
    std::string index(copied.substr(0, at));
    for (; at < copied.size(); at += dictionaryRecordSize) {
        if (isThere(services::numberToHexadecimal16(numberAt(copied, at))))
            index += copied.substr(at, dictionaryRecordSize);
    }
    return index;
}

std::string withMissingRecords(std::string_view present, std::string_view copied,
                               const std::function<bool(const Text&)>& isThere) {
    // A rest of a record would shift all that come behind it.
    std::string index(present.substr(0, present.size() - present.size() % dictionaryRecordSize));
    std::unordered_set<std::uint64_t> listed;
    for (std::size_t at = 0; at < index.size(); at += dictionaryRecordSize)
        listed.insert(numberAt(index, at));
    for (std::size_t at = 0; at + dictionaryRecordSize <= copied.size();
         at += dictionaryRecordSize) {
        const std::uint64_t number = numberAt(copied, at);
        if (listed.contains(number) || !isThere(services::numberToHexadecimal16(number))) continue;
        listed.insert(number);
        index += copied.substr(at, dictionaryRecordSize);
    }
    // Nothing was missing: then not even the rest is touched.
    return index.size() > present.size() ? index : std::string(present);
}

// Renames of which one's new name is another's old one, and whose files hold the same: what stands
// under such a name may be the file of either.
class TwinRenames {
  public:
    TwinRenames(const IndexCopy& renamed, std::unordered_map<Text, bool> namesThere,
                const IsWhole& isWholeThere)
        : copy(renamed), there(std::move(namesThere)), isWhole(isWholeThere) {
        for (std::size_t i = 0; i < copy.renames.size(); ++i)
            byOldName.try_emplace(copy.renames[i].oldName, i);
        isAway.resize(copy.renames.size());
    }

    // False when the new name of a rename is still that of a file that holds the same.
    bool hasFreed(std::size_t rename) {
        // Each of a row of twins is away when its copy is whole and not the file of the next one.
        std::vector<std::size_t> row;
        bool result = true;
        for (auto twin = twinInTheWayOf(rename); twin; twin = twinInTheWayOf(*twin)) {
            if (isAway[*twin]) {
                result = *isAway[*twin];
                break;
            }
            row.push_back(*twin);
            const Text newName = newNameOf(copy, copy.renames[*twin]);
            if (there[newName] && isWhole(newName, copy.renames[*twin])) continue;
            result = false;
            break;
        }
        for (const std::size_t twin : row)
            isAway[twin] = result;
        return result;
    }

  private:
    std::optional<std::size_t> twinInTheWayOf(std::size_t rename) const {
        const auto found = byOldName.find(newNameOf(copy, copy.renames[rename]));
        if (found == byOldName.end() || found->second >= rename) return std::nullopt;
        const PendingRename& other = copy.renames[found->second];
        const bool isTwin =
            other.length == copy.renames[rename].length && other.hash == copy.renames[rename].hash;
        return isTwin ? std::optional(found->second) : std::nullopt;
    }

    const IndexCopy& copy;
    std::unordered_map<Text, bool> there;
    const IsWhole& isWhole;
    std::unordered_map<Text, std::size_t> byOldName;
    std::vector<std::optional<bool>> isAway;
};

}  // namespace

std::string encodeIndexCopy(const IndexCopy& copy) {
    std::string bytes = copy.index;
    const bool isByCopying = tellsContents(copy);
    for (const PendingRename& rename : copy.renames) {
        appendNumber(bytes, rename.position);
        bytes += rename.oldName;
        if (!isByCopying) continue;
        appendNumber(bytes, rename.length);
        appendNumber(bytes, rename.hash);
    }
    appendNumber(bytes, std::uint64_t{copy.index.size()});
    appendNumber(bytes, std::uint64_t{copy.renames.size()});
    appendNumber(bytes, copy.oldLength);
    appendNumber(bytes, copy.oldHash);
    bytes += isByCopying ? copyingSignature : signature;
    appendNumber(bytes, services::hashOf(bytes));
    return bytes;
}

std::optional<IndexCopy> decodeIndexCopy(std::string_view bytes) {
    if (bytes.size() < trailerLength) return std::nullopt;
    const std::size_t hashPosition = bytes.size() - numberLength;
    const std::size_t trailer = bytes.size() - trailerLength;
    const std::string_view word = bytes.substr(hashPosition - signature.size(), signature.size());
    const bool isByCopying = word == copyingSignature;
    if ((word != signature && !isByCopying) ||
        numberAt(bytes, hashPosition) != services::hashOf(bytes.substr(0, hashPosition))) {
        return std::nullopt;
    }
    const std::uint64_t length = numberAt(bytes, trailer);
    const std::uint64_t count = numberAt(bytes, trailer + numberLength);
    const std::size_t entryLength = isByCopying ? copiedRenameLength : renameLength;
    if (length > trailer || count != (trailer - length) / entryLength ||
        (trailer - length) % entryLength != 0) {
        return std::nullopt;
    }
    IndexCopy copy{.index = std::string(bytes.substr(0, length)),
                   .renames = {},
                   .oldLength = numberAt(bytes, trailer + 2 * numberLength),
                   .oldHash = numberAt(bytes, trailer + 3 * numberLength)};
    for (std::size_t at = length; at < trailer; at += entryLength) {
        PendingRename rename{.position = numberAt(bytes, at),
                             .oldName = Text(bytes.substr(at + numberLength, nameLength))};
        if (isByCopying) {
            rename.length = numberAt(bytes, at + renameLength);
            rename.hash = numberAt(bytes, at + renameLength + numberLength);
        }
        // Whoever wrote a hash that fits did not have to write the rest so as well.
        if (length < numberLength || rename.position > length - numberLength ||
            !isTrainingName(rename.oldName)) {
            return std::nullopt;
        }
        copy.renames.push_back(std::move(rename));
    }
    if (isByCopying != tellsContents(copy)) return std::nullopt;
    return copy;
}

Text newNameOf(const IndexCopy& copy, const PendingRename& rename) {
    return services::numberToHexadecimal16(numberAt(copy.index, rename.position));
}

std::optional<std::uint64_t> positionOf(std::string_view index, const Text& name) {
    const std::uint64_t number = services::hexadecimalToNumber(name);
    for (std::size_t at = 0; at + dictionaryRecordSize <= index.size();
         at += dictionaryRecordSize) {
        if (numberAt(index, at) == number) return at;
    }
    return std::nullopt;
}

bool belongsTo(const IndexCopy& copy, const std::optional<std::string_view>& present) {
    return !present || present->starts_with(copy.index) || copy.index.starts_with(*present) ||
           beginsWithOldIndex(copy, *present);
}

std::vector<Text> namesAddedSince(const IndexCopy& copy,
                                  const std::optional<std::string_view>& present) {
    std::vector<Text> names;
    if (!present) return names;
    std::size_t at = present->size();
    if (present->starts_with(copy.index))
        at = copy.index.size();
    else if (beginsWithOldIndex(copy, *present))
        at = copy.oldLength;
    for (; at + dictionaryRecordSize <= present->size(); at += dictionaryRecordSize)
        names.push_back(services::numberToHexadecimal16(numberAt(*present, at)));
    return names;
}

std::vector<RenameOutcome> outcomesOf(const IndexCopy& copy, const IsThere& isThere,
                                      const IsWhole& isWhole) {
    std::unordered_map<Text, bool> there;
    for (const PendingRename& rename : copy.renames) {
        for (const Text& name : {rename.oldName, newNameOf(copy, rename)}) {
            if (const auto [place, isNew] = there.try_emplace(name); isNew)
                place->second = isThere(name);
        }
    }
    TwinRenames twins(copy, there, isWhole);
    std::vector<RenameOutcome> outcomes(copy.renames.size(), RenameOutcome::gone);
    for (std::size_t i = copy.renames.size(); i-- > 0;) {
        bool& oldThere = there[copy.renames[i].oldName];
        const Text newName = newNameOf(copy, copy.renames[i]);
        bool& newThere = there[newName];
        if (oldThere && newThere && copy.renames[i].isByCopying() &&
            isWhole(newName, copy.renames[i]) && twins.hasFreed(i)) {
            outcomes[i] = RenameOutcome::copied;
            newThere = false;
        } else if (oldThere) {
            outcomes[i] = RenameOutcome::stays;
        } else if (newThere) {
            outcomes[i] = RenameOutcome::moved;
            newThere = false;
            oldThere = true;
        }
    }
    return outcomes;
}

std::string repairedIndex(const IndexCopy& copy, std::span<const RenameOutcome> outcomes,
                          const std::optional<std::string_view>& present, const IsThere& isThere) {
    const std::vector<std::uint64_t> numbers = presentNumbers(copy, outcomes);
    std::string copied = copy.index;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        putNumber(copied, copy.renames[i].position, numbers[i]);

    if (!present) return copied;
    if (present->starts_with(copy.index))
        return copied + std::string(present->substr(copied.size()));
    if (copy.index.starts_with(*present)) return completedIndex(*present, copied, isThere);
    if (beginsWithOldIndex(copy, *present))
        return renamedOldIndex(copy, outcomes, numbers, *present);
    return withMissingRecords(*present, copied, isThere);
}

}  // namespace device
