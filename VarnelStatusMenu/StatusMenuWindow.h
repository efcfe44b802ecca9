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
    explicit StatusMenuWindow(const StatusMenu& menu);

    void setMenu(const StatusMenu& menu);

    /// Shows the window in front of the others, also when it was minimised.
    void bringToFront();

Q_SIGNALS:
    void commandChosen(Varnel::StatusMenuCommand command);

private:
    StatusMenuPanel* m_panel;
};

} // namespace Varnel
