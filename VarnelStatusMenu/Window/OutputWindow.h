#pragma once

#include <VarnelStatusMenu/StatusItem.h>

#include <QWidget>

namespace Varnel {

class DayPane;
class StatusMenuPanel;

/// The output in an ordinary window: the days large, and beside them the rows and commands of the status menu, so that
/// it can stand for the item. Its title is the item's. It follows later content, keeps its size and place across
/// openings, and deletes itself when it is closed.
class OutputWindow : public QWidget {
    Q_OBJECT

public:
    /// Without a source the window is the menu alone, with the menu's own chart.
    OutputWindow(const StatusItemContent& content, std::weak_ptr<OutputSource> source);

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
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    StatusMenu besideDays(const StatusMenu& menu) const;

    std::weak_ptr<OutputSource> m_source;
    DayPane* m_days = nullptr; ///< none without a source
    StatusMenuPanel* m_panel = nullptr;
    bool m_standsForItem = false;
};

} // namespace Varnel
