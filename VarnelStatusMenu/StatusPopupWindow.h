#pragma once

#include <VarnelStatusMenu/StatusMenu.h>

#include <QWidget>

namespace Varnel {

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
