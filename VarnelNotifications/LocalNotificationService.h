#pragma once

#include <VarnelNotifications/NotificationCenter.h>
#include <VarnelNotifications/ProductionNotificationEvaluator.h>

#include <QLocale>

#include <memory>

namespace Varnel {

/// Whether the user lets the program show notifications.
enum class NotificationAuthorizationState { notDetermined, denied, authorized };

/// Shows one notification per production event. Without a centre, and without permission, it does nothing; no operation
/// reports an error. It may be destroyed while one of its tasks is under way.
class LocalNotificationService {
public:
    using Center = std::shared_ptr<NotificationCenter>;

    /// Finds the platform's centre; null where there is none, as for a program that is not bundled.
    using CenterLookup = std::function<Center()>;

    /// `center` is always used when there is one. Otherwise `lookup`, which may be empty, is called on the first use,
    /// and never again. Numbers are written as in `locale`.
    explicit LocalNotificationService(Center center, CenterLookup lookup = {},
                                      const QLocale& locale = QLocale::system());

    QCoro::Task<NotificationAuthorizationState> authorizationStatus();

    /// Asks for permission to show alerts, sounds and badges if that is not determined yet; gives the state afterwards.
    QCoro::Task<NotificationAuthorizationState> requestAuthorizationIfNeeded();

    QCoro::Task<void> deliver(ProductionNotificationEvent event, double currentPowerKilowatts);

private:
    Center resolveCenterIfAvailable();
    NotificationRequest request(ProductionNotificationEvent event, double kilowatts) const;
    QString formatPower(double kilowatts) const;

    Center m_injectedCenter;
    Center m_cachedCenter;
    CenterLookup m_lookup; ///< empty once it was called
    QLocale m_locale;
};

} // namespace Varnel
