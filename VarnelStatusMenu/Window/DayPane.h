#pragma once

#include <VarnelStatusMenu/Window/DayWalk.h>
#include <VarnelStatusMenu/Window/OutputSource.h>

#include <QWidget>

#include <memory>

class QAction;
class QLabel;
class QToolButton;

namespace Varnel {

class DayChartView;

/// One day of the output, with the ways to the others and out of the program. Left and right arrow go from day to day
/// (in a mirrored layout the other way), Home to today, Ctrl+S saves and Ctrl+C copies the day as CSV.
class DayPane : public QWidget {
    Q_OBJECT

public:
    /// Shows today. Held weakly: when the source has gone the pane stays as it is.
    explicit DayPane(std::weak_ptr<OutputSource> source, QWidget* parent = nullptr);

    /// Takes what is known now. Earlier days are read again only where they may have become others.
    void refresh();

    /// The window has been opened: the service is asked for the day's curve once, now or as soon as it can be.
    void noteOpening();

private:
    QToolButton* addButton(const QString& text, QKeyCombination key, void (DayPane::*chosen)());
    QWidget* navigation();
    QWidget* summary();
    void askForCurve(OutputSource& source);
    void showDay(const OutputSource& source);
    void move(void (DayWalk::*step)());
    void goBack() { move(&DayWalk::goBack); }
    void goForth() { move(&DayWalk::goForth); }
    void goToToday() { move(&DayWalk::goToToday); }
    void copy();
    void save();
    void write(const QString& path, const QString& text);

    std::weak_ptr<OutputSource> m_source;
    DayWalk m_walk;
    OutputOfToday m_today;
    DrawnDay m_drawn; ///< the shown day
    std::optional<int> m_daysRevision;
    bool m_isCurveWanted = false;
    DayChartView* m_chart = nullptr;
    QLabel* m_date = nullptr;
    QLabel* m_peak = nullptr;
    QLabel* m_energy = nullptr;
    QLabel* m_legend = nullptr;
    QToolButton* m_back = nullptr;
    QToolButton* m_forth = nullptr;
    QToolButton* m_home = nullptr;
    QToolButton* m_copy = nullptr;
    QToolButton* m_save = nullptr;
};

} // namespace Varnel
