#include "services/toolkit.h"

#include <QLibraryInfo>
#include <QLocale>
#include <cstdlib>

#include "services/qt/toolkit_state.h"
#include "services/windows.h"

namespace services {

namespace qt {

ToolkitState toolkit;

namespace {

// The platform's Quit (a session that ends, the Dock, the application menu) becomes an event of the
// loop like every other; the toolkit must not end its own loops under ours.
class QuitFilter : public QObject {
  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == toolkit.application.get() && event->type() == QEvent::Quit) {
            post({.kind = EventKind::menu, .item = quitItem});
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

// Requesters of the platform (GTK's, for example) speak the language of the environment. The C
// locale would silence their translations altogether.
void askPlatformForGerman() {
    const char* locale = "";
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            locale = value;
            break;
        }
    }
    const TextView name = locale;
    if (name.empty() || name == "C" || name == "POSIX") qputenv("LC_ALL", "C.UTF-8");
    qputenv("LANGUAGE", "de");
}

}  // namespace

void post(const Event& event) {
    postEvent(toolkit.queue, event);
    if (toolkit.waiting != nullptr) toolkit.waiting->quit();
}

ToolkitWindow* findWindow(int number) {
    const auto found = toolkit.windows.find(number);
    return found == toolkit.windows.end() ? nullptr : found->second.data();
}

QWidget* requesterOwner() {
    if (QWidget* active = QApplication::activeWindow()) return active;
    return findWindow(mainWindow);
}

QString toQString(TextView text) {
    QString string = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    string.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    string.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return string;
}

QString toPlainLabel(TextView text) {
    QString string = toQString(text);
    string.replace(QLatin1Char('&'), QLatin1String("&&"));
    return string;
}

}  // namespace qt

void startToolkit(char* programName) {
    using qt::toolkit;
    qt::askPlatformForGerman();
    toolkit.argumentCount = 1;
    toolkit.arguments = {programName, nullptr};
    QCoreApplication::setApplicationName(QStringLiteral("Kurbelbuch"));
    toolkit.application =
        std::make_unique<QApplication>(toolkit.argumentCount, toolkit.arguments.data());
    QGuiApplication::setDesktopFileName(QStringLiteral("kurbelbuch"));
    QApplication::setQuitOnLastWindowClosed(false);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    toolkit.german = std::make_unique<QTranslator>();
    if (toolkit.german->load(QStringLiteral(":/translations/qtbase_de.qm"))) {
        QCoreApplication::installTranslator(toolkit.german.get());
    }
    toolkit.quitFilter = std::make_unique<qt::QuitFilter>();
    toolkit.application->installEventFilter(toolkit.quitFilter.get());
    const bool onX11 = QGuiApplication::platformName() == QLatin1String("xcb");
    toolkit.keyRepeats = std::make_unique<qt::KeyRepeats>(onX11);
    toolkit.application->installEventFilter(toolkit.keyRepeats.get());
}

void stopToolkit() {
    using qt::toolkit;
    while (!toolkit.windows.empty())
        closeWindow(toolkit.windows.begin()->first);
    toolkit.actions = {};
    toolkit.queue = {};
    toolkit.application.reset();
    toolkit.german.reset();
    toolkit.quitFilter.reset();
    toolkit.keyRepeats.reset();
}

}  // namespace services
