#pragma once

#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <QWidget>

class QVBoxLayout;

namespace Varnel {

class MenuCommandRow;

/// The content of the status menu as a widget of a window: the same views, and commands that look and are chosen like
/// those of a menu. Arrow keys go from command to command, Home and End to the first and the last, Return and Space
/// choose, key equivalents work.
class StatusMenuPanel : public QWidget {
    Q_OBJECT

public:
    explicit StatusMenuPanel(const StatusMenu& menu, QWidget* parent = nullptr);

    /// Shows another menu in place of the present one; the command that has the keyboard focus keeps it.
    void setMenu(const StatusMenu& menu);

Q_SIGNALS:
    void commandChosen(Varnel::StatusMenuCommand command);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void build();
    void addCommand(const StatusMenuAction& action);
    void moveFocus(int step);
    void moveFocusFrom(int index, int step);
    std::optional<StatusMenuCommand> focusedCommand() const;

    StatusMenu m_menu;
    QVBoxLayout* m_layout = nullptr;
    std::vector<MenuCommandRow*> m_commands;
};

} // namespace Varnel
