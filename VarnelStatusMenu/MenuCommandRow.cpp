#include <VarnelStatusMenu/MenuCommandRow.h>

#include <VarnelStatusMenu/CommandIcon.h>
#include <VarnelStatusMenu/MenuFonts.h>

#include <QKeyEvent>
#include <QStyleOptionMenuItem>
#include <QStylePainter>

namespace Varnel {

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

} // namespace Varnel
