#include <VarnelStatusMenu/Menu/MenuAccessibility.h>

#include <VarnelStatusMenu/Menu/StatusPopup.h>

#include <QAbstractButton>
#include <QAccessibleApplication>
#include <QAccessibleWidget>
#include <QApplication>
#include <QWidgetAction>

#include <array>
#include <utility>

namespace Varnel {

namespace {

/// A command or a separator of a pop-up menu. Lives as long as its action.
class MenuItemAccess final : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit MenuItemAccess(QAction* action)
        : QAccessibleObject(action) {}

    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(menu()); }
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QWindow* window() const override { return menu()->windowHandle(); }
    QRect rect() const override {
        const QRect inMenu = menu()->actionGeometry(action());
        return {menu()->mapToGlobal(inMenu.topLeft()), inMenu.size()};
    }

    QAccessible::Role role() const override {
        return action()->isSeparator() ? QAccessible::Separator : QAccessible::MenuItem;
    }
    QString text(QAccessible::Text kind) const override {
        switch (kind) {
        case QAccessible::Name:
            return action()->text();
        case QAccessible::Accelerator:
            return action()->shortcut().toString(QKeySequence::NativeText);
        default:
            return {};
        }
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.disabled = !action()->isEnabled();
        state.invisible = !menu()->isVisible();
        state.focusable = state.hotTracked = action()->isEnabled();
        state.focused = menu()->activeAction() == action();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction() && action()->isEnabled()) {
            menu()->close();
            action()->trigger();
        }
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    QAction* action() const { return static_cast<QAction*>(object()); }
    StatusPopupMenu* menu() const { return static_cast<StatusPopupMenu*>(action()->parent()); }
};

/// An open pop-up. Its children stand in the order of its actions, as the toolkit's own events count them.
class PopupAccess final : public QAccessibleWidget {
public:
    explicit PopupAccess(QWidget* menu)
        : QAccessibleWidget(menu, QAccessible::PopupMenu, QApplication::applicationDisplayName()) {}

    int childCount() const override { return static_cast<int>(widget()->actions().size()); }
    QAccessibleInterface* child(int index) const override {
        QAction* action = widget()->actions().value(index);
        if (const auto* view = qobject_cast<QWidgetAction*>(action)) {
            return QAccessible::queryAccessibleInterface(view->defaultWidget());
        }
        return action != nullptr ? itemOf(action) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        int index = 0;
        while (index < childCount() && this->child(index) != child) {
            ++index;
        }
        return index < childCount() ? index : -1;
    }

private:
    static QAccessibleInterface* itemOf(QAction* action) {
        if (QAccessibleInterface* known = QAccessible::queryAccessibleInterface(action)) {
            return known;
        }
        auto* item = new MenuItemAccess(action);
        QAccessible::registerAccessibleInterface(item); // which owns it, and deletes it with its action
        return item;
    }
};

/// The root of the tree, with the pop-up that is open behind the windows.
class ApplicationAccess final : public QAccessibleApplication {
public:
    int childCount() const override { return QAccessibleApplication::childCount() + (openPopup() != nullptr ? 1 : 0); }
    QAccessibleInterface* child(int index) const override {
        return index == QAccessibleApplication::childCount() ? QAccessible::queryAccessibleInterface(openPopup())
                                                             : QAccessibleApplication::child(index);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const bool isPopup = openPopup() != nullptr && child != nullptr && child->object() == openPopup();
        return isPopup ? QAccessibleApplication::childCount() : QAccessibleApplication::indexOfChild(child);
    }

private:
    static StatusPopupMenu* openPopup() { return qobject_cast<StatusPopupMenu*>(QApplication::activePopupWidget()); }
};

/// A command in a window: a button that is told as what it looks like.
class CommandRowAccess final : public QAccessibleWidget {
public:
    explicit CommandRowAccess(QAbstractButton* row)
        : QAccessibleWidget(row, QAccessible::MenuItem, row->text()) {}

    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            static_cast<QAbstractButton*>(widget())->click();
        }
    }
};

constexpr std::array<std::pair<QLatin1StringView, QAccessible::Role>, 5> viewRoles = {{
    {QLatin1StringView("Varnel::MenuRowView"), QAccessible::StaticText},
    {QLatin1StringView("Varnel::OutputChartMenuView"), QAccessible::Graphic},
    {QLatin1StringView("Varnel::DayChartView"), QAccessible::Graphic},
    {QLatin1StringView("Varnel::MenuView"), QAccessible::Whitespace},
    {QLatin1StringView("Varnel::StatusMenuPanel"), QAccessible::PopupMenu},
}};

/// Asked for an object once for each of its classes, the most derived one first.
QAccessibleInterface* menuAccess(const QString& className, QObject* object) {
    if (object == qApp) {
        return new ApplicationAccess;
    }
    auto* widget = qobject_cast<QWidget*>(object);
    if (className == QLatin1StringView("Varnel::StatusPopupMenu")) {
        return new PopupAccess(widget);
    }
    if (className == QLatin1StringView("Varnel::MenuCommandRow")) {
        return new CommandRowAccess(static_cast<QAbstractButton*>(widget));
    }
    for (const auto& [name, role] : viewRoles) {
        if (className == name) {
            return new QAccessibleWidget(widget, role);
        }
    }
    return nullptr;
}

} // namespace

void makeMenusAccessible() {
    [[maybe_unused]] static const bool isInstalled = [] {
        QAccessible::installFactory(menuAccess);
        return true;
    }();
}

} // namespace Varnel
