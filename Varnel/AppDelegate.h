#pragma once

#include <Varnel/Connection.h>
#include <Varnel/OutputWindowSource.h>
#include <Varnel/PlatformServices.h>
#include <Varnel/PreferencesCoordinator.h>
#include <Varnel/ProductionAnnouncements.h>
#include <Varnel/StatusPresentationBuilder.h>
#include <Varnel/StoredPassword.h>
#include <Varnel/TodayOutput.h>
#include <Varnel/WakeUps.h>

#include <VarnelPolling/PowerPollingService.h>
#include <VarnelSettings/AppSettingsStore.h>
#include <VarnelStatusMenu/StatusBarController.h>

#include <QMenu>

#include <memory>

namespace Varnel {

/// The application's controller: owns every service for the life of the process, keeps the last known values, and
/// joins the modules. A session being present means "connected"; `StatusValues::errorMessage` is the one line for
/// problems.
///
/// Main thread only, held by a `std::shared_ptr`. Its coroutines keep it alive until their request has ended; timers,
/// handlers and queued tasks hold it weakly (`ifAlive`). After each wait a coroutine asks `Connection::isCurrent`
/// whether what it belongs to still counts, and ends without a trace where it does not.
class AppDelegate final : public std::enable_shared_from_this<AppDelegate> {
public:
    explicit AppDelegate(PlatformServices platform);

    /// The start-up sequence. Waits for neither the network nor the keyring.
    void applicationDidFinishLaunching();

    /// Saves today's samples, stops polling, ends the observation. What completes later does nothing any more.
    void applicationWillTerminate();

    /// Signs in with the settings' account and this password; polls on success, shows the reason otherwise. Of the
    /// application's own the saves alone come this way, by `connect`.
    QCoro::Task<void> authenticateAndStartPolling(QString password);

    /// Takes the outcome of one poll.
    void handlePollResult(Result<PowerReading> result);

    /// Forgets the connection, the values and the stored history; with `clearStoredPassword` the account's password
    /// too. The settings stay.
    void signOut(bool clearStoredPassword);

    /// Opens the preferences anew; what was typed into an open window's Account pane and not saved goes.
    void showPreferencesWindow(PreferencesInitialTab initialTab);

    /// Shows an open preferences window as it is, or opens one. For a second start and the taskbar.
    void bringPreferencesToFront();

    /// The explicit save of the Account pane; true when a session exists afterwards.
    QCoro::Task<bool> applyPreferences(PreferencesDraft draft);

    /// The automatic save of the other panes; account, password, base URL and station of the draft are ignored.
    void applyAutoSavedPreferences(const PreferencesDraft& draft);

    /// The menu's "Refresh".
    void refresh();

    /// Shows the output in a window, as a click on a notification asks for.
    void showStatusWindow();

    const AppSettings& settings() const { return m_settings; }
    const std::optional<SEMSSession>& semsSession() const { return m_connection.session(); }
    bool isPolling() const { return m_pollingService != nullptr; }
    const StatusValues& values() const { return m_values; }
    const TodayOutput& todayOutput() const { return m_todayOutput; }
    const StatusPresentation& presentation() const { return m_statusBarController.presentation(); }
    PreferencesCoordinator& preferencesCoordinator() { return m_preferencesCoordinator; }

private:
    enum class BootstrapMode { openPreferencesIfNeeded, silent };
    using Client = Connection::Client;

    // AppDelegate.cpp: the start, the end, and what the desktop and the menus ask for
    void wireMenuActions();
    /// What has failed may succeed now: repeats it, once.
    void catchUp();
    /// Takes the day of `instant`: nothing of another day is shown as today's, and after a last reading of 0 W the
    /// morning's production starts anew, though the night of 0 W has not ended the day's.
    void rollOver(Timestamp instant);
    /// Builds what the status item shows from the values of this moment and hands it over.
    void updateStatusBar();

    // AppDelegateConnection.cpp: from a stored account to a connection that is polled, and back
    /// Signs in with the stored account and password; where one is missing, opens the preferences on the Account pane
    /// or does nothing, by the mode.
    QCoro::Task<void> bootstrap(BootstrapMode mode);
    QCoro::Task<void> connect(Connection::Attempt attempt, QString password);
    QCoro::Task<Result<void>> settleStationAndSize(Connection::Attempt attempt);
    /// The user has cancelled the sign-in that goes on.
    void cancelSignIn();
    /// The attempt ends, and this is why.
    void rejectSignIn(Connection::Attempt attempt, const PreferencesCoordinator::Explanation& explanation);
    void failSignIn(Connection::Attempt attempt, const Error& error);
    void adoptStation(const QString& stationID);
    void dropPollingService();
    /// Nothing of one account is shown, polled for or announced under another.
    void forgetAccount();
    /// Nor anything of one station under another.
    void forgetReadings();

    // AppDelegatePolling.cpp: the polls and what their readings lead to
    /// Replaces the polling service by one with the interval of the settings; its first poll follows 0.1 s later.
    void startPolling();
    /// One fetch for the polling service. A session that the service rejects is renewed once, without a message.
    QCoro::Task<Result<PowerReading>> fetchPowerReading();
    void takeReading(const PowerReading& reading);
    QCoro::Task<void> refreshNow();
    QCoro::Task<void> refreshSystemSizeIfPossible();

    // AppDelegatePreferences.cpp: the window and its saves
    PreferencesHandlers preferencesHandlers();
    void takeAccountChange(PreferencesCoordinator::AccountChange change);

    PlatformServices m_platform;
    AppSettingsStore m_settingsStore;
    AppSettings m_settings;
    std::shared_ptr<StoredPassword> m_storedPassword;
    Connection m_connection;
    std::shared_ptr<PowerPollingService> m_pollingService;
    StatusValues m_values;
    TodayOutput m_todayOutput;
    StatusBarController m_statusBarController;
    StatusPresentationBuilder m_statusPresentationBuilder;
    PreferencesCoordinator m_preferencesCoordinator;
    OutputWindowSource m_outputWindowSource;
    std::shared_ptr<ProductionAnnouncements> m_announcements;
    std::unique_ptr<Appearance::Observation> m_appearanceObservation;
    std::unique_ptr<QMenu> m_applicationMenu;
    std::unique_ptr<OneShotTimer> m_updateTimer; ///< for the next change of the display that no reading brings
    std::unique_ptr<WakeUps> m_wakeUps;
    std::unique_ptr<OneShotTimer> m_retryTimer; ///< set while a sign-in waits to be repeated
};

} // namespace Varnel
