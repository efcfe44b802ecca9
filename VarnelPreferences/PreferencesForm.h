#pragma once

#include <VarnelPreferences/ConnectionState.h>
#include <VarnelPreferences/PreferencesHandlers.h>
#include <VarnelShared/Clock.h>

#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>
#include <type_traits>

namespace Varnel {

/// The fields that the Account pane saves with its button.
struct AccountFields {
    QString baseURL;
    QString account;
    QString password;
    QString stationID;
};

/// The whole minutes that the window shows for an interval; a stored interval between two steps is rounded.
int shownMinutes(std::int64_t pollIntervalSeconds);

/// The state behind the preferences window: what was edited, what was handed on, and how the application stands.
/// Each edit is handed on once, and only if it changed something.
class PreferencesForm final : public QObject {
    Q_OBJECT

public:
    /// How long the poll interval rests before it is handed on, so that a row of clicks is one change.
    static constexpr Seconds intervalPause{0.5};

    /// `timers` must outlive the form.
    PreferencesForm(const PreferencesDraft& draft, PreferencesHandlers handlers, TimerFactory& timers);

    const PreferencesDraft& draft() const { return m_draft; }
    /// As the owner has told it, with the save of this form that goes on.
    ConnectionState connection() const;
    /// Whether the user waits for a sign-in: the fields rest meanwhile.
    bool isUserWaiting() const { return connection().connecting == ConnectionState::Connecting::forUser; }
    /// None until the owner has told it.
    std::optional<NotificationPermission> notificationPermission() const { return m_notificationPermission; }

    /// Changes one auto-saved field and hands the draft on at once, a pending poll interval with it.
    template <typename T>
    void edit(T AppSettings::* field, std::type_identity_t<T> value) {
        m_draft.*field = value;
        handOn();
    }

    /// Changes the poll interval; the draft is handed on after a pause without another change, or by `handOn`.
    void editPollInterval(int minutes);

    /// Hands on what is still pending.
    void handOn();

    /// Hands everything to the save handler, a pending poll interval with it. Does nothing while the user waits for
    /// one.
    void save(const AccountFields& fields);

    /// Ends the sign-in that goes on. Its outcome does not count any more.
    void cancelSignIn();

    /// The station of the draft for the draft's account; another account has stations of its own, to be found anew.
    QString stationIDFor(const QString& account) const;

    /// Forgets the password, then asks for the sign-out.
    void signOut();

    /// Whether there is a session, a failure or a password to sign out of, also one that could not be deleted.
    bool canSignOut() const;

    void updateConnection(const ConnectionState& connection);
    void setNotificationPermission(NotificationPermission permission);

    bool isDockIconRefused() const { return m_isDockIconRefused; }
    void setDockIconRefused(bool isRefused);

    /// What could not be kept or removed, until the next save or sign-out begins.
    AccountNotices accountNotices() const { return m_accountNotices; }
    void setAccountNotices(AccountNotices notices);

    /// Takes the switch back to what the system reports. That is not an edit.
    void refuseLaunchAtLogin(const QString& description, bool actualState);

    /// Calls no handler from now on: the owner is gone, or the draft has been replaced. Drops what is pending.
    void detach();

    /// Tells the owner that the user has closed the window.
    void reportClosed() const;

Q_SIGNALS:
    void connectionChanged();
    void notificationPermissionChanged();
    void dockIconRefusedChanged();
    void accountNoticesChanged();
    void launchAtLoginRefused(const QString& description);
    void signedOut();

private:
    static QCoro::Task<void> awaitSave(QPointer<PreferencesForm> form, int save,
                                       std::shared_ptr<QCoro::Task<bool>> task);
    void saveEnded(bool isConnected);
    /// Changes what was told and whether a save goes on, and says so where that made a difference.
    void setConnection(const ConnectionState& told, bool isSaving);

    PreferencesDraft m_draft;
    PreferencesDraft m_handedOn; ///< as the owner knows it
    const PreferencesHandlers m_handlers;
    TimerFactory& m_timers;
    std::unique_ptr<OneShotTimer> m_pause;
    ConnectionState m_told; ///< by the owner
    bool m_isSaving = false;
    int m_save = 0; ///< the number of the last save: one that was cancelled ends without a trace
    std::optional<NotificationPermission> m_notificationPermission;
    bool m_isDockIconRefused = false;
    AccountNotices m_accountNotices;
    bool m_isDetached = false;
};

} // namespace Varnel
