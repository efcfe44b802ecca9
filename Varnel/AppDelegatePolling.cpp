#include <Varnel/AppDelegate.h>

#include <Varnel/AppErrorMapper.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <utility>

namespace Varnel {

namespace {
QCoro::Task<Result<PowerReading>> failedReading(Error error) {
    co_return failure(std::move(error));
}

Error notInitialized() {
    return SEMSAPIError::invalidConfiguration(QStringLiteral("API client is not initialized."));
}
} // namespace

void AppDelegate::startPolling() {
    dropPollingService();
    // The outcome carries its service along, so that one of a service that was dropped is known as such.
    const auto tag = std::make_shared<std::weak_ptr<PowerPollingService>>();
    m_pollingService = std::make_shared<PowerPollingService>(
        Seconds(static_cast<double>(m_settings.clampedPollInterval())),
        [weak = weak_from_this()] {
            const auto self = weak.lock();
            return self ? self->fetchPowerReading() : failedReading(notInitialized());
        },
        [weak = weak_from_this(), tag](Result<PowerReading> result) {
            const auto self = weak.lock();
            if (self && self->m_pollingService && self->m_pollingService == tag->lock()) {
                self->handlePollResult(std::move(result));
            }
        },
        m_platform.timers);
    *tag = m_pollingService;
    m_pollingService->start();
}

QCoro::Task<Result<PowerReading>> AppDelegate::fetchPowerReading() {
    if (!m_apiClient) {
        return failedReading(notInitialized());
    }
    if (!m_cachedPassword || m_cachedPassword->isEmpty()) {
        return failedReading(SEMSAPIError::authenticationFailed());
    }
    const QString account = trimmedAccount();
    if (account.isEmpty()) {
        return failedReading(SEMSAPIError::invalidConfiguration(QStringLiteral("SEMS account is empty.")));
    }
    return fetchThroughSession(m_apiClient, account, *m_cachedPassword);
}

QCoro::Task<Result<PowerReading>> AppDelegate::fetchThroughSession(Client client, QString account, QString password) {
    const auto self = shared_from_this();
    std::optional<SEMSSession> session = m_semsSession;
    const std::optional<QString> preferredStationID = trimmedStationID();
    if (!session) {
        const Result<SEMSSession> renewed = co_await renewSession(client, account, password);
        if (!renewed) {
            co_return failure(renewed.error());
        }
        session = *renewed;
    }
    Result<PowerReading> reading = co_await client->fetchCurrentPower(*session, preferredStationID);
    const auto* error = reading ? nullptr : reading.error().as<SEMSAPIError>();
    if (error && error->is<SEMSAPIError::AuthenticationFailed>()) {
        const Result<SEMSSession> renewed = co_await renewSession(client, account, password);
        if (!renewed) {
            co_return failure(renewed.error());
        }
        reading = co_await client->fetchCurrentPower(*renewed, preferredStationID);
    }
    if (reading) {
        reading->capturedAt = m_platform.clock.now();
    }
    co_return reading;
}

QCoro::Task<Result<SEMSSession>> AppDelegate::renewSession(Client client, QString account, QString password) {
    const auto self = shared_from_this();
    Result<SEMSSession> session = co_await client->signIn(account, password);
    // Stored only for the connection that asked: after a sign-out or another sign-in it would revive what is gone.
    if (session && m_apiClient == client && !m_isTerminated) {
        qCInfo(lcApp, "Session renewed");
        m_semsSession = *session;
    }
    co_return session;
}

void AppDelegate::handlePollResult(Result<PowerReading> result) {
    if (m_isTerminated) {
        return;
    }
    if (result) {
        takeReading(*result);
    } else {
        qCWarning(lcApp, "Poll failed: %s", qUtf8Printable(logText(result.error())));
        m_lastErrorMessage = AppErrorMapper::userFacingMessage(result.error(), AppErrorContext::polling);
    }
    updateStatusBar();
}

void AppDelegate::takeReading(const PowerReading& reading) {
    const bool isOtherStation = reading.stationID != trimmedStationID().value_or(QString());
    m_latestPowerKW = reading.kilowatts;
    m_latestTodayOutputKWh = reading.todayOutputKWh;
    m_lastUpdatedAt = reading.capturedAt;
    if (isOtherStation) {
        // Before the sample is recorded, so that it goes to the day of the station it was read from.
        adoptStation(reading.stationID);
    }
    recordOutputSample(reading.kilowatts, reading.capturedAt);
    m_lastErrorMessage.reset();
    handleProductionNotifications(reading);
    if (isOtherStation) {
        m_settingsStore.save(m_settings);
        startTask("refresh of the system size", [weak = weak_from_this()] {
            const auto self = weak.lock();
            return self ? self->refreshSystemSizeIfPossible() : completedTask();
        });
    }
}

QCoro::Task<void> AppDelegate::refreshNow() {
    const auto self = shared_from_this();
    if (!m_semsSession) {
        m_lastErrorMessage = QStringLiteral("Not connected. Open Settings to connect.");
        updateStatusBar();
        co_return;
    }
    if (m_pollingService) {
        m_pollingService->refreshNow();
        co_return;
    }
    const Client client = m_apiClient;
    Result<PowerReading> result = co_await fetchPowerReading();
    if (m_apiClient == client) {
        handlePollResult(std::move(result));
    }
}

QCoro::Task<void> AppDelegate::synchronizeNotificationAuthorizationIfNeeded(bool requestAuthorization) {
    const auto self = shared_from_this();
    if (!m_settings.hasEnabledProductionNotifications()) {
        m_productionNotificationEvaluator.reset();
        co_return;
    }
    if (requestAuthorization) {
        co_await m_notificationService.requestAuthorizationIfNeeded();
    }
    if (!m_isTerminated) {
        updateStatusBar();
    }
}

void AppDelegate::handleProductionNotifications(const PowerReading& reading) {
    if (!m_settings.hasEnabledProductionNotifications()) {
        m_productionNotificationEvaluator.reset();
        return;
    }
    std::vector<ProductionNotificationEvent> events = m_productionNotificationEvaluator.evaluate(reading.kilowatts);
    std::erase_if(events, [this](ProductionNotificationEvent event) { return !isSwitchedOn(event); });
    if (events.empty()) {
        return;
    }
    startTask("notifications", [weak = weak_from_this(), events = std::move(events), kilowatts = reading.kilowatts] {
        const auto self = weak.lock();
        return self ? self->deliverNotifications(events, kilowatts) : completedTask();
    });
}

QCoro::Task<void> AppDelegate::deliverNotifications(std::vector<ProductionNotificationEvent> events, double kilowatts) {
    const auto self = shared_from_this();
    for (const ProductionNotificationEvent event : events) {
        co_await m_notificationService.deliver(event, kilowatts);
    }
}

bool AppDelegate::isSwitchedOn(ProductionNotificationEvent event) const {
    switch (event) {
    case ProductionNotificationEvent::productionStarted:
        return m_settings.notifyOnProductionStart;
    case ProductionNotificationEvent::productionEnded:
        return m_settings.notifyOnProductionEnd;
    case ProductionNotificationEvent::productionRiseAboveOneKilowatt:
        break;
    }
    return m_settings.notifyOnProductionRiseAboveOneKilowatt;
}

} // namespace Varnel
