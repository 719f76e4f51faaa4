#include "services/text/paths.h"

#include <gtest/gtest.h>

namespace {

using services::driveOf;
using services::pathToText;
using services::textToPath;
using services::operator""_l1;

TEST(Paths, TheDriveEndsAtTheFirstSlashBehindTheFirstCharacter) {
    EXPECT_EQ("/Volumes", driveOf("/Volumes/CARD/"));
    EXPECT_EQ("/Users", driveOf("/Users/anna/"));
    EXPECT_EQ("/media", driveOf("/media/anna/Ł/"));
    EXPECT_EQ("a", driveOf("a/b"));
    EXPECT_EQ("/", driveOf("//b"));
}

TEST(Paths, WithoutSuchASlashThereIsNoDrive) {
    EXPECT_EQ("", driveOf(""));
    EXPECT_EQ("", driveOf("/"));
    EXPECT_EQ("", driveOf("/Volumes"));
    EXPECT_EQ("", driveOf("Sicherung"));
}

TEST(Paths, AreShownInLatin1WithQuestionMarksForTheRest) {
    EXPECT_EQ("/media/Bücher/"_l1, pathToText("/media/Bücher/"));
    EXPECT_EQ("/media/?ód?/"_l1, pathToText("/media/Łódź/"));
    EXPECT_EQ("a?b", pathToText("a\xFF"
                                "b"));
}

TEST(Paths, NamesFromTextAreUtf8) {
    EXPECT_EQ("Höhenmeter ß", textToPath("Höhenmeter ß"_l1));
    EXPECT_EQ("", textToPath(""));
}

}  // namespace
