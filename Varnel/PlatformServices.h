#pragma once

#include <VarnelNotifications/LocalNotificationService.h>
#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/SEMSEndpoints.h>
#include <VarnelSecurity/KeychainServices.h>
#include <VarnelSettings/LaunchAtLoginManager.h>
#include <VarnelSettings/UserDefaults.h>
#include <VarnelShared/AppSettings.h>
#include <VarnelShared/Clock.h>
#include <VarnelStatusMenu/StatusItem.h>

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace Varnel {

/// The system's light or dark appearance. A port.
class Appearance {
public:
    /// Keeps an observation alive; destroying it ends the observation.
    class Observation {
    public:
        Observation() = default;
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;
        virtual ~Observation() = default;
    };

    Appearance() = default;
    Appearance(const Appearance&) = delete;
    Appearance& operator=(const Appearance&) = delete;
    virtual ~Appearance() = default;

    virtual bool isDark() const = 0;

    /// Calls `onChange` after each change of `isDark`, as long as the observation lives.
    [[nodiscard]] virtual std::unique_ptr<Observation> observe(std::function<void()> onChange) = 0;
};

/// Whether the application has a place in the taskbar of its own.
enum class ActivationPolicy {
    regular,   ///< a taskbar entry exists at all times, and the windows have theirs
    accessory, ///< the status item only
};

/// What the desktop does with the application as a whole. A port.
class ApplicationShell {
public:
    ApplicationShell() = default;
    ApplicationShell(const ApplicationShell&) = delete;
    ApplicationShell& operator=(const ApplicationShell&) = delete;
    virtual ~ApplicationShell() = default;

    virtual ActivationPolicy activationPolicy() const = 0;

    /// False when the desktop offers no such thing; the policy then stays as it was.
    virtual bool setActivationPolicy(ActivationPolicy policy) = 0;

    /// Called when the user activates the taskbar entry of the application itself.
    virtual void setReopenHandler(std::function<void()> handler) = 0;

    /// The icon of the application's windows, read from an image file. Costs nothing while there is no window.
    virtual void setApplicationIcon(const QString& imagePath) = 0;

    /// Hides every window; the status item stays.
    virtual void hide() = 0;

    /// Ends the event loop; the application then shuts down in order.
    virtual void terminate() = 0;
};

/// What happens to the machine under the application. A port.
class SystemEvents {
public:
    SystemEvents() = default;
    SystemEvents(const SystemEvents&) = delete;
    SystemEvents& operator=(const SystemEvents&) = delete;
    virtual ~SystemEvents() = default;

    /// True also where nobody can tell.
    virtual bool isNetworkReachable() const = 0;

    /// Called when the network has become reachable after it was not, and when it has come to lead further.
    virtual void setNetworkReachableHandler(std::function<void()> handler) = 0;

    /// Called when the machine has woken from sleep. Never called where nothing announces it.
    virtual void setResumeHandler(std::function<void()> handler) = 0;
};

/// What is told to other programs of the session. Nothing in it is secret.
struct PublishedOutput {
    std::optional<double> powerKW;
    std::optional<double> todayOutputKWh;
    QString stationID; ///< empty: none yet
    std::optional<Timestamp> lastUpdatedAt;
    QString title;        ///< the text in the panel
    QString errorMessage; ///< the menu's line for problems; empty: none
    bool isConnected = false;
};

/// What the program knows of its own installation. Gathered once by the composition root.
struct BundleInfo {
    std::optional<QString> identifier; ///< none when the program does not run from an installed tree
    QString version;                   ///< "1.0.0", or "Development Build"
    QString resourcesPath;             ///< folder of the icon resources; empty when there is none

    /// The bundle identifier, also the desktop file's name and the name on the session bus.
    static constexpr char applicationIdentifier[] = "com.varnel.menubar";

    /// The icon resource that shows the wanted variant; empty when there is none. Under `automatic` the system's
    /// appearance decides. A missing variant falls back to the plain icon. PNG comes before ICNS, which not every
    /// installation can read.
    QString iconPath(IconAppearanceMode mode, bool isSystemDark) const;
};

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
    /// Called with the values of each update of the status item; empty: nobody is told.
    std::function<void(const PublishedOutput&)> publish = {};
};

} // namespace Varnel
