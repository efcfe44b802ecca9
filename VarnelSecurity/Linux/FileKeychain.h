#pragma once

#include <VarnelSecurity/KeychainServices.h>

#include <map>
#include <mutex>
#include <optional>
#include <utility>

namespace Varnel {

/// The data by service and account.
using KeychainItems = std::map<std::pair<QString, QString>, QByteArray>;

/// The items in the bytes of a password file; none where these are no such file.
std::optional<KeychainItems> decodeKeychainItems(const QByteArray& content);
QByteArray encodeKeychainItems(const KeychainItems& items);

/// A keychain for desktops without a Secret Service: a JSON file that only its owner can read,
/// `{"items":[{"account":…,"data":<base64>,"service":…}]}`. Never locked.
///
/// A file that cannot be read (a pipe or one of more than 1 MiB is not) is reported as `keychainInputOutputError`, one
/// that cannot be understood as `keychainDecodeError`; it is left alone, and kept as "….damaged" when the first item is
/// added. Others' rights to the file and its folder are taken away whenever it is met.
class FileKeychain final : public KeychainServices {
public:
    /// Makes nothing; the file and its folder, with mode 0600 and 0700, come with the first item.
    explicit FileKeychain(const QString& path);

    KeychainStatus add(const KeychainQuery& query, const QByteArray& data) override;
    KeychainMatch copyMatching(const KeychainQuery& query) override;
    KeychainStatus deleteMatching(const KeychainQuery& query) override;
    QCoro::Task<bool> unlock(KeychainQuery query, KeychainAccess access) override;
    QCoro::Task<void> runPatiently(std::function<void()> function) override;

private:
    KeychainStatus load(KeychainItems& items) const;
    KeychainStatus write(const KeychainItems& items) const;

    const QString m_path;
    std::mutex m_mutex; ///< held by each operation: another may run on another thread
};

} // namespace Varnel
