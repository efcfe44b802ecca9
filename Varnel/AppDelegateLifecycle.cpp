#include <Varnel/AppDelegate.h>

#include <Varnel/ApplicationMenu.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>
#include <VarnelShared/Text.h>

#include <QMenu>

#include <utility>

namespace Varnel {

namespace {
constexpr char keychainService[] = "com.varnel.menubar";
constexpr char unbundledHistoryFolder[] = "Varnel";
constexpr int historyRetentionDays = 30;
constexpr Seconds longestWaitForNetworkAfterSleep(15);
} // namespace

AppDelegate::AppDelegate(PlatformServices platform)
    : m_platform(std::move(platform))
    , m_settingsStore(m_platform.userDefaults)
    , m_keychain(QString::fromLatin1(keychainService), m_platform.keychainServices)
    , m_statusBarController(std::move(m_platform.statusItem))
    , m_launchAtLoginManager(m_platform.loginItem, m_platform.bundle.identifier)
    , m_notificationService(nullptr, m_platform.notificationCenter)
    , m_productionNotificationEvaluator(1, 1.0)
    , m_outputHistoryStore(m_platform.applicationSupportFolder,
                           m_platform.bundle.identifier.value_or(QString::fromLatin1(unbundledHistoryFolder)),
                           historyRetentionDays) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    m_settings = m_settingsStore.load();
    configureApplicationMenu();
    observeAppearanceChanges();
    clampStoredInterval();
    applyDockIconPreference();
    applyApplicationIconIfAvailable();
    applyLaunchAtLoginPreference(LaunchAtLoginRequest::start);
    wireMenuActions();
    observeSystemEvents();
    restoreOutputHistoryIfAvailable();
    updateStatusBar();
    startBootstrapTask(BootstrapMode::openPreferencesIfNeeded);
}

void AppDelegate::applicationWillTerminate() {
    m_preferencesCoordinator.close(); // hands on an edit that is still pending, which may restart polling
    persistOutputHistory();
    m_isTerminated = true;
    dropPollingService();
    m_appearanceObservation.reset();
    m_midnightTimer.reset();
    m_catchUpTimer.reset();
}

void AppDelegate::clampStoredInterval() {
    const std::int64_t clamped = m_settings.clampedPollInterval();
    if (std::exchange(m_settings.pollIntervalSeconds, clamped) != clamped) {
        m_settingsStore.save(m_settings);
    }
}

void AppDelegate::startBootstrapTask(BootstrapMode mode) {
    startTask("bootstrap", [weak = weak_from_this(), mode] {
        const auto self = weak.lock();
        return self ? self->bootstrapIn(mode) : completedTask();
    });
}

QCoro::Task<void> AppDelegate::bootstrap() {
    return bootstrapIn(BootstrapMode::openPreferencesIfNeeded);
}

QCoro::Task<void> AppDelegate::bootstrapIn(BootstrapMode mode) {
    const auto self = shared_from_this();
    if (!m_settings.hasEnabledProductionNotifications()) {
        m_productionNotificationEvaluator.reset();
    }
    const bool isSilent = mode == BootstrapMode::silent;
    if (isSilent && m_isSignedOutByUser) {
        co_return; // the password may still be there: a locked keyring deletes nothing
    }
    const int save = m_latestSave;
    // A repeated attempt asks for nothing: the prompt to unlock belongs to the start and to the preferences.
    if (!trimmedAccount().isEmpty() && !isSilent) {
        co_await m_keychain.unlock(keychainAccount(), KeychainAccess::reading);
    }
    if (m_isTerminated || m_semsSession || m_isSigningIn || save != m_latestSave) {
        co_return; // the user has connected, or is about to, while the keyring asked
    }
    const std::optional<QString> password = storedPassword();
    if (trimmedAccount().isEmpty() || !password) {
        if (!isSilent && !m_preferencesCoordinator.window()) {
            showPreferencesWindow(PreferencesInitialTab::account);
        }
        co_return;
    }
    m_cachedPassword = password;
    co_await authenticateAndStartPolling(*password);
}

void AppDelegate::observeSystemEvents() {
    m_platform.systemEvents.setResumeHandler([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->onResume();
        }
    });
    m_platform.systemEvents.setNetworkReachableHandler([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->onNetworkReachable();
        }
    });
}

void AppDelegate::onResume() {
    qCInfo(lcApp, "The machine has woken from sleep");
    updateStatusBar();
    if (m_platform.systemEvents.isNetworkReachable()) {
        catchUpAfterSleep();
        return;
    }
    m_catchUpTimer = m_platform.timers.schedule(longestWaitForNetworkAfterSleep, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->catchUpAfterSleep();
        }
    });
}

void AppDelegate::onNetworkReachable() {
    qCInfo(lcApp, "The network is reachable");
    catchUpAfterSleep();
}

void AppDelegate::catchUpAfterSleep() {
    if (m_isTerminated) {
        return;
    }
    m_catchUpTimer.reset();
    m_platform.timers.fireOverdue();
    if (m_isSigningIn) {
        m_bootstrapAgain = true;
    } else if (!m_semsSession) {
        startBootstrapTask(BootstrapMode::silent);
    }
}

void AppDelegate::scheduleMidnightUpdate(Timestamp now) {
    const std::optional<Timestamp> midnight = Calendar::startOfNextDay(now);
    if (!midnight) {
        return;
    }
    // Anew each time, also for the same midnight: the clock may have been set since.
    m_midnightTimer = m_platform.timers.schedule(*midnight - now, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->updateStatusBar();
        }
    });
}

} // namespace Varnel
