// What the file commands ask and tell their user.
#pragma once

#include "services/text/latin1.h"
#include "tests/stand_ins/stand_ins.h"

namespace files_tests {

inline stand_ins::QuestionAnswer deletionAnswer(bool yes) {
    using services::operator""_l1;
    return {services::Text("Lösche Datei"_l1),
            services::Text("Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1), yes};
}

inline stand_ins::QuestionAnswer renumberingAnswer(bool yes) {
    return {"Dateinamen neu durchnummerieren", "Sollen die Dateinamen neu durchnummeriert werden?",
            yes};
}

inline void expectRenumbered() {
    stand_ins::expectMessage("Dateinamen", "Die Dateinamen wurden neu durchnummeriert!");
}

inline void expectNothingToDelete() {
    using services::operator""_l1;
    stand_ins::expectMessage("Lösche Datei"_l1,
                             "Es wurden keine Dateien zum Löschen ausgewählt!"_l1);
}

}  // namespace files_tests
