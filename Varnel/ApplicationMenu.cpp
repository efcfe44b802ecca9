#include <Varnel/ApplicationMenu.h>

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

namespace Varnel {

namespace {
ApplicationMenuEntry separator() {
    ApplicationMenuEntry entry;
    entry.isSeparator = true;
    return entry;
}

ApplicationMenuEntry entry(ApplicationCommand command, const QString& title, const QKeySequence& key = {}) {
    return {false, command, title, key};
}
} // namespace

std::vector<ApplicationMenuEntry> applicationMenuEntries() {
    return {
        entry(ApplicationCommand::about, QCoreApplication::translate("ApplicationMenu", "About Varnel")),
        separator(),
        entry(ApplicationCommand::settings, QCoreApplication::translate("ApplicationMenu", "Settings"),
              QKeyCombination(Qt::CTRL, Qt::Key_Comma)),
        entry(ApplicationCommand::checkForUpdates,
              QCoreApplication::translate("ApplicationMenu", "Check for Updates...")),
        separator(),
        entry(ApplicationCommand::hide, QCoreApplication::translate("ApplicationMenu", "Hide Varnel"),
              QKeyCombination(Qt::CTRL, Qt::Key_H)),
        entry(ApplicationCommand::hideOthers, QCoreApplication::translate("ApplicationMenu", "Hide Others"),
              QKeyCombination(Qt::CTRL | Qt::ALT, Qt::Key_H)),
        entry(ApplicationCommand::showAll, QCoreApplication::translate("ApplicationMenu", "Show all")),
        entry(ApplicationCommand::quit, QCoreApplication::translate("ApplicationMenu", "Quit Varnel"),
              QKeyCombination(Qt::CTRL, Qt::Key_Q)),
    };
}

std::unique_ptr<QMenu> makeApplicationMenu(const ApplicationCommandActions& actions) {
    auto menu = std::make_unique<QMenu>(QCoreApplication::translate("ApplicationMenu", "&Varnel"));
    for (const ApplicationMenuEntry& entry : applicationMenuEntries()) {
        if (entry.isSeparator) {
            menu->addSeparator();
            continue;
        }
        QAction* action = menu->addAction(entry.title);
        action->setShortcut(entry.key);
        const auto chosen = actions.find(entry.command);
        action->setEnabled(chosen != actions.end());
        if (chosen != actions.end()) {
            QObject::connect(action, &QAction::triggered, menu.get(), [choose = chosen->second] { choose(); });
        }
    }
    return menu;
}

} // namespace Varnel
