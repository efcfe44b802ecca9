#pragma once

#include <VarnelSecurity/KeychainServices.h>

namespace Varnel {

/// The Secret Service with a file behind it for desktops that have none. New items go into the file only where the
/// service does not exist at all, never because it is locked or silent; what the file holds moves into the service
/// when it is read and the service takes it. Deleting deletes in both.
class DesktopKeychain final : public KeychainServices {
public:
    /// `secretService` tells that it does not exist by `keychainNotAvailable`. Both must outlive this object.
    DesktopKeychain(KeychainServices& secretService, KeychainServices& file);

    KeychainStatus add(const KeychainQuery& query, const QByteArray& data) override;
    KeychainMatch copyMatching(const KeychainQuery& query) override;
    KeychainStatus deleteMatching(const KeychainQuery& query) override;
    QCoro::Task<bool> unlock(KeychainQuery query, KeychainAccess access) override;

private:
    KeychainServices& m_secretService;
    KeychainServices& m_file;
};

} // namespace Varnel
