#pragma once

#include <Varnel/PlatformServices.h>
#include <Varnel/PreferencesCoordinator.h>
#include <Varnel/StatusPresentationBuilder.h>
#include <Varnel/TodayOutputSamples.h>

#include <VarnelAppSupport/OutputHistoryStore.h>
#include <VarnelNotifications/LocalNotificationService.h>
#include <VarnelNotifications/ProductionNotificationEvaluator.h>
#include <VarnelPolling/PowerPollingService.h>
#include <VarnelSEMS/SEMSAPIClient.h>
#include <VarnelSecurity/KeychainStore.h>
#include <VarnelSettings/AppSettingsStore.h>
#include <VarnelSettings/LaunchAtLoginManager.h>
#include <VarnelShared/AppSettings.h>
#include <VarnelStatusMenu/StatusBarController.h>

#include <memory>
#include <optional>

class QMenu;

namespace Varnel {

enum class ApplicationCommand;

/// The application's controller: owns every service for the life of the process, keeps the last known values, and
/// joins the modules. A session being present means "connected"; `lastErrorMessage` is the one line for problems.
///
/// Main thread only, held by a `std::shared_ptr`. Its coroutines keep it alive until their request has ended; timers,
/// handlers and queued tasks hold it weakly. Where other work can run in between (every await of a request), a
/// continuation first checks that what it belongs to is still current: a sign-in that a later one has overtaken, a poll
/// of a service that was dropped and a reading of a connection that was replaced all end without a trace.
class AppDelegate final : public std::enable_shared_from_this<AppDelegate> {
public:
    explicit AppDelegate(PlatformServices platform);
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// The start-up sequence. Waits for neither the network nor the keyring.
    void applicationDidFinishLaunching();

    /// Saves today's samples, stops polling, ends the observation. What completes later does nothing any more.
    void applicationWillTerminate();

    /// Signs in with the stored account and password, or opens the preferences on the Account pane where one is
    /// missing.
    QCoro::Task<void> bootstrap();

    /// Signs in with the settings' account and this password; polls on success, shows the reason otherwise.
    QCoro::Task<void> authenticateAndStartPolling(QString password);

    /// Replaces the polling service by one with the interval of the settings; its first poll follows 0.1 s later.
    void startPolling();

    /// One fetch for the polling service. A session that the service rejects is renewed once, without a message.
    QCoro::Task<Result<PowerReading>> fetchPowerReading();

    /// Takes the outcome of one poll.
    void handlePollResult(Result<PowerReading> result);

    QCoro::Task<void> refreshNow();
    QCoro::Task<void> refreshSystemSizeIfPossible();

    /// Forgets the connection, the values and the stored history; with `clearStoredPassword` the account's password
    /// too. The settings stay.
    void signOut(bool clearStoredPassword);

    /// Asks for the permission to notify where a notification is switched on; resets the evaluator where none is.
    QCoro::Task<void> synchronizeNotificationAuthorizationIfNeeded(bool requestAuthorization);
    void handleProductionNotifications(const PowerReading& reading);

    void restoreOutputHistoryIfAvailable();
    void persistOutputHistory();
    void recordOutputSample(double kilowatts, Timestamp at);

    /// Builds what the status item shows from the values of this moment and hands it over.
    void updateStatusBar();

    /// Opens the preferences anew; what was typed into an open window's Account pane and not saved goes.
    void showPreferencesWindow(PreferencesInitialTab initialTab);

    /// Shows an open preferences window as it is, or opens one. For a second start and the taskbar.
    void bringPreferencesToFront();

    /// The explicit save of the Account pane; true when a session exists afterwards.
    QCoro::Task<bool> applyPreferences(PreferencesDraft draft);

    /// The automatic save of the other panes; account, password, base URL and station of the draft are ignored.
    void applyAutoSavedPreferences(const PreferencesDraft& draft);

    /// Shows the menu's content in a window, as a click on a notification asks for.
    void showStatusWindow();

    const AppSettings& settings() const { return m_settings; }
    const std::optional<SEMSSession>& semsSession() const { return m_semsSession; }
    bool isPolling() const { return m_pollingService != nullptr; }
    std::optional<double> latestPowerKW() const { return m_latestPowerKW; }
    std::optional<double> latestTodayOutputKWh() const { return m_latestTodayOutputKWh; }
    std::optional<double> systemSizeKW() const { return m_systemSizeKW; }
    const std::optional<QString>& lastErrorMessage() const { return m_lastErrorMessage; }
    const std::optional<Timestamp>& outputSamplesDayStart() const { return m_todayOutputSamples.dayStart(); }
    const std::vector<OutputSample>& todayOutputSamples() const { return m_todayOutputSamples.samples(); }
    const StatusPresentation& presentation() const { return m_statusBarController.presentation(); }
    PreferencesCoordinator& preferencesCoordinator() { return m_preferencesCoordinator; }
    QMenu& applicationMenu() { return *m_applicationMenu; }

private:
    /// Names one connection: the client it was made with and the account it belongs to.
    using Client = std::shared_ptr<SEMSAPIClient>;
    enum class BootstrapMode { openPreferencesIfNeeded, silent };
    /// Who asks: the start, which only adds a missing entry and logs a failure, or a save of the user's.
    enum class LaunchAtLoginRequest { start, save };

    // Lifecycle
    void clampStoredInterval();
    void startBootstrapTask(BootstrapMode mode);
    QCoro::Task<void> bootstrapIn(BootstrapMode mode);
    void observeSystemEvents();
    void onResume();
    void onNetworkReachable();
    void catchUpAfterSleep();
    void scheduleMidnightUpdate(Timestamp now);

    // Connection
    QString trimmedAccount() const;
    /// Under which the account's password is kept; spellings of one account that differ only in case share it.
    QString keychainAccount() const;
    std::optional<QString> trimmedStationID() const;
    std::optional<QString> storedPassword();
    QCoro::Task<void> signIn(Client client, QString account, QString password);
    /// False when a later attempt has begun, the account has changed or the program ends: the attempt is then over.
    bool isCurrentSignIn(int attempt, const QString& account);
    void failSignIn(const Error& error);
    void rejectSignIn(const QString& message);
    void storePassword(const QString& password);
    QCoro::Task<Result<void>> settleStationAndSize(Client client, SEMSSession session);
    void adoptStation(const QString& stationID);
    void dropPollingService();
    void dropConnection();
    /// Nothing of one account is shown, polled for or announced under another.
    void forgetAccount();
    /// Nor anything of one station under another.
    void forgetReadings();

    // Polling
    QCoro::Task<Result<PowerReading>> fetchThroughSession(Client client, QString account, QString password);
    QCoro::Task<Result<SEMSSession>> renewSession(Client client, QString account, QString password);
    void takeReading(const PowerReading& reading);
    QCoro::Task<void> deliverNotifications(std::vector<ProductionNotificationEvent> events, double kilowatts);
    bool isSwitchedOn(ProductionNotificationEvent event) const;

    // Presentation
    void addValues(StatusPresentation& presentation) const;
    void addChart(StatusPresentation& presentation, Timestamp now) const;

    // Preferences and menus
    void wireMenuActions();
    void configureApplicationMenu();
    void handleApplicationCommand(ApplicationCommand command);
    void showConnectionState();
    PreferencesDraft currentDraft();
    PreferencesHandlers preferencesHandlers();
    void takeAccountSettings(const PreferencesDraft& draft);
    void showNotificationAuthorization();
    QCoro::Task<void> showNotificationAuthorizationTask();
    QCoro::Task<void> askForNotificationPermission();
    void showAboutPanel();

    // Desktop
    void observeAppearanceChanges();
    void applyDockIconPreference();
    void applyApplicationIconIfAvailable();
    void applyLaunchAtLoginPreference(LaunchAtLoginRequest request);

    PlatformServices m_platform;
    AppSettingsStore m_settingsStore;
    KeychainStore m_keychain;
    StatusBarController m_statusBarController;
    StatusPresentationBuilder m_statusPresentationBuilder;
    PreferencesCoordinator m_preferencesCoordinator;
    LaunchAtLoginManager m_launchAtLoginManager;
    LocalNotificationService m_notificationService;
    ProductionNotificationEvaluator m_productionNotificationEvaluator;
    OutputHistoryStore m_outputHistoryStore;
    AppSettings m_settings;

    Client m_apiClient;
    std::optional<SEMSSession> m_semsSession;
    std::shared_ptr<PowerPollingService> m_pollingService;
    std::unique_ptr<Appearance::Observation> m_appearanceObservation;
    std::optional<QString> m_cachedPassword;
    std::optional<double> m_latestPowerKW;
    std::optional<double> m_latestTodayOutputKWh;
    std::optional<double> m_systemSizeKW;
    std::optional<Timestamp> m_lastUpdatedAt;
    std::optional<QString> m_lastErrorMessage;
    TodayOutputSamples m_todayOutputSamples;

    std::unique_ptr<QMenu> m_applicationMenu;
    std::unique_ptr<OneShotTimer> m_midnightTimer;
    std::unique_ptr<OneShotTimer> m_catchUpTimer; ///< set while a wake-up waits for the network
    int m_latestSave = 0;                         ///< the number of the newest explicit save
    int m_latestSignIn = 0;                       ///< the number of the newest sign-in attempt
    bool m_isSigningIn = false;                   ///< the newest attempt has not ended
    bool m_bootstrapAgain = false;                ///< the network came while an attempt was under way
    bool m_isSignedOutByUser = false;             ///< until the user asks for a sign-in; no event brings one back
    bool m_isTerminated = false;
};

} // namespace Varnel
