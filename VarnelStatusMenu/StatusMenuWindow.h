#pragma once

#include <VarnelStatusMenu/StatusMenu.h>

#include <QWidget>

namespace Varnel {

class StatusMenuPanel;

/// The content of the status menu as an ordinary window, as large as its content. It follows later menus and deletes
/// itself when it is closed.
class StatusMenuWindow : public QWidget {
    Q_OBJECT

public:
    /// A property that is true while the window is the only way to reach the program. A dynamic one: its changes reach
    /// the event filters of the application.
    static constexpr char standsForItemProperty[] = "standsForItem";

    explicit StatusMenuWindow(const StatusMenu& menu);

    void setMenu(const StatusMenu& menu);

    /// Sets the property of this name.
    void setStandsForItem(bool standsForItem);

    /// Shows the window in front of the others, also when it was minimised.
    void bringToFront();

    void showInTaskbar();

Q_SIGNALS:
    void commandChosen(Varnel::StatusMenuCommand command);

private:
    StatusMenuPanel* m_panel;
};

} // namespace Varnel
