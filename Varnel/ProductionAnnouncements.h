#pragma once

#include <VarnelNotifications/LocalNotificationService.h>
#include <VarnelNotifications/ProductionNotificationEvaluator.h>
#include <VarnelPreferences/PreferencesHandlers.h>
#include <VarnelShared/AppSettings.h>

#include <functional>

namespace Varnel {

/// Announces the production events that successive readings bring, each only where its own switch is on. Held by a
/// `std::shared_ptr`: its tasks keep it alive.
class ProductionAnnouncements final : public std::enable_shared_from_this<ProductionAnnouncements> {
public:
    /// Told what stands between the switches and a notification, whenever it was asked for.
    std::function<void(NotificationPermission)> onPermission = [](NotificationPermission) {};

    /// `settings` are those of the moment of each call and must outlive the last one, but not its task. `isBundled`
    /// tells whether the program has a name to notify under.
    ProductionAnnouncements(const AppSettings& settings, LocalNotificationService::CenterLookup center, bool isBundled);

    /// Takes a reading in kW and starts to deliver what follows from it. Resets the evaluator where no switch is on.
    void handleProductionNotifications(double kilowatts);

    /// Forgets every reading. No event follows from that.
    void reset() { m_evaluator.reset(); }

    /// Asks for the permission to notify where a switch is on; resets the evaluator where none is.
    QCoro::Task<void> synchronizeNotificationAuthorizationIfNeeded(bool requestAuthorization);

    /// Asks what stands between the switches and a notification, and hands it to `onPermission`.
    void checkPermission();

    /// Asks for the permission to notify first.
    void requestPermission();

private:
    QCoro::Task<void> requestAndCheckPermission();
    QCoro::Task<void> tellPermission();
    QCoro::Task<NotificationPermission> permission();
    bool isSwitchedOn(ProductionNotificationEvent event) const;
    QCoro::Task<void> deliver(std::vector<ProductionNotificationEvent> events, double kilowatts);

    const AppSettings& m_settings;
    bool m_isBundled;
    LocalNotificationService m_service;
    ProductionNotificationEvaluator m_evaluator{1, 1.0};
};

} // namespace Varnel
