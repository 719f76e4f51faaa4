#include "services/toolkit.h"

#include <QDialog>
#include <QDir>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QSettings>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "services/disk/endings.h"
#include "services/disk/memory.h"
#include "services/qt/accessibility.h"
#include "services/qt/toolkit_state.h"
#include "services/windows.h"

#ifdef Q_OS_DARWIN
#include <xlocale.h>
#else
#include <locale.h>  // newlocale, which <clocale> need not have
#endif

namespace services {

namespace qt {

ToolkitState toolkit;

namespace {

// The platform's Quit (a session that ends, the Dock, the application menu) becomes what waitEvent
// makes of it; the toolkit must not end its own loops under ours. A requester is cancelled.
class QuitFilter : public QObject {
  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == toolkit.application.get() && event->type() == QEvent::Quit) {
            askForQuit();
            if (toolkit.waiting != nullptr) toolkit.waiting->quit();
            if (auto* requester = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
                requester->reject();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

#ifdef Q_OS_UNIX

// A locale's name says nothing: a language whose locale was never installed leaves the C library at
// "C", as "C" itself does.
bool isInstalled(const char* locale) {
    const locale_t found = newlocale(LC_ALL_MASK, locale, static_cast<locale_t>(nullptr));
    if (found == static_cast<locale_t>(nullptr)) return false;
    freelocale(found);
    return true;
}

// The environment's locale, by the variables in order of weight.
bool translatesMessages() {
    TextView name;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || *value == '\0') continue;
        name = value;
        break;
    }
    return !name.empty() && name != "C" && name != "POSIX" && isInstalled("");
}

// Requesters of the platform (GTK's, for example) speak the language of the environment, but only
// with a locale that works and is not C: in that their translations are silent altogether.
void askPlatformForGerman() {
    qputenv("LANGUAGE", "de");
    if (translatesMessages()) return;
    for (const char* locale : {"de_DE.UTF-8", "C.UTF-8", "en_US.UTF-8"}) {
        if (!isInstalled(locale)) continue;
        qputenv("LC_ALL", locale);
        return;
    }
}

#else

// Here the requesters of the platform speak the language that its user has chosen.
void askPlatformForGerman() {}

#endif

// Every window's icon, from the sizes that the program carries.
QIcon windowIcon() {
    QIcon icon;
    const QDir sizes(QStringLiteral(":/icon"));
    for (const QString& name : sizes.entryList())
        icon.addFile(sizes.filePath(name));
    return icon;
}

// The toolkit's requesters note the directories they were in, and colours, in the user's
// configuration. The program writes its start settings and nothing else: such notes get a place
// where nothing can be written, and are gone with the program.
void keepNoNotes() {
    for (const QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, QStringLiteral("/dev/null"));
}

void printLine(const QString& line) {
    const QByteArray bytes = line.toUtf8();
    static_cast<void>(std::fprintf(stderr, "%s\n", bytes.constData()));
}

[[noreturn]] void endWithoutDisplay() {
    const bool isNamed = !qEnvironmentVariableIsEmpty("DISPLAY") ||
                         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
                         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
    if (isNamed && !toolkit.startProblem.isEmpty()) {
        printLine(QStringLiteral("kurbelbuch: Die Anzeige lässt sich nicht benutzen: ") +
                  toolkit.startProblem.simplified());
    } else {
        printLine(
            QStringLiteral("kurbelbuch: Es ist keine Anzeige da, auf der sich ein Fenster "
                           "öffnen ließe."));
    }
    std::_Exit(1);  // the toolkit is half built: nothing of it may be taken down
}

// Without a display the toolkit would explain its plugins in several lines, and abort.
void keepStartMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtFatalMsg) endWithoutDisplay();
    if (std::this_thread::get_id() != toolkit.mainThread) {  // the toolkit has some of its own
        printLine(qFormatLogMessage(type, context, message));
        return;
    }
    if (toolkit.startProblem.isEmpty() && QByteArrayView(context.category).startsWith("qt.qpa."))
        toolkit.startProblem = message;
    toolkit.startMessages.push_back(qFormatLogMessage(type, context, message));
}

void makeApplication() {
    toolkit.mainThread = std::this_thread::get_id();
    qInstallMessageHandler(keepStartMessage);
    toolkit.application =
        std::make_unique<QApplication>(toolkit.argumentCount, toolkit.arguments.data());
    qInstallMessageHandler(nullptr);
    for (const QString& message : toolkit.startMessages)
        printLine(message);
    toolkit.startMessages = {};
    toolkit.startProblem = {};
}

// A display that is gone ends the process from within the toolkit, whose objects can't be freed any
// more.
void leaveToolkitAsItIs() {
    static_cast<void>(toolkit.application.release());
    static_cast<void>(toolkit.german.release());
    static_cast<void>(toolkit.quitFilter.release());
    static_cast<void>(toolkit.keyRepeats.release());
}

}  // namespace

void post(const Event& event) {
    // The toolkit calls this from its own loops, through which nothing may be thrown.
    if (!withinMemory([&event] { postEvent(toolkit.queue, event); })) return;
    if (toolkit.waiting != nullptr) toolkit.waiting->quit();
}

ToolkitWindow* findWindow(int number) {
    const auto found = toolkit.windows.find(number);
    return found == toolkit.windows.end() ? nullptr : found->second.data();
}

namespace {

ToolkitWindow* visibleWindowOf(const QWidget* owner) {
    for (const auto& [number, window] : toolkit.windows) {
        if (!window.isNull() && window->isVisible() && window->parentWidget() == owner) {
            return window;
        }
    }
    return nullptr;
}

}  // namespace

QWidget* requesterOwner() {
    return innermostWindow();
}

ToolkitWindow* innermostWindow() {
    ToolkitWindow* innermost = findWindow(mainWindow);
    if (innermost == nullptr) return nullptr;
    while (ToolkitWindow* inner = visibleWindowOf(innermost))
        innermost = inner;
    return innermost;
}

QString toQString(TextView text) {
    QString string = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    string.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    string.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    // A card may hold any byte. Of the control characters only line ends mean something here.
    for (QChar& character : string) {
        if (character.category() == QChar::Other_Control && character != QLatin1Char('\n'))
            character = QLatin1Char(' ');
    }
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
    qt::keepNoNotes();
    std::atexit(qt::leaveToolkitAsItIs);  // after stopToolkit there is nothing left to leave
    toolkit.argumentCount = 1;
    toolkit.arguments = {programName, nullptr};
    QCoreApplication::setApplicationName(QStringLiteral("Kurbelbuch"));
    qt::makeApplication();
    QGuiApplication::setDesktopFileName(QStringLiteral("kurbelbuch"));
    QApplication::setWindowIcon(qt::windowIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    qt::installAccessibility();
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
    qt::removeAccessibility();
    toolkit.chartTexts = {};
    toolkit.application.reset();
    toolkit.german.reset();
    toolkit.quitFilter.reset();
    toolkit.keyRepeats.reset();
}

}  // namespace services
