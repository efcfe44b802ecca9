// Shows the status item and its menu for one of a few presentations and prints each command that is chosen, for looking
// at them and for the desktop tests.

#include "ViewerPresentations.h"
#include "ViewerStatusItem.h"

#include <VarnelShared/Clock.h>
#include <VarnelShared/SystemTimers.h>
#include <VarnelStatusMenu/StatusBarController.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QPalette>
#include <QTextStream>

using namespace Varnel;
using namespace Varnel::Testing;

namespace {

QPalette darkPalette() {
    QPalette palette(QColor(0x35, 0x36, 0x3a), QColor(0x2b, 0x2c, 0x30));
    palette.setColor(QPalette::Base, QColor(0x24, 0x25, 0x28));
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0x8b, 0xe8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

std::function<void()> printing(const QString& text) {
    return [text] { QTextStream(stdout) << text << Qt::endl; };
}

QString names(const std::map<QString, StatusPresentation>& presentations) {
    QStringList names;
    for (const auto& [name, presentation] : presentations) {
        names << name;
    }
    return names.join(QStringLiteral(", "));
}

void printChoices(StatusBarController& controller) {
    controller.onRefresh = printing(QStringLiteral("refresh"));
    controller.onOpenPreferences = printing(QStringLiteral("preferences"));
    controller.onSignIn = printing(QStringLiteral("signIn"));
    controller.onSignOut = printing(QStringLiteral("signOut"));
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const auto presentations = viewerPresentations();
    QCommandLineParser parser;
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("Use a dark palette."));
    const QCommandLineOption popup(QStringLiteral("popup"), QStringLiteral("Show the pop-up without an item."));
    const QCommandLineOption window(QStringLiteral("window"), QStringLiteral("Show the ordinary window."));
    parser.addOptions({dark, popup, window});
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("presentation"), names(presentations));
    parser.process(application);
    const auto chosen = presentations.find(parser.positionalArguments().value(0, QStringLiteral("connected")));
    if (chosen == presentations.end()) {
        parser.showHelp(1);
    }
    if (parser.isSet(dark)) {
        QApplication::setPalette(darkPalette());
    }
    const SystemClock clock;
    SystemTimers timers(clock);
    const ViewerForm form = parser.isSet(window)  ? ViewerForm::window
                            : parser.isSet(popup) ? ViewerForm::popup
                                                  : ViewerForm::item;
    StatusBarController controller(makeViewerStatusItem(form, timers));
    printChoices(controller);
    controller.update(chosen->second);
    return QApplication::exec();
}
