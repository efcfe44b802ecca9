#include <VarnelStatusMenu/Chart/OutputChartMenuView.h>
#include <VarnelStatusMenu/Menu/StatusMenuPresenter.h>
#include <VarnelStatusMenu/Window/DayChartView.h>
#include <VarnelStatusMenu/Window/OutputSource.h>
#include <VarnelStatusMenu/Window/OutputWindow.h>

#include <tests/Support/EventLoop.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPointer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Varnel;
using Varnel::Testing::settle;

namespace {

const QDate today(2026, 6, 21);

Timestamp clockTime(int daysAgo, int hour, int minute = 0) {
    return Timestamp::fromDateTime(QDateTime(today.addDays(-daysAgo), QTime(hour, minute)));
}

struct FakeOutputSource final : OutputSource {
    OutputOfToday today() const override { return facts; }
    OutputCurve storedReadings() const override {
        ++timesRead;
        return stored;
    }
    double axisTopKW(const std::vector<double>& kilowatts) const override {
        return kilowatts.empty() ? 0.1 : *std::max_element(kilowatts.begin(), kilowatts.end());
    }
    bool requestServiceCurve(std::function<void()> arrived) override {
        ++requests;
        curveArrived = std::move(arrived);
        return isConnected;
    }
    QByteArray windowGeometry() const override { return geometry; }
    void keepWindowGeometry(const QByteArray& kept) override { geometry = kept; }

    OutputOfToday facts{clockTime(0, 14), Seconds(300), {{clockTime(0, 13), 2}, {clockTime(0, 13, 5), 3}}, {}, {}, 0};
    OutputCurve stored{{clockTime(0, 13), 2}, {clockTime(1, 12), 1.5}, {clockTime(6, 9), 0.5}};
    mutable int timesRead = 0;
    int requests = 0;
    bool isConnected = true;
    std::function<void()> curveArrived;
    QByteArray geometry;
};

struct OutputWindowTest : testing::Test {
    OutputWindowTest() {
        StatusPresentation presentation;
        presentation.showOutputChart = presentation.isSignedIn = true;
        content = {QStringLiteral("3.00 kW"), {}, statusMenu(presentation), {}};
        presenter.setContent(content);
        presenter.setOutputSource(source);
    }

    OutputWindow* open() {
        presenter.showWindow();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<OutputWindow*>(widget); found != nullptr && found->isVisible()) {
                window = found;
            }
        }
        settle();
        return window;
    }

    QAction* action(QKeyCombination key) {
        for (QAction* candidate : window->findChildren<QAction*>()) {
            if (candidate->shortcut() == QKeySequence(key)) {
                return candidate;
            }
        }
        return nullptr;
    }
    void press(QKeyCombination key) { action(key)->trigger(); }

    bool isSaying(const char* text) {
        const auto labels = window->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [text](const QLabel* label) {
            return label->isVisible() && label->text() == QString::fromUtf8(text);
        });
    }

    /// What the inspector says of one point after another while the mouse goes over the chart.
    QStringList inspectedFromLeftToRight() {
        auto* chart = window->findChild<DayChartView*>();
        QStringList said;
        for (int x = 0; x < chart->width(); ++x) {
            const QPointF position(x, chart->height() * 0.5);
            QMouseEvent event(QEvent::MouseMove, position, position, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(chart, &event);
            if (said.isEmpty() || said.last() != chart->inspectorText()) {
                said << chart->inspectorText();
            }
        }
        return said;
    }

    std::shared_ptr<FakeOutputSource> source = std::make_shared<FakeOutputSource>();
    StatusMenuPresenter presenter;
    StatusItemContent content;
    OutputWindow* window = nullptr;
};

} // namespace

TEST_F(OutputWindowTest, WalksThroughTheDaysAndFollowsToday) {
    open();
    EXPECT_TRUE(isSaying("Peak: 3.00 kW at 13:05"));
    EXPECT_FALSE(action(Qt::Key_Right)->isEnabled());
    press(Qt::Key_Left);
    EXPECT_TRUE(isSaying("Saturday, 20 June 2026"));
    EXPECT_TRUE(isSaying("Energy under the curve: 0.00 kWh"));
    press(Qt::Key_Left);
    EXPECT_TRUE(isSaying("Monday, 15 June 2026")) << "days without readings are passed over";
    EXPECT_FALSE(action(Qt::Key_Left)->isEnabled());
    source->facts.readings.push_back({clockTime(0, 13, 10), 4});
    source->facts.energyKWh = 6.5;
    presenter.setContent(content);
    EXPECT_TRUE(isSaying("Monday, 15 June 2026")) << "a poll leaves the shown day";
    press(Qt::Key_Home);
    EXPECT_TRUE(isSaying("Today, Sunday, 21 June 2026"));
    EXPECT_TRUE(isSaying("Peak: 4.00 kW at 13:10"));
    EXPECT_TRUE(isSaying("Energy: 6.50 kWh"));
    EXPECT_EQ(source->timesRead, 1) << "a poll reads no file";
    ++source->facts.daysRevision;
    source->stored.clear();
    source->facts.readings.clear();
    presenter.setContent(content);
    EXPECT_FALSE(action(Qt::Key_Left)->isEnabled()) << "signed out";
    EXPECT_FALSE(action(Qt::CTRL | Qt::Key_C)->isEnabled());
}

TEST_F(OutputWindowTest, AsksForTheServicesCurveOncePerOpeningAndMarksIt) {
    source->isConnected = false;
    open();
    presenter.setContent(content);
    EXPECT_EQ(source->requests, 2) << "again while nobody can be asked";
    source->isConnected = true;
    presenter.setContent(content);
    presenter.setContent(content);
    EXPECT_EQ(source->requests, 3);
    EXPECT_FALSE(isSaying("Dotted: from the service"));
    source->facts.ofService = {{clockTime(0, 7), 0.5}, {clockTime(0, 7, 5), 9}};
    source->curveArrived();
    EXPECT_TRUE(isSaying("Dotted: from the service"));
    EXPECT_TRUE(isSaying("Peak: 9.00 kW at 07:05"));
    press(Qt::Key_Left);
    EXPECT_FALSE(isSaying("Dotted: from the service"));
    presenter.closeWindow();
    settle();
    source->curveArrived(); // for a window that has gone
    open();
    EXPECT_EQ(source->requests, 4);
}

TEST_F(OutputWindowTest, InspectsThePointUnderTheMouseAndNamesItsSource) {
    source->facts.ofService = {{clockTime(0, 7), 0.5}, {clockTime(0, 7, 5), 1}};
    const auto* chart = open()->findChild<DayChartView*>();
    EXPECT_EQ(inspectedFromLeftToRight().join(u'\n').toStdString(),
              "\n0.50 kW  07:00 (from the service)\n1.00 kW  07:05 (from the service)\n"
              "2.00 kW  13:00\n3.00 kW  13:05\n");
    EXPECT_FALSE(chart->accessibleName().isEmpty());
    EXPECT_EQ(chart->accessibleDescription().toStdString(),
              "Peak: 3.00 kW at 13:05. Energy under the curve: 0.27 kWh. Readings: 2");
}

TEST_F(OutputWindowTest, IsMirroredWholeWithItsChartAndItsArrowKeys) {
    QApplication::setLayoutDirection(Qt::RightToLeft);
    open();
    EXPECT_EQ(inspectedFromLeftToRight().join(u'\n').toStdString(), "\n3.00 kW  13:05\n2.00 kW  13:00\n");
    press(Qt::Key_Right);
    EXPECT_TRUE(isSaying("Saturday, 20 June 2026")) << "the earlier day, to which the arrow points";
    press(Qt::Key_Left);
    EXPECT_TRUE(isSaying("Today, Sunday, 21 June 2026"));
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(OutputWindowTest, GivesTheShownDayAway) {
    open();
    press(Qt::Key_Left);
    press(Qt::CTRL | Qt::Key_C);
    const QString expected = QStringLiteral("time,kW,source\n2026-06-20T12:00:00+02:00,1.5,measured\n");
    EXPECT_EQ(QApplication::clipboard()->text(), expected);
    const QTemporaryDir folder;
    const struct {
        QString path;
        bool isWritten;
    } rows[] = {{folder.filePath(QStringLiteral("day.csv")), true},
                {folder.filePath(QStringLiteral("none/day.csv")), false}};
    for (const auto& [path, isWritten] : rows) {
        press(Qt::CTRL | Qt::Key_S);
        auto* dialog = window->findChild<QFileDialog*>();
        ASSERT_TRUE(dialog);
        EXPECT_TRUE(dialog->selectedFiles().value(0).endsWith(QStringLiteral("/varnel-2026-06-20.csv")));
        Q_EMIT dialog->fileSelected(path);
        dialog->close();
        settle();
        QFile file(path);
        EXPECT_EQ(file.open(QIODevice::ReadOnly), isWritten);
        EXPECT_EQ(QString::fromUtf8(isWritten ? file.readAll() : expected.toUtf8()), expected);
        EXPECT_EQ(window->findChild<QMessageBox*>() != nullptr, !isWritten) << "a failure is said";
    }
}

TEST_F(OutputWindowTest, KeepsItsSizeAndShowsTheChartOnlyOnce) {
    open();
    EXPECT_FALSE(window->findChild<OutputChartMenuView*>());
    const QSize wanted = window->size() + QSize(21, 33);
    window->resize(wanted);
    window->close();
    settle();
    EXPECT_EQ(open()->size(), wanted);
    window->close();
    settle();
    source->geometry = "no geometry";
    EXPECT_GE(open()->width(), 500);
    source.reset();
    presenter.setContent(content); // the program ends
    press(Qt::Key_Left);
}
