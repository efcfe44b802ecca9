#include <VarnelNotifications/LocalNotificationService.h>

#include <VarnelShared/Text.h>

#include <QCoreApplication>
#include <QUuid>

#include <utility>

namespace Varnel {

namespace {

using Center = LocalNotificationService::Center;

NotificationAuthorizationState stateOf(NotificationAuthorizationStatus status) {
    switch (status) {
    case NotificationAuthorizationStatus::notDetermined:
        return NotificationAuthorizationState::notDetermined;
    case NotificationAuthorizationStatus::denied:
        return NotificationAuthorizationState::denied;
    case NotificationAuthorizationStatus::authorized:
    case NotificationAuthorizationStatus::provisional:
    case NotificationAuthorizationStatus::ephemeral:
        return NotificationAuthorizationState::authorized;
    }
    return NotificationAuthorizationState::denied; // a status that a later platform may add
}

// The coroutines own their centre and touch nothing of the service, which may be gone when they resume.

QCoro::Task<NotificationAuthorizationState> stateOfCenter(Center center) {
    if (!center) {
        co_return NotificationAuthorizationState::notDetermined;
    }
    const NotificationAuthorizationStatus status = co_await center->authorizationStatus();
    co_return stateOf(status);
}

QCoro::Task<NotificationAuthorizationState> requestFromCenter(Center center) {
    const NotificationAuthorizationState state = co_await stateOfCenter(center);
    if (!center || state != NotificationAuthorizationState::notDetermined) {
        co_return state;
    }
    constexpr NotificationAuthorizationOptions options = NotificationAuthorizationOption::alert |
                                                         NotificationAuthorizationOption::sound |
                                                         NotificationAuthorizationOption::badge;
    // The answer is not used: the centre is asked afresh.
    [[maybe_unused]] const Result<bool> granted = co_await center->requestAuthorization(options);
    co_return co_await stateOfCenter(center);
}

QCoro::Task<void> addToCenter(Center center, NotificationRequest request) {
    const NotificationAuthorizationState state = co_await stateOfCenter(center);
    if (state == NotificationAuthorizationState::authorized) {
        [[maybe_unused]] const Result<void> added = co_await center->add(std::move(request));
    }
}

struct NotificationText {
    const char* identifierWord;
    const char* title;
    const char* body; ///< %1 is the power
};

/// The texts are fixed: they do not follow the evaluator's threshold and count.
NotificationText textOf(ProductionNotificationEvent event) {
    switch (event) {
    case ProductionNotificationEvent::productionStarted:
        return {"started", QT_TRANSLATE_NOOP("Notifications", "Production Started"),
                QT_TRANSLATE_NOOP("Notifications", "Current output is %1.")};
    case ProductionNotificationEvent::productionEnded:
        return {"ended", QT_TRANSLATE_NOOP("Notifications", "Production Ended"),
                QT_TRANSLATE_NOOP("Notifications", "Current output stayed below 0 W for 2 consecutive checks.")};
    case ProductionNotificationEvent::productionRiseAboveOneKilowatt:
        return {"rise", QT_TRANSLATE_NOOP("Notifications", "Production Above 1.00 kW"),
                QT_TRANSLATE_NOOP("Notifications", "Current output reached %1.")};
    }
    Q_UNREACHABLE();
}

} // namespace

LocalNotificationService::LocalNotificationService(Center center, CenterLookup lookup, const QLocale& locale)
    : m_injectedCenter(std::move(center))
    , m_lookup(std::move(lookup))
    , m_locale(locale) {}

QCoro::Task<NotificationAuthorizationState> LocalNotificationService::authorizationStatus() {
    return stateOfCenter(resolveCenterIfAvailable());
}

QCoro::Task<NotificationAuthorizationState> LocalNotificationService::requestAuthorizationIfNeeded() {
    return requestFromCenter(resolveCenterIfAvailable());
}

QCoro::Task<void> LocalNotificationService::deliver(ProductionNotificationEvent event, double currentPowerKilowatts) {
    return addToCenter(resolveCenterIfAvailable(), request(event, currentPowerKilowatts));
}

LocalNotificationService::Center LocalNotificationService::resolveCenterIfAvailable() {
    if (m_injectedCenter) {
        return m_injectedCenter;
    }
    if (const CenterLookup lookup = std::exchange(m_lookup, {})) {
        m_cachedCenter = lookup();
    }
    return m_cachedCenter;
}

NotificationRequest LocalNotificationService::request(ProductionNotificationEvent event, double kilowatts) const {
    const NotificationText text = textOf(event);
    return {
        QStringLiteral("varnel.%1.%2")
            .arg(QLatin1String(text.identifierWord), QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()),
        QCoreApplication::translate("Notifications", text.title),
        QCoreApplication::translate("Notifications", text.body).replace(QStringLiteral("%1"), formatPower(kilowatts))};
}

QString LocalNotificationService::formatPower(double kilowatts) const {
    return kilowattsText(kilowatts, m_locale);
}

} // namespace Varnel
