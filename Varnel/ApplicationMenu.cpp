#include <Varnel/ApplicationMenu.h>

#include <QAction>
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
        entry(ApplicationCommand::about, QStringLiteral("About Varnel")),
        separator(),
        entry(ApplicationCommand::settings, QStringLiteral("Settings"), QKeyCombination(Qt::CTRL, Qt::Key_Comma)),
        entry(ApplicationCommand::checkForUpdates, QStringLiteral("Check for Updates...")),
        separator(),
        entry(ApplicationCommand::hide, QStringLiteral("Hide Varnel"), QKeyCombination(Qt::CTRL, Qt::Key_H)),
        entry(ApplicationCommand::hideOthers, QStringLiteral("Hide Others"),
              QKeyCombination(Qt::CTRL | Qt::ALT, Qt::Key_H)),
        entry(ApplicationCommand::showAll, QStringLiteral("Show all")),
        entry(ApplicationCommand::quit, QStringLiteral("Quit Varnel"), QKeyCombination(Qt::CTRL, Qt::Key_Q)),
    };
}

std::unique_ptr<QMenu> makeApplicationMenu(const ApplicationCommandActions& actions) {
    auto menu = std::make_unique<QMenu>(QStringLiteral("&Varnel"));
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
