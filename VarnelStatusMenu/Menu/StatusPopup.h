#pragma once

#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <QMenu>
#include <QWidget>

#include <functional>
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
    void activateEndCommand(int key);
    int keyColumnWidth() const;

    StatusMenu m_menu;
    bool m_hasBeenPressed = false;
};

/// The status menu as a frameless window, for a session in which a menu cannot stand by itself. It closes when another
/// window becomes the active one, on a click beside the menu, on Escape and before a command. It never changes.
class StatusPopupWindow : public QWidget {
    Q_OBJECT

public:
    explicit StatusPopupWindow(const StatusMenu& menu);

    QSize menuSize() const;

    /// As large as the menu; the display server places it where none is given.
    void showMenu(std::optional<QPoint> corner);

    /// As large as the area, and transparent beside the menu at that corner: a click beside it lands in the window.
    void showOver(const QRect& area, QPoint corner);

    /// The same, as large as the display server maximises it, with the menu's corner where `menuCorner` puts it in a
    /// window of that size.
    void showMaximizedOver(std::function<QPoint(QSize window)> menuCorner);

Q_SIGNALS:
    /// Once, after the window has closed.
    void commandChosen(Varnel::StatusMenuCommand command);

    /// The window has closed because another one became active, or by a click beside the menu.
    void dismissed();

    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void beTransparent(std::function<QPoint()> menuCorner);
    void dismiss();

    QWidget* m_menu;
    std::function<QPoint()> m_menuCorner; ///< in the window; empty: the menu fills it
    bool m_isClosing = false;
};

} // namespace Varnel
