#pragma once

#include <Varnel/Connection.h>
#include <Varnel/PlatformServices.h>

#include <VarnelPreferences/PreferencesWindowController.h>
#include <VarnelSettings/AppSettingsStore.h>
#include <VarnelSettings/LaunchAtLoginManager.h>

#include <memory>

namespace Varnel {

/// The preferences: their one window, the draft it works on, what its two saves make of the settings, and what the
/// desktop is told of them (the taskbar entry, the application icon, the start at login).
class PreferencesCoordinator {
public:
    /// Which values no longer belong to what is configured.
    enum class AccountChange { none, station, account };

    struct AutoSaved {
        bool isPollIntervalChanged = false;
        bool isFirstNotificationSwitchedOn = false;
    };

    /// Who asks for the start at login: the start, which only adds a missing entry and logs a failure, or a save.
    enum class LaunchAtLoginRequest { start, save };

    /// All three must outlive this object.
    PreferencesCoordinator(AppSettings& settings, AppSettingsStore& store, const PlatformServices& platform);

    /// The settings as the window edits them, with the password beside them.
    PreferencesDraft draft(const QString& password) const;

    /// The explicit save: takes the whole draft, trimmed and clamped, an empty base URL as the default one.
    AccountChange save(const PreferencesDraft& draft);

    /// The automatic save: takes all but base URL, account and station.
    AutoSaved autoSave(const PreferencesDraft& draft);

    /// Null when no window is held. One that is hidden with the application is still held, with what was typed.
    PreferencesWindowController* window() const { return m_window.get(); }

    /// Shows the window in front with focus; the one held before is closed and dropped.
    void open(std::unique_ptr<PreferencesWindowController> window);

    /// Tells an open window whether notifications will come; does nothing otherwise.
    void showPermission(NotificationPermission permission);

    void close();

    /// Tells an open window of the connection; does nothing otherwise.
    void updateConnectionState(const Connection& connection, const std::optional<QString>& errorMessage);

    /// What is to be said of an error beyond its line, for as long as that line is shown.
    struct Explanation {
        QString errorMessage;
        ConnectionState::WantedField wanted = ConnectionState::WantedField::none;
        bool wasTried = true; ///< false: no connection was
        QString details = {}; ///< what each address has answered, a line each
    };
    void explainError(const Explanation& explanation) { m_explanation = explanation; }

    /// Stores the settings. A failure is said in the Account pane and in the log.
    void storeSettings();

    /// Whether the user has signed out, remembered over restarts. A failure is said as one of the settings.
    void rememberSignOut(bool isSignedOut);

    /// What found no room is tried once more: at the end of the program.
    void storeAgainIfFailed();

    /// Says in the Account pane what could not be kept or removed, or no longer.
    void setNotice(AccountNotice notice, bool isShown);

    void applyDockIconPreference();
    void applyApplicationIconIfAvailable();
    void applyLaunchAtLoginPreference(LaunchAtLoginRequest request);

private:
    void setDockIconRefused(bool isRefused);

    AppSettings& m_settings;
    AppSettingsStore& m_store;
    const PlatformServices& m_platform;
    LaunchAtLoginManager m_launchAtLoginManager;
    std::unique_ptr<PreferencesWindowController> m_window;
    AccountNotices m_notices;
    Explanation m_explanation;
    bool m_isDockIconRefused = false;
};

} // namespace Varnel
