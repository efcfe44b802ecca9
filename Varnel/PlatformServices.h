#pragma once

#include <Varnel/Appearance.h>
#include <Varnel/ApplicationShell.h>
#include <Varnel/BundleInfo.h>
#include <Varnel/SystemEvents.h>

#include <VarnelNotifications/LocalNotificationService.h>
#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/SEMSEndpoints.h>
#include <VarnelSecurity/KeychainServices.h>
#include <VarnelSettings/LaunchAtLoginManager.h>
#include <VarnelSettings/UserDefaults.h>
#include <VarnelShared/Clock.h>
#include <VarnelStatusMenu/StatusItem.h>

#include <QString>

#include <memory>

namespace Varnel {

/// Everything the controller needs of the place it runs in. What is referred to must outlive the controller; the HTTP
/// session alone may end first, which ends the requests in flight.
struct PlatformServices {
    const Clock& clock;
    TimerFactory& timers;
    HTTPSession& http;
    SEMSEndpoints endpoints;
    UserDefaults& userDefaults;
    KeychainServices& keychainServices;
    LoginItem& loginItem;
    LocalNotificationService::CenterLookup notificationCenter; ///< gives null when the program is not bundled
    Appearance& appearance;
    ApplicationShell& shell;
    SystemEvents& systemEvents;
    std::unique_ptr<StatusItem> statusItem;
    BundleInfo bundle;
    QString applicationSupportFolder;
};

} // namespace Varnel
