#include <VarnelStatusMenu/Menu/StatusMenuPanel.h>

#include <VarnelStatusMenu/Menu/CommandIcon.h>
#include <VarnelStatusMenu/Menu/MenuEntryView.h>
#include <VarnelStatusMenu/Menu/MenuStyle.h>

#include <QAbstractButton>
#include <QFrame>
#include <QKeyEvent>
#include <QStyleOptionMenuItem>
#include <QStylePainter>
#include <QVBoxLayout>

#include <algorithm>

namespace Varnel {

/// A command in a window, drawn by the desktop's style as it draws the items of a menu.
class MenuCommandRow : public QAbstractButton {
    Q_OBJECT

public:
    explicit MenuCommandRow(const StatusMenuAction& action, QWidget* parent = nullptr);

    StatusMenuCommand command() const { return m_command; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void initStyleOption(QStyleOptionMenuItem& option) const;

    StatusMenuCommand m_command;
    QKeySequence m_key;
};

MenuCommandRow::MenuCommandRow(const StatusMenuAction& action, QWidget* parent)
    : QAbstractButton(parent)
    , m_command(action.command)
    , m_key(action.key) {
    setText(action.title);
    setIcon(commandIcon(action.iconName));
    setEnabled(action.isEnabled);
    setFont(MenuFonts::row());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleDescription(m_key.toString(QKeySequence::NativeText));
}

QSize MenuCommandRow::sizeHint() const {
    QStyleOptionMenuItem option;
    initStyleOption(option);
    const QSize text(option.fontMetrics.horizontalAdvance(option.text), option.fontMetrics.height());
    return style()->sizeFromContents(QStyle::CT_MenuItem, &option, text, this);
}

void MenuCommandRow::paintEvent(QPaintEvent* /*event*/) {
    QStyleOptionMenuItem option;
    initStyleOption(option);
    QStylePainter(this).drawControl(QStyle::CE_MenuItem, option);
}

void MenuCommandRow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        click();
        break;
    case Qt::Key_Space:
        QAbstractButton::keyPressEvent(event);
        break;
    default:
        event->ignore(); // the panel moves the focus, and a button would treat Escape as its own
    }
}

void MenuCommandRow::enterEvent(QEnterEvent* /*event*/) {
    setFocus(Qt::MouseFocusReason);
}

void MenuCommandRow::leaveEvent(QEvent* /*event*/) {
    clearFocus();
}

void MenuCommandRow::initStyleOption(QStyleOptionMenuItem& option) const {
    option.initFrom(this);
    option.menuItemType = QStyleOptionMenuItem::Normal;
    option.checkType = QStyleOptionMenuItem::NotCheckable;
    option.text = m_key.isEmpty() ? text() : text() + QLatin1Char('\t') + m_key.toString(QKeySequence::NativeText);
    option.icon = icon();
    option.font = font();
    option.maxIconWidth = style()->pixelMetric(QStyle::PM_SmallIconSize, &option, this) + 4;
    option.reservedShortcutWidth = fontMetrics().horizontalAdvance(m_key.toString(QKeySequence::NativeText));
    option.menuRect = rect();
    option.state.setFlag(QStyle::State_Selected, hasFocus() && isEnabled());
}

StatusMenuPanel::StatusMenuPanel(const StatusMenu& menu, QWidget* parent)
    : QWidget(parent)
    , m_menu(menu)
    , m_layout(new QVBoxLayout(this)) {
    m_layout->setContentsMargins(0, 4, 0, 4);
    m_layout->setSpacing(0);
    build();
}

void StatusMenuPanel::setMenu(const StatusMenu& menu) {
    if (menu == m_menu) {
        return;
    }
    const auto focused = focusedCommand();
    m_commands.clear();
    while (QLayoutItem* item = m_layout->takeAt(0)) {
        // Later: the command may be in the middle of the click that has led here.
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    m_menu = menu;
    build();
    for (MenuCommandRow* command : m_commands) {
        if (focused && command->command() == *focused) {
            command->show(); // the layout would show it only later, and what is hidden cannot have the focus
            command->setFocus();
        }
    }
}

void StatusMenuPanel::keyPressEvent(QKeyEvent* event) {
    if (const auto command = commandForKey(m_menu, event->keyCombination())) {
        Q_EMIT commandChosen(*command);
    } else if (event->key() == Qt::Key_Down) {
        moveFocus(1);
    } else if (event->key() == Qt::Key_Up) {
        moveFocus(-1);
    } else if (event->key() == Qt::Key_Home) {
        moveFocusFrom(-1, 1);
    } else if (event->key() == Qt::Key_End) {
        moveFocusFrom(static_cast<int>(m_commands.size()), -1);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void StatusMenuPanel::build() {
    for (const StatusMenuEntry& entry : m_menu) {
        if (auto view = menuEntryView(entry)) {
            m_layout->addWidget(view.release());
        } else if (const auto* action = std::get_if<StatusMenuAction>(&entry)) {
            addCommand(*action);
        } else {
            auto* line = new QFrame;
            line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
            m_layout->addWidget(line);
        }
    }
}

void StatusMenuPanel::addCommand(const StatusMenuAction& action) {
    auto* row = new MenuCommandRow(action);
    connect(row, &QAbstractButton::clicked, this, [this, chosen = action.command] { Q_EMIT commandChosen(chosen); });
    m_layout->addWidget(row);
    m_commands.push_back(row);
}

/// To the next enabled command in that direction, around both ends.
void StatusMenuPanel::moveFocus(int step) {
    const auto count = static_cast<int>(m_commands.size());
    const auto focused = std::find(m_commands.begin(), m_commands.end(), focusWidget());
    const int outside = step > 0 ? -1 : count;
    moveFocusFrom(focused != m_commands.end() ? static_cast<int>(focused - m_commands.begin()) : outside, step);
}

void StatusMenuPanel::moveFocusFrom(int index, int step) {
    const auto count = static_cast<int>(m_commands.size());
    for (int tried = 0; tried < count; ++tried) {
        index = (index + step + count) % count;
        MenuCommandRow* row = m_commands[static_cast<std::size_t>(index)];
        if (row->isEnabled()) {
            row->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

/// Also while another window is active.
std::optional<StatusMenuCommand> StatusMenuPanel::focusedCommand() const {
    const auto* focused = qobject_cast<MenuCommandRow*>(focusWidget());
    return focused != nullptr ? std::optional(focused->command()) : std::nullopt;
}

} // namespace Varnel

#include "StatusMenuPanel.moc"
