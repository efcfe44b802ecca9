#include <Varnel/OutputWindowSource.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Varnel {

namespace {

constexpr int minutesPerDay = 24 * 60;
constexpr int usualPointsPerDay = 288;

QString geometryKey() {
    return QStringLiteral("varnel.outputWindow.geometry");
}

OutputCurve curveOf(const std::vector<OutputSample>& samples) {
    OutputCurve curve;
    curve.reserve(samples.size());
    std::transform(samples.begin(), samples.end(), std::back_inserter(curve),
                   [](const OutputSample& sample) { return OutputPoint{sample.timestamp, sample.kilowatts}; });
    return curve;
}

} // namespace

OutputCurve pointsOnDay(const SEMSDaySeries& series, Timestamp instant) {
    const QDate date = instant.toDateTime().date();
    const std::size_t count = series.kilowatts.size();
    const auto pointsPerDay = static_cast<int>(std::max<std::size_t>(count, usualPointsPerDay));
    OutputCurve points;
    points.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const int minute = series.minutesOfDay.size() == count ? series.minutesOfDay[i]
                                                               : static_cast<int>(i) * minutesPerDay / pointsPerDay;
        // By the local clock, on which the service counts, also on the days on which it is changed.
        const QDateTime local(date.addDays(minute / minutesPerDay), QTime(minute / 60 % 24, minute % 60));
        points.push_back({Timestamp::fromDateTime(local), series.kilowatts[i]});
    }
    return points;
}

OutputWindowSource::OutputWindowSource(Kept kept)
    : m_kept(kept) {}

std::shared_ptr<OutputSource> OutputWindowSource::sharedWith(const std::shared_ptr<void>& owner) {
    m_owner = owner;
    return {owner, this};
}

OutputOfToday OutputWindowSource::today() const {
    const Timestamp now = m_kept.clock.now();
    return {now,
            m_kept.settings.pollInterval(),
            curveOf(m_kept.today.visible(now)),
            isCurveOfToday() ? m_curve : OutputCurve(),
            m_kept.values.todayOutputKWh,
            m_kept.today.revision()};
}

OutputCurve OutputWindowSource::storedReadings() const {
    return curveOf(m_kept.today.stored());
}

double OutputWindowSource::axisTopKW(const std::vector<double>& kilowatts) const {
    return StatusPresentationBuilder::outputChartYAxisMaxKW(kilowatts, m_kept.values.systemSizeKW,
                                                            m_kept.settings.chartScaleMode);
}

bool OutputWindowSource::requestServiceCurve(std::function<void()> arrived) {
    const std::shared_ptr<void> owner = m_owner.lock();
    if (!owner || !m_kept.connection.isConnected() || !m_kept.settings.preferredStationID()) {
        return false;
    }
    const Timestamp now = m_kept.clock.now();
    if (now >= m_askedAt && now - m_askedAt < m_kept.settings.pollInterval()) {
        return isCurveOfToday(); // another station or day has to wait
    }
    m_askedAt = now;
    startTask("day's curve", [this, owner, arrived = std::move(arrived)] { return fetchCurve(owner, arrived); });
    return true;
}

QCoro::Task<void> OutputWindowSource::fetchCurve([[maybe_unused]] std::shared_ptr<void> owner,
                                                 std::function<void()> arrived) {
    const Connection::Client client = m_kept.connection.client();
    const std::optional<QString> station = m_kept.settings.preferredStationID();
    if (!m_kept.connection.isConnected() || !station) {
        co_return;
    }
    if (!isCurveOfToday()) {
        m_curve.clear();
    }
    const int revision = m_kept.today.revision();
    m_curveRevision = revision;
    const SEMSSession session = m_kept.connection.session().value();
    const Result<std::optional<SEMSDaySeries>> series = co_await client->fetchTodayOutputSeries(session, *station);
    if (!m_kept.connection.isCurrent(client) || m_kept.today.revision() != revision) {
        co_return; // of another account, station or day by now
    }
    if (!series) {
        qCDebug(lcApp, "The day's curve did not come: %s", qUtf8Printable(series.error().localizedDescription()));
    } else if (*series) {
        m_curve = pointsOnDay(**series, m_kept.clock.now());
        arrived();
    }
}

QByteArray OutputWindowSource::windowGeometry() const {
    return m_kept.userDefaults.data(geometryKey()).value_or(QByteArray());
}

void OutputWindowSource::keepWindowGeometry(const QByteArray& geometry) {
    if (geometry != windowGeometry()) {
        // A place that is not kept is no loss worth a word: the log has it.
        [[maybe_unused]] const Result<void> kept = m_kept.userDefaults.setData(geometryKey(), geometry);
    }
}

} // namespace Varnel
