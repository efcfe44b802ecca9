#pragma once

#include "ControllerBench.h"

#include <random>

namespace Varnel::Testing {

/// A connected controller that polls again and again, each time for another value, while every tenth poll or so meets
/// a fault that ends quickly. The same seed gives the same faults.
class PollSoak {
public:
    /// `bench` is connected and outlives the soak.
    explicit PollSoak(ControllerBench& bench);

    /// Polls so many times, and once more undisturbed; false, with `problem`, at the first poll after which something
    /// else is shown than the newest value, or than the last good one beside an error line.
    bool run(int polls);

    const QString& problem() const { return m_problem; }
    int disturbedPolls() const { return m_disturbedPolls; }
    int failedPolls() const { return m_failedPolls; }

private:
    void disturb();
    bool poll();
    bool isRightlyShown(double polled);

    ControllerBench& m_bench;
    std::mt19937 m_random{20260601};
    bool m_isDisturbed = false;
    QString m_lastFault;
    double m_lastGoodKW = 0;
    int m_disturbedPolls = 0;
    int m_failedPolls = 0;
    QString m_problem;
};

} // namespace Varnel::Testing
