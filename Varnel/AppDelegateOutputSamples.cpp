#include <Varnel/AppDelegate.h>

#include <VarnelShared/Calendar.h>

namespace Varnel {

void AppDelegate::recordOutputSample(double kilowatts, Timestamp at) {
    m_todayOutputSamples.record(kilowatts, at);
    persistOutputHistory();
}

void AppDelegate::restoreOutputHistoryIfAvailable() {
    m_todayOutputSamples.clear();
    const QString account = trimmedAccount();
    const std::optional<QString> stationID = trimmedStationID();
    if (account.isEmpty() || !stationID) {
        return;
    }
    const Timestamp dayStart = Calendar::startOfDay(m_platform.clock.now());
    if (auto snapshot = m_outputHistoryStore.loadSnapshot(dayStart, account, *stationID)) {
        m_todayOutputSamples.restore(dayStart, std::move(snapshot->samples));
    }
}

void AppDelegate::persistOutputHistory() {
    const QString account = trimmedAccount();
    const std::optional<QString> stationID = trimmedStationID();
    const bool isEmptyDay = !outputSamplesDayStart() || todayOutputSamples().empty();
    if (account.isEmpty() || !stationID || isEmptyDay) {
        return;
    }
    m_outputHistoryStore.saveSnapshot({*outputSamplesDayStart(), account, *stationID, todayOutputSamples()},
                                      m_platform.clock.now());
}

} // namespace Varnel
