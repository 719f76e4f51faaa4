#include "settings/path_text.h"

#include "tests/stand_ins/stand_ins.h"

namespace {

using settings::pathToStoredText;
using settings::storedTextToPath;

class StoredPath : public stand_ins::StandInTest {};

TEST_F(StoredPath, IsLatin1WhereThatCanHoldIt) {
    EXPECT_EQ(
        "/media/B\xFC"
        "cher/",
        pathToStoredText("/media/Bücher/"));
    EXPECT_EQ("/media/Bücher/", storedTextToPath("/media/B\xFC"
                                                 "cher/"));
}

TEST_F(StoredPath, ComesBackAsTheSamePath) {
    for (const char* path : {"", "/", "/media/anna/CARD/", "/media/Bücher/", "/media/anna/Łódź/",
                             "/日本/", "/Ã¼/", "/Bücher/Łódź/"}) {
        EXPECT_EQ(path, storedTextToPath(pathToStoredText(path))) << path;
    }
}

TEST_F(StoredPath, OfADirectoryWithStrayBytesComesBackWhileTheDirectoryIsThere) {
    const std::string path = directory.string() +
                             "/B\xFC"
                             "cher/";
    std::filesystem::create_directory(path);
    EXPECT_EQ(path, storedTextToPath(pathToStoredText(path)));
}

}  // namespace
