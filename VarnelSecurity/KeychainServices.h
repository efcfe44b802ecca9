#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace Varnel {

/// How a keychain operation ended.
using KeychainStatus = std::int32_t;

inline constexpr KeychainStatus keychainSuccess = 0;
inline constexpr KeychainStatus keychainInputOutputError = -36;
inline constexpr KeychainStatus keychainNotAvailable = -25291; ///< there is no keychain of this kind at all
inline constexpr KeychainStatus keychainItemNotFound = -25300;
inline constexpr KeychainStatus keychainInteractionNotAllowed = -25308; ///< locked: the user would have to be asked
inline constexpr KeychainStatus keychainDecodeError = -26275;           ///< what is kept there cannot be understood
inline constexpr KeychainStatus keychainServiceNotResponding = -67585;  ///< it exists, but failed or took too long

/// Which generic-password items are meant: those with exactly this service and account.
struct KeychainQuery {
    QString service;
    QString account;

    bool operator==(const KeychainQuery&) const = default;
};

/// One item's data, if the status is success and the item holds data.
struct KeychainMatch {
    KeychainStatus status = keychainItemNotFound;
    std::optional<QByteArray> data;

    bool operator==(const KeychainMatch&) const = default;
};

/// What an unlocked keychain is wanted for.
enum class KeychainAccess {
    reading,  ///< one item that matches
    writing,  ///< the items that match and a place for a new one
    deleting, ///< every item that matches, wherever it is kept
};

/// The keychain of the desktop. A port. No operation but `unlock` asks the user anything: what would need the user ends
/// in `keychainInteractionNotAllowed`. All others within one turn of the event loop together take no longer than 1.5 s,
/// unless they are run by `runPatiently`.
class KeychainServices {
public:
    KeychainServices() = default;
    KeychainServices(const KeychainServices&) = delete;
    KeychainServices& operator=(const KeychainServices&) = delete;
    virtual ~KeychainServices() = default;

    /// Adds an item, or replaces the one that matches.
    virtual KeychainStatus add(const KeychainQuery& query, const QByteArray& data) = 0;

    /// The newest item that matches.
    virtual KeychainMatch copyMatching(const KeychainQuery& query) = 0;

    /// Deletes every item that matches; `keychainItemNotFound` when there was none. Any status but these two says that
    /// one may be left.
    virtual KeychainStatus deleteMatching(const KeychainQuery& query) = 0;

    /// Has the desktop ask the user to unlock what the access needs, if anything is locked. False when the user
    /// refused, nobody could be asked or no answer came in time. Blocks nothing; the task needs this object no more
    /// once it was given out.
    virtual QCoro::Task<bool> unlock(KeychainQuery query, KeychainAccess access) = 0;

    /// Calls a function that uses the operations above, each of which may take twenty seconds then, and ends when it
    /// has returned. Blocks nothing: a keychain that may be slow calls it on another thread. Everything that the
    /// function uses must live until the task has ended or the keychain has.
    virtual QCoro::Task<void> runPatiently(std::function<void()> function) = 0;
};

} // namespace Varnel
