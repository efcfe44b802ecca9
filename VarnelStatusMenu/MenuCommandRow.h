#pragma once

#include <VarnelStatusMenu/StatusMenu.h>

#include <QAbstractButton>

class QStyleOptionMenuItem;

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

} // namespace Varnel
