#include <Varnel/ProductionAnnouncements.h>

#include <VarnelShared/Task.h>

#include <utility>

namespace Varnel {

ProductionAnnouncements::ProductionAnnouncements(const AppSettings& settings,
                                                 LocalNotificationService::CenterLookup center, bool isBundled)
    : m_settings(settings)
    , m_isBundled(isBundled)
    , m_service(nullptr, std::move(center)) {}

void ProductionAnnouncements::handleProductionNotifications(double kilowatts) {
    if (!m_settings.hasEnabledProductionNotifications()) {
        reset();
        return;
    }
    std::vector<ProductionNotificationEvent> events = m_evaluator.evaluate(kilowatts);
    std::erase_if(events, [this](ProductionNotificationEvent event) { return !isSwitchedOn(event); });
    if (!events.empty()) {
        startTask("notifications",
                  ifAlive(weak_from_this(), &ProductionAnnouncements::deliver, std::move(events), kilowatts));
    }
}

bool ProductionAnnouncements::isSwitchedOn(ProductionNotificationEvent event) const {
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

QCoro::Task<void> ProductionAnnouncements::deliver(std::vector<ProductionNotificationEvent> events, double kilowatts) {
    const auto self = shared_from_this();
    for (const ProductionNotificationEvent event : events) {
        co_await m_service.deliver(event, kilowatts);
    }
}

QCoro::Task<void> ProductionAnnouncements::synchronizeNotificationAuthorizationIfNeeded(bool requestAuthorization) {
    const auto self = shared_from_this();
    if (!m_settings.hasEnabledProductionNotifications()) {
        reset();
    } else if (requestAuthorization) {
        co_await m_service.requestAuthorizationIfNeeded();
    }
}

void ProductionAnnouncements::checkPermission() {
    startTask("notification permission", ifAlive(weak_from_this(), &ProductionAnnouncements::tellPermission));
}

void ProductionAnnouncements::requestPermission() {
    startTask("notification permission",
              ifAlive(weak_from_this(), &ProductionAnnouncements::requestAndCheckPermission));
}

QCoro::Task<void> ProductionAnnouncements::requestAndCheckPermission() {
    const auto self = shared_from_this();
    co_await synchronizeNotificationAuthorizationIfNeeded(true);
    co_await tellPermission();
}

QCoro::Task<void> ProductionAnnouncements::tellPermission() {
    const auto self = shared_from_this();
    const NotificationPermission known = co_await permission();
    onPermission(known);
}

QCoro::Task<NotificationPermission> ProductionAnnouncements::permission() {
    const auto self = shared_from_this();
    switch (co_await m_service.authorizationStatus()) {
    case NotificationAuthorizationState::notDetermined:
        // A bundled program that may not notify and was not refused has nobody to ask: no service is there.
        co_return m_isBundled ? NotificationPermission::noService : NotificationPermission::notInstalled;
    case NotificationAuthorizationState::denied:
        co_return NotificationPermission::denied;
    case NotificationAuthorizationState::authorized:
        break;
    }
    co_return NotificationPermission::authorized;
}

} // namespace Varnel
