#include <Varnel/AppDelegate.h>
#include <Varnel/Linux/DesktopApplicationShell.h>
#include <Varnel/Linux/Installation.h>
#include <Varnel/Linux/LinuxSystemEvents.h>
#include <Varnel/Linux/PortalAppearance.h>
#include <Varnel/Linux/SingleInstance.h>

#include <VarnelNotifications/Linux/FreedesktopNotificationCenter.h>
#include <VarnelSEMS/Linux/NetworkHTTPSession.h>
#include <VarnelSEMS/Linux/SystemProxies.h>
#include <VarnelSecurity/Linux/DesktopKeychain.h>
#include <VarnelSecurity/Linux/FileKeychain.h>
#include <VarnelSecurity/Linux/SecretServiceKeychain.h>
#include <VarnelSettings/Linux/AutostartLoginItem.h>
#include <VarnelSettings/UserDefaults.h>
#include <VarnelShared/SystemTime.h>
#include <VarnelShared/TerminationSignals.h>
#include <VarnelStatusMenu/Linux/SessionStatusItem.h>
#include <VarnelStatusMenu/Menu/PopupPlacement.h>

#include <QApplication>
#include <QSessionManager>

#include <cstdlib>

// The composition root: the one place that knows every adapter.

namespace Varnel {
namespace {

void nameApplication() {
    QApplication::setApplicationName(QStringLiteral("Varnel"));
    QApplication::setApplicationDisplayName(QStringLiteral("Varnel"));
    QGuiApplication::setDesktopFileName(QString::fromLatin1(BundleInfo::applicationIdentifier));
    QApplication::setQuitOnLastWindowClosed(false);
}

/// A session that saves its programs would start a second one beside the autostart entry.
void stayOutOfSavedSessions(const QApplication& application) {
    QObject::connect(&application, &QGuiApplication::saveStateRequest, &application,
                     [](QSessionManager& manager) { manager.setRestartHint(QSessionManager::RestartNever); });
}

int run(SingleInstance& instance) {
    const Installation installation = findInstallation();
    const QString identifier = QString::fromLatin1(BundleInfo::applicationIdentifier);
    const SystemClock clock;
    SystemTimers timers(clock);
    UserDefaults userDefaults(installation.userDefaultsFile);
    SecretServiceKeychain secretService;
    FileKeychain passwordFile(installation.passwordFile);
    DesktopKeychain keychain(secretService, passwordFile);
    AutostartLoginItem loginItem(installation.autostartFolder, identifier, installation.executable);
    const auto notificationCenter = std::make_shared<FreedesktopNotificationCenter>(
        NotificationSender{QApplication::applicationDisplayName(), identifier, identifier});
    PortalAppearance appearance;
    DesktopApplicationShell shell;
    LinuxSystemEvents systemEvents;
    const bool isBundled = installation.bundle.identifier.has_value();
    auto statusItem = std::make_unique<SessionStatusItem>(identifier, timers);
    // Declared last of what the controller uses: requests in flight end before anything they would come back to.
    auto http = std::make_unique<NetworkHTTPSession>();

    const auto controller = std::make_shared<AppDelegate>(
        PlatformServices{clock, timers, *http, SEMSEndpoints(), userDefaults, keychain, loginItem,
                         [=] { return isBundled ? notificationCenter : nullptr; }, appearance, shell, systemEvents,
                         std::move(statusItem), installation.bundle, installation.applicationSupport});
    notificationCenter->setActivationHandler([&controller] { controller->showStatusWindow(); });
    const TerminationSignals signals([] { QApplication::quit(); });

    controller->applicationDidFinishLaunching();
    instance.setActivationHandler([&controller] { controller->bringPreferencesToFront(); });
    const int status = QApplication::exec();
    controller->applicationWillTerminate();
    http.reset();
    return status;
}

int launch(int argc, char** argv) {
    nameApplication();
    choosePlatform();
    QApplication application(argc, argv);
    stayOutOfSavedSessions(application);
    SingleInstance instance(QString::fromLatin1(BundleInfo::applicationIdentifier));
    if (instance.claim() == SingleInstance::Role::later) {
        return 0;
    }
    return run(instance);
}

} // namespace
} // namespace Varnel

int main(int argc, char** argv) {
    const int status = Varnel::launch(argc, argv);
    if (Varnel::SystemProxies::isLookingUp()) {
        std::_Exit(status); // the libraries' own destructors would wait for the lookup
    }
    return status;
}
