#include "tests/powercut/judging.h"

#include <algorithm>

#include "device/device_state.h"
#include "device/dictionary_record.h"

namespace powercut {

namespace {

using Listing = std::map<std::string, std::string>;  // names of files by description

constexpr std::size_t recordSize = 152;
constexpr std::size_t numberSize = 8;

// Whatever number it has now.
std::string withoutNumber(const std::string& record) {
    return record.substr(numberSize);
}

std::vector<fs::path> filesBelow(const fs::path& directory) {
    std::vector<fs::path> files;
    std::error_code error;
    for (auto entry = fs::recursive_directory_iterator(directory, error);
         entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (entry->is_regular_file(error)) files.push_back(entry->path());
        if (error) break;
    }
    return files;
}

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}

bool isWhereNamed(const fs::path& directory, const std::string& name, std::size_t place) {
    return bytesOf(directory / name) == contentOf(place);
}

class Judge {
  public:
    Judge(const Command& judgedCommand, const Places& judgedPlaces, const Outcome& judgedOutcome,
          Moment judgedMoment)
        : command(judgedCommand),
          places(judgedPlaces),
          outcome(judgedOutcome),
          moment(judgedMoment) {}

    void judgeCard(const std::set<std::size_t>& named) {
        const Listing listing = listTwice(places.tree());
        if (listing.contains("without a file")) lose("a record without a file is listed");
        for (const auto& [name, content] : command.foreign) {
            if (bytesOf(places.tree() / name) != content) lose("foreign file " + name);
        }
        if (bytesOf(places.root / pictureName) != pictureContent()) lose("the foreign picture");
        for (std::size_t place = 0; place < command.trainings.size(); ++place)
            judgeTraining(place, listing, named.contains(place));
    }

    void judgeBackup(bool startsOnIt) {
        const std::size_t size = command.trainings.size();
        if (startsOnIt && isThere(places.backup() / "dictionary.2")) {
            const Listing listing = listTwice(places.backup());
            for (std::size_t place = 0; place < size; ++place) {
                const auto found = listing.find(descriptionOf(place));
                const bool wasThere = place >= size - command.backedUp;
                if (found == listing.end()) {
                    if (wasThere || mustBeDone()) lose(descriptionOf(place) + " in the backup");
                } else if (!isWhereNamed(places.backup(), found->second, place)) {
                    lose(found->first + " has other samples in the backup");
                }
            }
        }
        const std::string index = bytesOf(places.backup() / "dictionary.2");
        std::set<std::size_t> recorded;
        for (std::size_t at = 0; at + recordSize <= index.size(); at += recordSize) {
            const std::string record = index.substr(at, recordSize);
            std::size_t place = 0;
            while (place < size && record != recordOf(command, place))
                ++place;
            if (place == size) {
                lose("a record of no training in the backup");
            } else if (!recorded.insert(place).second) {
                lose(descriptionOf(place) + " is recorded twice in the backup");
            } else if (!isWhereNamed(places.backup(), nameOf(command.trainings[place].number),
                                     place)) {
                lose(descriptionOf(place) + " is recorded in the backup, but not whole");
            }
        }
        for (std::size_t place = 0; place < size; ++place) {
            const bool wasThere = place >= size - command.backedUp;
            if (!recorded.contains(place) && (wasThere || mustBeDone()))
                lose(descriptionOf(place) + " has no record in the backup");
        }
        if (moment == Moment::repeated && index.size() % recordSize != 0)
            lose("a piece of a record is left in the backup");
    }

    void judgeSettings() {
        // An empty file says what a missing one says.
        const std::string bytes = bytesOf(places.settings());
        const bool isOld = bytes == outcome.before;
        if (bytes != outcome.after && (mustBeDone() || !isOld))
            lose("the settings: " + std::to_string(bytes.size()) + " bytes");
    }

    void judgeExport() {
        if (mustBeDone() && bytesOf(places.exported()) != outcome.after) lose("the export");
    }

    Judgement judgement;

  private:
    bool mustBeDone() const { return moment != Moment::interrupted; }

    void lose(const std::string& what) { judgement.losses.push_back(what); }

    Listing listTwice(const fs::path& directory) {
        Listing first;
        for (int start = 0; start < 2; ++start) {
            Listing listing;
            if (!startIn(directory)) lose("no tree is found at start " + std::to_string(start + 1));
            for (const device::DictionaryRecord& record : device::state.dictionary) {
                if (!listing.emplace(record.description, record.fileName).second)
                    lose(record.description + " is listed twice");
                judgeRecord(record);
            }
            if (start == 1 && listing != first) lose("the second start lists something else");
            first = listing;
        }
        return first;
    }

    void judgeRecord(const device::DictionaryRecord& record) {
        const std::string bytes =
            withoutNumber(std::string(device::encodeDictionaryRecord(record)));
        for (std::size_t place = 0; place < command.trainings.size(); ++place) {
            if (record.description == descriptionOf(place) &&
                bytes != withoutNumber(recordOf(command, place)))
                lose(record.description + " has other figures");
        }
    }

    void judgeTraining(std::size_t place, const Listing& listing, bool isNamed) {
        const std::string description = descriptionOf(place);
        const bool isDeleted = command.kind == Kind::deletion && command.trainings[place].chosen;
        const auto found = listing.find(description);
        if (found == listing.end()) {
            if (!isDeleted) judgeMissing(place, isNamed);
            return;
        }
        if (!isWhereNamed(places.tree(), found->second, place))
            lose(description + " has samples that are not its own");
        else if (isDeleted && moment == Moment::repeated)
            lose(description + " can't be deleted");
        else if (mustBeDone() && outcome.names.contains(description) &&
                 outcome.names.at(description) != found->second)
            lose(description + " has number " + found->second);
    }

    void judgeMissing(std::size_t place, bool isNamed) {
        const std::string record = withoutNumber(recordOf(command, place));
        const std::vector<fs::path> files = filesBelow(places.tree());
        const bool hasRecord = std::ranges::any_of(files, [&](const fs::path& file) {
            return bytesOf(file).find(record) != std::string::npos;
        });
        if (isNamed)
            lose(descriptionOf(place) + " is not listed, but its file is there");
        else if (!hasRecord)
            lose(descriptionOf(place) + " has neither file nor record");
        else if (moment == Moment::finished)
            lose(descriptionOf(place) + " has no file");
        else
            judgement.nameless.insert(place);
    }

    const Command& command;
    const Places& places;
    const Outcome& outcome;
    Moment moment;
};

}  // namespace

Outcome outcomeOf(const Command& command, const Places& places) {
    Outcome outcome;
    if (command.kind == Kind::settings) outcome.after = bytesOf(places.settings());
    if (command.kind == Kind::indexExport || command.kind == Kind::trainingExport)
        outcome.after = bytesOf(places.exported());
    startIn(places.tree());
    for (const device::DictionaryRecord& record : device::state.dictionary)
        outcome.names.emplace(record.description, record.fileName);
    return outcome;
}

std::set<std::size_t> placesWithAName(const Command& command, const Places& places) {
    std::set<std::size_t> named;
    for (const fs::path& file : filesBelow(places.tree())) {
        const std::string bytes = bytesOf(file);
        for (std::size_t place = 0; place < command.trainings.size(); ++place) {
            if (bytes == contentOf(place)) named.insert(place);
        }
    }
    return named;
}

Judgement judge(const Command& command, const Places& places, const Outcome& outcome, Moment moment,
                const std::set<std::size_t>& named, bool startsOnBackup) {
    Judge judge(command, places, outcome, moment);
    judge.judgeCard(named);
    switch (command.kind) {
        case Kind::deletion:
        case Kind::renumbering:
            break;
        case Kind::backup:
            judge.judgeBackup(startsOnBackup);
            break;
        case Kind::settings:
            judge.judgeSettings();
            break;
        case Kind::indexExport:
        case Kind::trainingExport:
            judge.judgeExport();
            break;
    }
    return judge.judgement;
}

}  // namespace powercut
