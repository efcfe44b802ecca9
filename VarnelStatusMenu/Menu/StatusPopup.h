#pragma once

#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <QMenu>
#include <QWidget>

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

/// The status menu as a frameless window of a fixed size, for a display server that places windows itself: it floats
/// and closes when another window becomes the active one, on Escape and before a command. It never changes.
class StatusPopupWindow : public QWidget {
    Q_OBJECT

public:
    explicit StatusPopupWindow(const StatusMenu& menu);

Q_SIGNALS:
    /// Once, after the window has closed.
    void commandChosen(Varnel::StatusMenuCommand command);

    /// The window has closed because another one became active.
    void dismissed();

    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_isClosing = false;
};

} // namespace Varnel
