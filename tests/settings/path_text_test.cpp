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

TEST_F(StoredPath, IsItsOwnBytesWhereLatin1CanNotHoldItOrWouldBeTakenForThem) {
    for (const char* path : {"/Łódź/", "/日本/", "/Bücher/Łódź/", "/Ã¼/", "/Ä±/", "/Ã¼/Ä±/"}) {
        EXPECT_EQ(path, pathToStoredText(path));
        EXPECT_EQ(path, storedTextToPath(path));
    }
    // Not all of it could be taken for own bytes.
    EXPECT_EQ("/\xC3\xBC\xFC/", pathToStoredText("/Ã¼ü/"));
    EXPECT_EQ("/Ã¼ü/", storedTextToPath("/\xC3\xBC\xFC/"));
}

TEST_F(StoredPath, ThatLooksLikeTheBytesOfAnotherIsNotTakenForThat) {
    // Directories whose bytes are the Latin-1 forms of the paths below.
    for (const char* other : {"ü", "ı"})
        std::filesystem::create_directory(other);
    for (const char* name : {"/Ã¼/", "/Ä±/"}) {
        const std::string path = directory.string() + name;
        EXPECT_EQ(path, storedTextToPath(pathToStoredText(path)));
    }
}

TEST_F(StoredPath, ComesBackAsTheSamePath) {
    for (const char* path :
         {"", "/", "/media/anna/CARD/", "/media/Bücher/", "/media/anna/Łódź/", "/日本/", "/Ã¼/",
          "/Ä±/", "/Bücher/Łódź/", "/\x7F/", "/\xC2\x80/", "/Ã/¼/", " /mit Blanks /"}) {
        EXPECT_EQ(path, storedTextToPath(pathToStoredText(path))) << path;
    }
}

TEST_F(StoredPath, OfEveryTwoCharactersOfLatin1ComesBack) {
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const services::Text name{'/', static_cast<char>(first), static_cast<char>(second)};
            if (name.find_first_of("\r\n") != services::Text::npos) continue;
            const services::Path path = services::latin1ToUtf8(name);
            ASSERT_EQ(path, storedTextToPath(pathToStoredText(path))) << first << " " << second;
        }
    }
}

TEST_F(StoredPath, ThatCanNotStandInALineIsEmpty) {
    for (const services::PathView path :
         {services::PathView("/a\nb/"), services::PathView("/a\rb/"),
          services::PathView("/a\0b/", 5), services::PathView("/Łódź\n/"),
          services::PathView("\n")}) {
        EXPECT_EQ("", pathToStoredText(path));
    }
}

TEST_F(StoredPath, OfADirectoryWithStrayBytesComesBackWhileTheDirectoryIsThere) {
    const std::string path = directory.string() +
                             "/B\xFC"
                             "cher/";
    const std::string asLatin1 = directory.string() + "/Bücher/";
    EXPECT_EQ(asLatin1, storedTextToPath(pathToStoredText(path)));
    std::filesystem::create_directory(path);
    EXPECT_EQ(path, pathToStoredText(path));
    EXPECT_EQ(path, storedTextToPath(pathToStoredText(path)));
    std::filesystem::create_directory(asLatin1);
    EXPECT_EQ(asLatin1, storedTextToPath(path));
}

}  // namespace
