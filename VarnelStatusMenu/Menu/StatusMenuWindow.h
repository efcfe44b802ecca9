#pragma once

#include <VarnelStatusMenu/StatusItem.h>

#include <QWidget>

namespace Varnel {

class StatusMenuPanel;

/// The content of the status menu as an ordinary window, as large as its content. Its title is the
/// item's. It follows later content and deletes
/// itself when it is closed.
class StatusMenuWindow : public QWidget {
    Q_OBJECT

public:
    explicit StatusMenuWindow(const StatusItemContent& content);

    void setContent(const StatusItemContent& content);

    /// Whether the window is the only way to reach the program.
    bool standsForItem() const { return m_standsForItem; }
    void setStandsForItem(bool standsForItem);

    /// Shows the window in front of the others, also when it was minimised.
    void bringToFront();

    void showInTaskbar();

Q_SIGNALS:
    void commandChosen(Varnel::StatusMenuCommand command);
    void standsForItemChanged();

protected:
    /// Escape and the desktop's key for closing a window close it.
    void keyPressEvent(QKeyEvent* event) override;

private:
    StatusMenuPanel* m_panel;
    bool m_standsForItem = false;
};

} // namespace Varnel
