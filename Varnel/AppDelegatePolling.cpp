#include <Varnel/AppDelegate.h>

#include <Varnel/AppErrorMapper.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>

#include <QCoreApplication>

#include <utility>

namespace Varnel {

void AppDelegate::startPolling() {
    dropPollingService();
    // The outcome carries its service along, so that one of a service that was dropped is known as such.
    const auto tag = std::make_shared<std::weak_ptr<PowerPollingService>>();
    m_pollingService = std::make_shared<PowerPollingService>(
        m_settings.pollInterval(), ifAlive(weak_from_this(), &AppDelegate::fetchPowerReading),
        ifAlive(weak_from_this(),
                [tag](AppDelegate& self, Result<PowerReading> result) {
                    if (self.m_pollingService && self.m_pollingService == tag->lock()) {
                        self.handlePollResult(std::move(result));
                    }
                }),
        m_platform.timers);
    *tag = m_pollingService;
    m_pollingService->start();
}

QCoro::Task<Result<PowerReading>> AppDelegate::fetchPowerReading() {
    const auto self = shared_from_this();
    co_return co_await m_connection.fetchPowerReading(m_settings.preferredStationID());
}

void AppDelegate::handlePollResult(Result<PowerReading> result) {
    if (m_connection.isClosed()) {
        return;
    }
    if (result) {
        takeReading(*result);
    } else {
        qCWarning(lcApp, "Poll failed: %s", qUtf8Printable(logText(result.error())));
        m_values.errorMessage = AppErrorMapper::userFacingMessage(result.error(), AppErrorContext::polling);
        if (const auto wished = retryAfterOf(result.error()); wished && m_pollingService) {
            m_pollingService->waitAtLeast(*wished);
        }
    }
    updateStatusBar();
}

void AppDelegate::takeReading(const PowerReading& reading) {
    rollOver(reading.capturedAt);
    const bool isFirstOfDay =
        m_values.lastUpdatedAt && !Calendar::isSameDay(*m_values.lastUpdatedAt, reading.capturedAt);
    m_values.powerKW = reading.kilowatts;
    m_values.todayOutputKWh = reading.todayOutputKWh;
    m_values.lastUpdatedAt = reading.capturedAt;
    const bool isOfAnotherStation = reading.stationID != m_settings.preferredStationID().value_or(QString());
    if (isOfAnotherStation) {
        // Before the sample is recorded, so that it goes to the day of the station it was read from.
        adoptStation(reading.stationID);
    }
    if (isOfAnotherStation || (isFirstOfDay && !m_values.systemSizeKW)) {
        startTask("refresh of the system size", ifAlive(weak_from_this(), &AppDelegate::refreshSystemSizeIfPossible));
    }
    m_todayOutput.record(reading.kilowatts, reading.capturedAt);
    m_values.errorMessage.reset();
    m_announcements->handleProductionNotifications(reading.kilowatts);
}

QCoro::Task<void> AppDelegate::refreshNow() {
    const auto self = shared_from_this();
    if (!m_connection.isConnected()) {
        const QString message = QCoreApplication::translate("AppDelegate", "Not connected. Open Settings to connect.");
        m_preferencesCoordinator.explainError({message, ConnectionState::WantedField::none, false});
        m_values.errorMessage = message;
        updateStatusBar();
        co_return;
    }
    m_connection.allowPasswordAgain();
    if (m_pollingService) {
        m_pollingService->refreshNow();
        co_return;
    }
    const Client client = m_connection.client();
    const std::optional<QString> stationID = m_settings.preferredStationID();
    Result<PowerReading> result = co_await fetchPowerReading();
    if (m_connection.isCurrent(client) && m_settings.preferredStationID() == stationID) {
        handlePollResult(std::move(result));
    }
}

QCoro::Task<void> AppDelegate::refreshSystemSizeIfPossible() {
    const auto self = shared_from_this();
    const Client client = m_connection.client();
    if (!m_connection.isConnected()) {
        co_return;
    }
    const std::optional<QString> stationID = m_settings.preferredStationID();
    const SEMSSession session = m_connection.session().value();
    const Result<std::optional<double>> size = co_await client->fetchSystemSizeKW(session, stationID);
    if (!m_connection.isCurrent(client) || m_settings.preferredStationID() != stationID) {
        co_return;
    }
    if (!size) {
        qCCritical(lcApp, "System size refresh failed: %s", qUtf8Printable(logText(size.error())));
        co_return;
    }
    m_values.systemSizeKW = *size;
    updateStatusBar();
}

} // namespace Varnel
