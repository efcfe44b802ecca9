#include <VarnelStatusMenu/Linux/PlainMenu.h>

#include <QCursor>
#include <QIcon>
#include <QMenu>

namespace Varnel {

namespace {

void addItem(QMenu& menu, const ExportedMenuItem& item, const StatusItemHandlers& handlers) {
    if (item.kind == ExportedMenuItem::Kind::separator) {
        menu.addSeparator();
        return;
    }
    // An ampersand marks the key of a row; two are one to read.
    QAction* action = menu.addAction(QIcon::fromTheme(item.iconName),
                                     QString(item.title).replace(QLatin1Char('&'), QLatin1String("&&")));
    action->setShortcut(item.key);
    action->setEnabled(item.isEnabled);
    if (item.kind == ExportedMenuItem::Kind::showChart) {
        QObject::connect(action, &QAction::triggered, action, handlers.openMenu, Qt::QueuedConnection);
    } else if (item.command) {
        QObject::connect(action, &QAction::triggered, action,
                         [choose = handlers.choose, command = *item.command] { choose(command); });
    }
}

} // namespace

void popUpPlainMenu(const ExportedMenu& rows, const StatusItemHandlers& handlers) {
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const ExportedMenuItem& item : rows) {
        addItem(*menu, item, handlers);
    }
    menu->popup(QCursor::pos());
}

} // namespace Varnel
