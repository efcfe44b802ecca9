#include <Varnel/AppDelegate.h>

#include <Varnel/ApplicationDialogs.h>
#include <Varnel/ApplicationMenu.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>

#include <utility>

namespace Varnel {

namespace {
OutputHistoryStore historyStore(const PlatformServices& platform) {
    return {platform.applicationSupportFolder, platform.bundle.identifier.value_or(QStringLiteral("Varnel"))};
}

PublishedOutput published(const StatusValues& values, const AppSettings& settings, const QString& title) {
    return {values.powerKW,
            values.todayOutputKWh,
            settings.preferredStationID().value_or(QString()),
            values.lastUpdatedAt,
            title,
            values.errorMessage.value_or(QString()),
            values.isConnected};
}
} // namespace

AppDelegate::AppDelegate(PlatformServices platform)
    : m_platform(std::move(platform))
    , m_settingsStore(m_platform.userDefaults)
    , m_storedPassword(std::make_shared<StoredPassword>(m_platform.keychainServices))
    , m_connection(m_platform.http, m_platform.clock, m_platform.endpoints)
    , m_todayOutput(historyStore(m_platform), m_platform.clock)
    , m_statusBarController(std::move(m_platform.statusItem))
    , m_preferencesCoordinator(m_settings, m_settingsStore, m_platform)
    , m_outputWindowSource(
          {m_platform.clock, m_settings, m_values, m_todayOutput, m_connection, m_platform.userDefaults})
    , m_announcements(std::make_shared<ProductionAnnouncements>(m_settings, m_platform.notificationCenter,
                                                                m_platform.bundle.identifier.has_value())) {}

void AppDelegate::applicationDidFinishLaunching() {
    qCInfo(lcApp, "Varnel %s", qUtf8Printable(m_platform.bundle.version));
    m_settings = m_settingsStore.load();
    wireMenuActions();
    const std::weak_ptr<AppDelegate> weak = weak_from_this();
    m_storedPassword->onNotice = ifAlive(weak, [](AppDelegate& self, AccountNotice notice, bool isShown) {
        self.m_preferencesCoordinator.setNotice(notice, isShown);
    });
    m_announcements->onPermission = ifAlive(weak, [](AppDelegate& self, NotificationPermission permission) {
        self.m_preferencesCoordinator.showPermission(permission);
    });
    m_appearanceObservation = m_platform.appearance.observe(ifAlive(
        weak_from_this(), [](AppDelegate& self) { self.m_preferencesCoordinator.applyApplicationIconIfAvailable(); }));
    if (m_settings.pollIntervalSeconds != m_settings.clampedPollInterval()) {
        m_settings.pollIntervalSeconds = m_settings.clampedPollInterval();
        m_preferencesCoordinator.storeSettings();
    }
    m_preferencesCoordinator.applyDockIconPreference();
    m_preferencesCoordinator.applyApplicationIconIfAvailable();
    m_preferencesCoordinator.applyLaunchAtLoginPreference(PreferencesCoordinator::LaunchAtLoginRequest::start);
    m_wakeUps = std::make_unique<WakeUps>(m_platform.systemEvents, m_platform.timers,
                                          ifAlive(weak_from_this(), &AppDelegate::updateStatusBar),
                                          ifAlive(weak_from_this(), &AppDelegate::catchUp));
    m_todayOutput.setOwner(m_settings.account, m_settings.stationID);
    m_todayOutput.restore();
    updateStatusBar();
    startTask("bootstrap", ifAlive(weak_from_this(), &AppDelegate::bootstrap, BootstrapMode::openPreferencesIfNeeded));
}

void AppDelegate::applicationWillTerminate() {
    m_preferencesCoordinator.close(); // hands on an edit that is still pending, which may restart polling
    m_preferencesCoordinator.storeAgainIfFailed();
    m_todayOutput.persist();
    dropPollingService();
    m_connection.close();
    m_appearanceObservation.reset();
    m_updateTimer.reset();
    m_wakeUps.reset();
    m_retryTimer.reset();
}

void AppDelegate::wireMenuActions() {
    const std::weak_ptr<AppDelegate> weak = weak_from_this();
    m_statusBarController.onOpenPreferences =
        ifAlive(weak, &AppDelegate::showPreferencesWindow, PreferencesInitialTab::general);
    m_statusBarController.onSignIn = ifAlive(weak, &AppDelegate::showPreferencesWindow, PreferencesInitialTab::account);
    m_statusBarController.onRefresh = ifAlive(weak, &AppDelegate::refresh);
    m_statusBarController.onSignOut = ifAlive(weak, &AppDelegate::signOut, true);
    m_statusBarController.setOutputSource(m_outputWindowSource.sharedWith(shared_from_this()));
    m_platform.shell.setReopenHandler(ifAlive(weak, &AppDelegate::bringPreferencesToFront));
    m_applicationMenu = makeApplicationMenu({
        {ApplicationCommand::about, ifAlive(weak,
                                            [](AppDelegate& self) {
                                                ApplicationDialogs::showAboutPanel(self.m_platform.bundle,
                                                                                   self.m_platform.appearance);
                                            })},
        {ApplicationCommand::settings,
         ifAlive(weak, &AppDelegate::showPreferencesWindow, PreferencesInitialTab::general)},
        {ApplicationCommand::checkForUpdates, ApplicationDialogs::showNoUpdatesAlert},
        {ApplicationCommand::hide, [&shell = m_platform.shell] { shell.hide(); }},
        {ApplicationCommand::quit, [&shell = m_platform.shell] { shell.terminate(); }},
    });
}

void AppDelegate::catchUp() {
    if (m_connection.isClosed()) {
        return;
    }
    if (m_connection.isUnderWay()) {
        m_connection.repeatIfFailing();
    } else if (!m_connection.isConnected()) {
        m_retryTimer.reset();
        startTask("bootstrap", ifAlive(weak_from_this(), &AppDelegate::bootstrap, BootstrapMode::silent));
    } else if (m_pollingService) {
        m_pollingService->repeatIfFailing();
    }
}

void AppDelegate::rollOver(Timestamp instant) {
    m_todayOutput.rollOver(instant);
    if (!m_values.lastUpdatedAt || Calendar::isSameDay(*m_values.lastUpdatedAt, instant)) {
        return;
    }
    m_values.todayOutputKWh.reset();
    // Each day has its own start and rise, also after one whose evening nobody has seen.
    m_announcements->reset();
    if (m_values.powerKW && *m_values.powerKW <= 0) {
        m_announcements->handleProductionNotifications(*m_values.powerKW);
    }
}

void AppDelegate::updateStatusBar() {
    if (m_connection.isClosed()) {
        return;
    }
    const Timestamp now = m_platform.clock.now();
    rollOver(now);
    m_values.isConnected = m_connection.isConnected();
    m_statusBarController.update(
        m_statusPresentationBuilder.build(m_values, m_todayOutput.visible(now), m_settings, now));
    if (m_platform.publish) {
        m_platform.publish(published(m_values, m_settings, presentation().title));
    }
    m_preferencesCoordinator.updateConnectionState(m_connection, m_values.errorMessage);
    if (const std::optional<Timestamp> next = StatusPresentationBuilder::nextChange(m_values, m_settings, now)) {
        // Anew each time, also for the same instant: the clock may have been set since.
        m_updateTimer =
            m_platform.timers.schedule(*next - now, ifAlive(weak_from_this(), &AppDelegate::updateStatusBar));
    }
}

void AppDelegate::refresh() {
    startTask("refresh", ifAlive(weak_from_this(), &AppDelegate::refreshNow));
}

void AppDelegate::showStatusWindow() {
    m_statusBarController.showWindow();
}

} // namespace Varnel
