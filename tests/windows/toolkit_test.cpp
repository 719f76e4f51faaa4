#include "services/toolkit.h"

#include <QLocale>
#include <QPointer>
#include <optional>

#include "services/qt/toolkit_state.h"
#include "tests/windows/window_test.h"

#include <locale.h>  // newlocale, which <clocale> need not have

namespace {

char programName[] = "window_tests";  // must outlive the toolkit that it starts

class Toolkit : public WindowTest {
  protected:
    static void restart() {
        services::stopToolkit();
        services::startToolkit(programName);
    }

    static void set(const char* variable, const std::optional<const char*>& value) {
        if (value) {
            setenv(variable, *value, 1);
        } else {
            unsetenv(variable);
        }
    }

    static std::optional<std::string> get(const char* variable) {
        const char* const value = std::getenv(variable);
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }
};

TEST_F(Toolkit, OutlivesItsLastWindow) {
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
}

TEST_F(Toolkit, IsNamedAfterTheProgram) {
    EXPECT_EQ(QStringLiteral("Kurbelbuch"), QCoreApplication::applicationName());
    EXPECT_EQ(QStringLiteral("kurbelbuch"), QGuiApplication::desktopFileName());
}

TEST_F(Toolkit, SpeaksGermanWhateverTheLocale) {
    EXPECT_EQ(QLocale(QLocale::German, QLocale::Germany), QLocale());
    EXPECT_EQ(QStringLiteral("1,5"), QLocale().toString(1.5));
    EXPECT_EQ("de", get("LANGUAGE"));
    EXPECT_EQ(QStringLiteral("Abbrechen"), QCoreApplication::translate("QPlatformTheme", "Cancel"));
}

TEST_F(Toolkit, ReplacesOnlyALocaleThatSilencesTranslations) {
    // German where the system has it, else the locale that every system has.
    const locale_t german = newlocale(LC_ALL_MASK, "de_DE.UTF-8", static_cast<locale_t>(nullptr));
    const char* const working =
        german == static_cast<locale_t>(nullptr) ? "C.UTF-8" : "de_DE.UTF-8";
    if (german != static_cast<locale_t>(nullptr)) freelocale(german);

    struct Row {
        const char* name;
        std::optional<const char*> all;
        std::optional<const char*> messages;
        std::optional<const char*> language;
        std::optional<const char*> expected;  // LC_ALL
        std::optional<const char*> numeric = {};
    };
    const Row rows[] = {
        {"C for all", "C", {}, {}, working},
        {"POSIX for all", "POSIX", {}, "C.utf8", working},
        {"nothing", {}, {}, {}, working},
        {"nothing but empty ones", "", "", "", working},
        {"C for messages", {}, "C", "C.utf8", working},
        {"C as the language", {}, {}, "C", working},
        {"one that is not installed", {}, {}, "xx_XX.UTF-8", working},
        {"one that is not installed for all", "xx_XX.UTF-8", {}, "C.utf8", working},
        {"one that is not installed for numbers", {}, {}, "C.utf8", working, "xx_XX.UTF-8"},
        {"another for all", "C.utf8", "C", "C", "C.utf8"},
        {"another for messages", {}, "C.utf8", "C", {}},
        {"another, after an empty one", "", "C.utf8", "C", ""},
        {"another as the language", {}, {}, "C.utf8", {}},
    };
    const std::optional<std::string> language = get("LANG");
    const std::optional<std::string> messages = get("LC_MESSAGES");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        set("LC_ALL", row.all);
        set("LC_MESSAGES", row.messages);
        set("LANG", row.language);
        set("LC_NUMERIC", row.numeric);
        unsetenv("LANGUAGE");
        restart();
        EXPECT_EQ(row.expected ? std::optional<std::string>(*row.expected) : std::nullopt,
                  get("LC_ALL"));
        EXPECT_EQ("de", get("LANGUAGE"));
        EXPECT_EQ(QLocale(QLocale::German, QLocale::Germany), QLocale());
    }
    set("LANG", language ? std::optional(language->c_str()) : std::nullopt);
    set("LC_MESSAGES", messages ? std::optional(messages->c_str()) : std::nullopt);
    unsetenv("LC_NUMERIC");
    set("LC_ALL", "C");
    restart();
}

TEST_F(Toolkit, StopsWithWindowsOpenAndStartsAfresh) {
    openMainWindow();
    const std::vector<services::MenuRow> rows = {{services::MenuRowKind::title, 0, "Programm"},
                                                 {services::MenuRowKind::item, 1, "x"}};
    services::buildMenuBar(services::mainWindow, rows);
    ASSERT_TRUE(services::openWindow({.number = services::reportWindow, .title = "Bericht"}));
    for (const auto& [number, owner] : {std::pair(services::listWindow, services::mainWindow),
                                        {services::limitsWindow, services::reportWindow},
                                        {services::infoWindow, services::listWindow}}) {
        ASSERT_TRUE(services::openWindow({.number = number, .title = "x", .owner = owner}));
        services::showWindow(number);
    }
    std::vector<QPointer<QWidget>> open;
    for (QWidget* window : QApplication::topLevelWidgets())
        open.emplace_back(window);
    EXPECT_GE(open.size(), 5U);
    restart();
    for (const QPointer<QWidget>& window : open)
        EXPECT_TRUE(window.isNull());
    services::setItemMark(1, true);
    EXPECT_TRUE(takeWaitingEvents().empty());
    openMainWindow();
    services::showWindow(services::mainWindow);
    takeWaitingEvents();
    widget()->close();
    EXPECT_EQ(1, count(takeWaitingEvents(), services::EventKind::close));
}

TEST_F(Toolkit, EveryLineBreakOfATextIsOne) {
    struct Row {
        const char* text;
        const char16_t* expected;
    };
    const Row rows[] = {
        {"a\rb", u"a\nb"},       {"a\r\nb", u"a\nb"},       {"a\nb", u"a\nb"},
        {"a\r\r\nb", u"a\n\nb"}, {"a\n\rb", u"a\n\nb"},     {"\r\n", u"\n"},
        {"\r", u"\n"},           {"a\r\n\r\nb", u"a\n\nb"}, {"", u""},
        {"\xDF\xE4", u"ßä"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(QString::fromUtf16(row.expected), services::qt::toQString(row.text));
        EXPECT_EQ(QString::fromUtf16(row.expected), services::qt::toPlainLabel(row.text));
    }
    EXPECT_EQ(QStringLiteral("a && b &&&& c"), services::qt::toPlainLabel("a & b && c"));
    EXPECT_EQ(QStringLiteral("a & b"), services::qt::toQString("a & b"));
}

}  // namespace
