#pragma once

#include <Varnel/Connection.h>
#include <Varnel/StatusPresentationBuilder.h>
#include <Varnel/TodayOutput.h>

#include <VarnelSettings/UserDefaults.h>
#include <VarnelStatusMenu/Window/OutputSource.h>

#include <memory>

namespace Varnel {

/// What the output window shows, from what the controller keeps. The service's curve of today lives here alone, for the
/// window: it is never recorded.
class OutputWindowSource final : public OutputSource {
public:
    /// What the controller keeps, as it is at each call.
    struct Kept {
        const Clock& clock;
        const AppSettings& settings;
        const StatusValues& values;
        const TodayOutput& today;
        const Connection& connection;
        UserDefaults& userDefaults;
    };

    explicit OutputWindowSource(Kept kept);

    /// This source as part of `owner`, which has to have all that is kept: a request keeps the owner alive.
    std::shared_ptr<OutputSource> sharedWith(const std::shared_ptr<void>& owner);

    OutputOfToday today() const override;
    OutputCurve storedReadings() const override;
    double axisTopKW(const std::vector<double>& kilowatts) const override;
    bool requestServiceCurve(std::function<void()> arrived) override;
    QByteArray windowGeometry() const override;
    void keepWindowGeometry(const QByteArray& geometry) override;

private:
    bool isCurveOfToday() const { return m_curveRevision == m_kept.today.revision(); }
    QCoro::Task<void> fetchCurve(std::shared_ptr<void> owner, std::function<void()> arrived);

    Kept m_kept;
    std::weak_ptr<void> m_owner;
    OutputCurve m_curve;
    std::optional<int> m_curveRevision; ///< of the day and owner that was asked for last
    Timestamp m_askedAt;
};

/// The points of a day's curve on the local day of `instant`. Values without times are spread from midnight, one for
/// every five minutes or closer where there are more.
OutputCurve pointsOnDay(const SEMSDaySeries& series, Timestamp instant);

} // namespace Varnel
