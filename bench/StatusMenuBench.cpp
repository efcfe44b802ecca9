// The status menu with a full day of samples. The budget of its first paint is 8 ms; and a menu that is set again and
// again while nobody opens it must not grow.

#include "Ratios.h"

#include <VarnelStatusMenu/Chart/OutputChartMenuView.h>
#include <VarnelStatusMenu/Menu/StatusMenuPresenter.h>
#include <VarnelStatusMenu/Menu/StatusPopup.h>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QMenu>

#include <benchmark/benchmark.h>

#include <cmath>

using namespace Varnel;

namespace {

StatusMenu fullDay() {
    StatusPresentation presentation;
    for (int i = 0; i < 1440; ++i) {
        presentation.outputChartValues.push_back(2 + 2 * std::sin(i * 0.01) * std::cos(i * 0.37));
        presentation.outputChartPointLabels << QStringLiteral("12:34");
    }
    presentation.outputChartXAxisLabels =
        QStringList{QStringLiteral("00:00"), QStringLiteral("12:00"), QStringLiteral("23:59")};
    presentation.outputChartYAxisMaxKW = 4.6;
    presentation.showOutputChart = presentation.isSignedIn = presentation.canRefresh = true;
    return statusMenu(presentation);
}

double residentKilobytes() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    const bool isOpen = statm.open(QIODevice::ReadOnly);
    return isOpen ? statm.readAll().split(' ').value(1).toDouble() * 4 : 0;
}

/// Building the widgets, laying them out and painting them, as between a click and the first frame.
void openMenu(benchmark::State& state) {
    const StatusMenu menu = fullDay();
    for ([[maybe_unused]] auto turn : state) {
        StatusPopupMenu popup(menu);
        popup.popup({0, 0});
        benchmark::DoNotOptimize(popup.grab());
    }
}
BENCHMARK(openMenu)->Unit(benchmark::kMillisecond);

/// The yardstick: a menu of Qt's with as many rows of text.
void openPlainMenu(benchmark::State& state) {
    const std::size_t rows = fullDay().size();
    for ([[maybe_unused]] auto turn : state) {
        QMenu menu;
        for (std::size_t row = 0; row < rows; ++row) {
            menu.addAction(QStringLiteral("Current Output: 3.42 kW"));
        }
        menu.popup({0, 0});
        benchmark::DoNotOptimize(menu.grab());
    }
}
BENCHMARK(openPlainMenu)->Unit(benchmark::kMillisecond);

/// One move of the mouse: the inspected point is found and the chart is painted again.
void paintChart(benchmark::State& state) {
    OutputChartMenuView view(std::get<StatusMenuChart>(fullDay().front()));
    view.resize(view.sizeHint());
    QImage image(view.size() * 2, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    for ([[maybe_unused]] auto turn : state) {
        view.render(&image);
    }
}
BENCHMARK(paintChart)->Unit(benchmark::kMillisecond);

/// Ten thousand updates, with one opening in every hundred; `growthKB` is what the process has grown meanwhile.
void rebuildMenu(benchmark::State& state) {
    const StatusItemContent content{QStringLiteral("2.00 kW"), {}, fullDay(), {}};
    StatusMenuPresenter presenter;
    const auto rebuild = [&](int times) {
        for (int i = 0; i < times; ++i) {
            presenter.setContent(content);
            if (i % 100 == 0) {
                presenter.toggleMenu();
                presenter.toggleMenu();
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            }
        }
    };
    rebuild(1000);
    for ([[maybe_unused]] auto turn : state) {
        const double before = residentKilobytes();
        rebuild(10000);
        state.counters["growthKB"] = residentKilobytes() - before;
    }
}
BENCHMARK(rebuildMenu)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    return Bench::runAndTellRatios(argc, argv, {{"openMenu", "openPlainMenu"}});
}
