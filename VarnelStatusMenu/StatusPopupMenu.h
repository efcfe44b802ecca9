#pragma once

#include <VarnelStatusMenu/StatusMenu.h>

#include <QMenu>

#include <memory>

namespace Varnel {

class MenuView;

/// The status menu as a pop-up that the desktop's style draws, for a display server that lets a window stand where it
/// wants. Key equivalents work while it is open. It never changes.
class StatusPopupMenu : public QMenu {
    Q_OBJECT

public:
    explicit StatusPopupMenu(StatusMenu menu);

Q_SIGNALS:
    /// Once, after the menu has closed.
    void commandChosen(Varnel::StatusMenuCommand command);

    /// A click outside has closed the menu.
    void dismissed();

    void closed();

protected:
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void addEntry(const StatusMenuEntry& entry);
    void addCommand(const StatusMenuAction& command);
    void addView(std::unique_ptr<MenuView> view);
    int keyColumnWidth() const;

    StatusMenu m_menu;
    bool m_hasBeenPressed = false;
};

} // namespace Varnel
