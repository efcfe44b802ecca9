#include <Varnel/AppDelegate.h>
#include <Varnel/Linux/Catalogue.h>
#include <Varnel/Linux/DesktopApplicationShell.h>
#include <Varnel/Linux/Installation.h>
#include <Varnel/Linux/LinuxSystemEvents.h>
#include <Varnel/Linux/OutputBusObject.h>
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

#include <sys/resource.h>

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

/// The actions of the desktop entry.
bool act(AppDelegate& controller, const QString& action) {
    if (action == QLatin1String("show-output")) {
        controller.showStatusWindow();
    } else if (action == QLatin1String("quit")) {
        QApplication::quit();
    } else {
        return false;
    }
    return true;
}

void obey(AppDelegate& controller, OutputBusObject::Command command) {
    switch (command) {
    case OutputBusObject::Command::refresh:
        controller.refresh();
        break;
    case OutputBusObject::Command::showOutput:
        controller.showStatusWindow();
        break;
    case OutputBusObject::Command::showSettings:
        controller.bringPreferencesToFront();
        break;
    }
}

int run(SingleInstance& instance, OutputBusObject& busObject) {
    const Installation installation = findInstallation();
    loadCatalogue(installation.bundle.resourcesPath + QStringLiteral("/translations"));
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
                         std::move(statusItem), installation.bundle, installation.applicationSupport,
                         [&busObject](const PublishedOutput& output) { busObject.publish(output); }});
    notificationCenter->setActivationHandler([&controller] { controller->showStatusWindow(); });
    const TerminationSignals signals([] { QApplication::quit(); });

    controller->applicationDidFinishLaunching();
    instance.setActivationHandler([&controller] { controller->bringPreferencesToFront(); });
    instance.setActionHandler([&controller](const QString& action) { return act(*controller, action); });
    busObject.setCommandHandler([&controller](OutputBusObject::Command command) { obey(*controller, command); });
    const int status = QApplication::exec();
    controller->applicationWillTerminate();
    http.reset();
    secretService.endPatientCalls();
    return status;
}

int launch(int argc, char** argv) {
    nameApplication();
    choosePlatform();
    QApplication application(argc, argv);
    stayOutOfSavedSessions(application);
    // Before the name is taken: whoever sees the name can call the object.
    OutputBusObject busObject(QDBusConnection::sessionBus());
    SingleInstance instance(QString::fromLatin1(BundleInfo::applicationIdentifier));
    if (instance.claim() == SingleInstance::Role::later) {
        return 0;
    }
    return run(instance, busObject);
}

/// A core dump would hold the password and the session, and whoever collects dumps would get them. The process stays
/// readable for its own user, as the desktop's portal needs it to know who asks.
void leaveNoCoreDump() {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

} // namespace
} // namespace Varnel

int main(int argc, char** argv) {
    Varnel::leaveNoCoreDump();
    const int status = Varnel::launch(argc, argv);
    if (Varnel::SystemProxies::isLookingUp()) {
        std::_Exit(status); // the libraries' own destructors would wait for the lookup
    }
    return status;
}
