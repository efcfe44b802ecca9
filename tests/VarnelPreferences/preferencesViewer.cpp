#include <VarnelPreferences/PreferencesWindowController.h>
#include <VarnelShared/SystemTimers.h>

#include <QCoroTimer>

#include <QApplication>
#include <QCommandLineParser>
#include <QMenu>
#include <QPalette>
#include <QTextStream>

#include <chrono>

// Opens the preferences window in a given state and prints what it hands on.

namespace Varnel {
namespace {

QPalette darkPalette() {
    QPalette palette(QColor(0x35, 0x35, 0x35), QColor(0x2d, 0x2d, 0x2d));
    palette.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
    palette.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
    return palette;
}

PreferencesDraft sampleDraft() {
    PreferencesDraft draft;
    draft.baseURL = AppSettings::defaults().baseURL;
    draft.account = QStringLiteral("sun@example.com");
    draft.password = QStringLiteral("not a real one");
    draft.pollIntervalSeconds = 600;
    return draft;
}

void print(const QString& text) {
    QTextStream(stdout) << text << Qt::endl;
}

QCoro::Task<bool> signIn(int seconds, bool isConnected) {
    co_await QCoro::sleepFor(std::chrono::seconds(seconds));
    co_return isConnected;
}

PreferencesHandlers printingHandlers(int signInSeconds, bool isConnected) {
    return {.save =
                [=](const PreferencesDraft& draft) {
                    print(QStringLiteral("save for \"%1\"").arg(draft.account));
                    return signIn(signInSeconds, isConnected);
                },
            .autoSave =
                [](const PreferencesDraft& draft) {
                    print(QStringLiteral("auto-save, interval %1 s, launch at login %2")
                              .arg(draft.pollIntervalSeconds)
                              .arg(draft.launchAtLogin));
                },
            .signOut = [] { print(QStringLiteral("sign out")); },
            .closed =
                [] {
                    print(QStringLiteral("closed"));
                    QApplication::quit();
                }};
}

int run(const QStringList& arguments) {
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions(
        {{QStringLiteral("pane"), QStringLiteral("0, 1 or 2"), QStringLiteral("number"), QStringLiteral("0")},
         {QStringLiteral("empty"), QStringLiteral("a first start")},
         {QStringLiteral("connected"), QStringLiteral("a session exists")},
         {QStringLiteral("error"), QStringLiteral("the last error"), QStringLiteral("text")},
         {QStringLiteral("launch-error"), QStringLiteral("a refused login item"), QStringLiteral("text")},
         {QStringLiteral("permission"), QStringLiteral("0 to 3"), QStringLiteral("number"), QStringLiteral("3")},
         {QStringLiteral("sign-in"), QStringLiteral("how long a save takes"), QStringLiteral("seconds"),
          QStringLiteral("3")},
         {QStringLiteral("dark"), QStringLiteral("a dark palette")}});
    options.process(arguments);
    if (options.isSet(QStringLiteral("dark"))) {
        QApplication::setPalette(darkPalette());
    }
    const SystemClock clock;
    SystemTimers timers(clock);
    const bool isConnected = options.isSet(QStringLiteral("connected"));
    const QString error = options.value(QStringLiteral("error"));
    QMenu menu(QStringLiteral("Varnel"));
    menu.addAction(QStringLiteral("Quit Varnel"), QKeySequence::Quit, &QApplication::quit);
    PreferencesWindowController window(
        options.isSet(QStringLiteral("empty")) ? PreferencesDraft{} : sampleDraft(), isConnected, !error.isEmpty(),
        static_cast<PreferencesInitialTab>(options.value(QStringLiteral("pane")).toInt()),
        printingHandlers(options.value(QStringLiteral("sign-in")).toInt(), error.isEmpty()), timers);
    window.setApplicationMenu(&menu);
    window.updateConnectionState(isConnected, !error.isEmpty(), error);
    window.setNotificationPermission(
        static_cast<NotificationPermission>(options.value(QStringLiteral("permission")).toInt()));
    if (options.isSet(QStringLiteral("launch-error"))) {
        window.showLaunchAtLoginError(options.value(QStringLiteral("launch-error")), false);
    }
    window.showWindowAndFocus();
    return QApplication::exec();
}

} // namespace
} // namespace Varnel

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("Varnel"));
    return Varnel::run(QApplication::arguments());
}
