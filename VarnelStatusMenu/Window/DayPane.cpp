#include <VarnelStatusMenu/Window/DayPane.h>

#include <VarnelShared/Calendar.h>
#include <VarnelStatusMenu/Window/DayChartView.h>
#include <VarnelStatusMenu/Window/DayText.h>

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QDateTime>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Varnel {

namespace {

constexpr qreal dateFontFactor = 1.25;
constexpr int wideSpacing = 18; // between facts that stand in one line

QString paneText(const char* sentence) {
    return QCoreApplication::translate("OutputWindow", sentence);
}

std::vector<double> powersOf(const DrawnDay& day) {
    std::vector<double> powers;
    for (const std::vector<OutputCurve>* curves : {&day.measured, &day.filled}) {
        for (const OutputCurve& curve : *curves) {
            std::transform(curve.begin(), curve.end(), std::back_inserter(powers),
                           std::mem_fn(&OutputPoint::kilowatts));
        }
    }
    return powers;
}

QString proposedPath(QDate date) {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
           QStringLiteral("/varnel-%1.csv").arg(date.toString(Qt::ISODate));
}

} // namespace

DayPane::DayPane(std::weak_ptr<OutputSource> source, QWidget* parent)
    : QWidget(parent)
    , m_source(std::move(source))
    , m_chart(new DayChartView) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(navigation());
    layout->addWidget(m_chart, 1);
    layout->addWidget(summary());
    refresh();
}

/// The key belongs to the window, whatever has the focus: a button would take the arrow keys for itself.
QToolButton* DayPane::addButton(const QString& text, QKeyCombination key, void (DayPane::*chosen)()) {
    auto* action = new QAction(text, this);
    action->setShortcut(key);
    action->setToolTip(QStringLiteral("%1 (%2)").arg(text, action->shortcut().toString(QKeySequence::NativeText)));
    connect(action, &QAction::triggered, this, chosen);
    addAction(action);
    auto* button = new QToolButton;
    button->setDefaultAction(action);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

QWidget* DayPane::navigation() {
    auto* bar = new QWidget;
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    m_back = addButton(paneText(QT_TRANSLATE_NOOP("OutputWindow", "Previous Day")),
                       isMirrored ? Qt::Key_Right : Qt::Key_Left, &DayPane::goBack);
    m_forth = addButton(paneText(QT_TRANSLATE_NOOP("OutputWindow", "Next Day")),
                        isMirrored ? Qt::Key_Left : Qt::Key_Right, &DayPane::goForth);
    m_home = addButton(paneText(QT_TRANSLATE_NOOP("OutputWindow", "Today")), Qt::Key_Home, &DayPane::goToToday);
    m_back->setArrowType(isMirrored ? Qt::RightArrow : Qt::LeftArrow);
    m_forth->setArrowType(isMirrored ? Qt::LeftArrow : Qt::RightArrow);
    m_date = new QLabel;
    m_date->setAlignment(Qt::AlignCenter);
    QFont font = m_date->font();
    font.setPointSizeF(font.pointSizeF() * dateFontFactor);
    m_date->setFont(font);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_back);
    layout->addWidget(m_date, 1);
    layout->addWidget(m_home);
    layout->addWidget(m_forth);
    return bar;
}

QWidget* DayPane::summary() {
    auto* bar = new QWidget;
    m_peak = new QLabel;
    m_energy = new QLabel;
    m_legend = new QLabel(paneText(QT_TRANSLATE_NOOP("OutputWindow", "Dotted: from the service")));
    m_copy = addButton(paneText(QT_TRANSLATE_NOOP("OutputWindow", "Copy")), Qt::CTRL | Qt::Key_C, &DayPane::copy);
    m_save =
        addButton(paneText(QT_TRANSLATE_NOOP("OutputWindow", "Save as CSV…")), Qt::CTRL | Qt::Key_S, &DayPane::save);
    auto* facts = new QHBoxLayout;
    facts->setSpacing(wideSpacing);
    for (QLabel* label : {m_peak, m_energy, m_legend}) {
        facts->addWidget(label);
    }
    facts->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_copy);
    buttons->addWidget(m_save);
    auto* layout = new QVBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(facts);
    layout->addLayout(buttons);
    return bar;
}

void DayPane::refresh() {
    const std::shared_ptr<OutputSource> source = m_source.lock();
    if (!source) {
        return;
    }
    m_today = source->today();
    if (std::exchange(m_daysRevision, m_today.daysRevision) != m_today.daysRevision) {
        m_walk.setDays(outputDays(source->storedReadings()), m_today.now.toDateTime().date());
    }
    m_walk.setToday(drawable(m_today.readings));
    askForCurve(*source);
    showDay(*source);
}

void DayPane::noteOpening() {
    m_isCurveWanted = true;
    refresh();
}

void DayPane::askForCurve(OutputSource& source) {
    if (m_isCurveWanted) {
        m_isCurveWanted = !source.requestServiceCurve([pane = QPointer(this)] {
            if (pane) {
                pane->refresh();
            }
        });
    }
}

void DayPane::showDay(const OutputSource& source) {
    const OutputDay& shown = m_walk.shown();
    const bool isToday = m_walk.isTodayShown();
    m_drawn = drawnDay(shown.readings, isToday ? m_today.ofService : OutputCurve(), m_today.interval,
                       Calendar::startOfDay(m_today.now), m_today.now);
    const std::optional<double> countedKWh = isToday ? m_today.energyKWh : std::nullopt;
    const std::optional<DayAxis> axis = axisOf(m_drawn, isToday ? std::optional(m_today.now) : std::nullopt);
    m_chart->setChart({m_drawn, axis, source.axisTopKW(powersOf(m_drawn))}, dayDescription(m_drawn, countedKWh));
    m_date->setText(dateText(shown.date, isToday));
    m_peak->setText(peakText(m_drawn));
    m_energy->setText(energyText(m_drawn, countedKWh));
    m_legend->setVisible(!m_drawn.filled.empty());
    m_back->defaultAction()->setEnabled(m_walk.hasEarlier());
    m_forth->defaultAction()->setEnabled(m_walk.hasLater());
    m_home->defaultAction()->setEnabled(m_walk.hasLater());
    m_copy->defaultAction()->setEnabled(axis.has_value());
    m_save->defaultAction()->setEnabled(axis.has_value());
}

void DayPane::move(void (DayWalk::*step)()) {
    if (const std::shared_ptr<OutputSource> source = m_source.lock()) {
        std::invoke(step, m_walk);
        showDay(*source);
    }
}

void DayPane::copy() {
    QGuiApplication::clipboard()->setText(csvText(m_drawn));
}

void DayPane::save() {
    auto* dialog = new QFileDialog(this, paneText(QT_TRANSLATE_NOOP("OutputWindow", "Save as CSV")),
                                   proposedPath(m_walk.shown().date), QStringLiteral("CSV (*.csv)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    // The day of the click: a poll or midnight may come while the dialog is open.
    connect(dialog, &QFileDialog::fileSelected, this,
            [this, text = csvText(m_drawn)](const QString& path) { write(path, text); });
    // Some window managers do not give the keyboard back to a window without a taskbar entry. A dialog of the desktop's
    // own is still on the screen when it ends, and takes it again.
    connect(dialog, &QDialog::finished, this,
            [this] { QTimer::singleShot(300, this, [this] { window()->activateWindow(); }); });
    dialog->open();
}

void DayPane::write(const QString& path, const QString& text) {
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 && file.commit()) {
        return;
    }
    auto* message = new QMessageBox(
        QMessageBox::Warning, paneText(QT_TRANSLATE_NOOP("OutputWindow", "Save as CSV")),
        paneText(QT_TRANSLATE_NOOP("OutputWindow", "The file could not be saved: %1")).arg(file.errorString()),
        QMessageBox::Ok, this);
    message->setAttribute(Qt::WA_DeleteOnClose);
    message->open();
}

} // namespace Varnel
