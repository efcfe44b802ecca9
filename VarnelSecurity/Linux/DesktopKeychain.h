#pragma once

#include <VarnelSecurity/KeychainServices.h>

#include <mutex>
#include <vector>

namespace Varnel {

/// The Secret Service with a file behind it for desktops that have none. New items go into the file only where the
/// service does not exist at all, never because it is locked or silent. So what the file holds is newer than any item
/// of the service: it is read first, and moves into the service as soon as that takes it. Deleting deletes in both.
class DesktopKeychain final : public KeychainServices {
public:
    /// `secretService` tells that it does not exist by `keychainNotAvailable`. Both must outlive this object.
    DesktopKeychain(KeychainServices& secretService, KeychainServices& file);

    KeychainStatus add(const KeychainQuery& query, const QByteArray& data) override;
    KeychainMatch copyMatching(const KeychainQuery& query) override;
    KeychainStatus deleteMatching(const KeychainQuery& query) override;
    QCoro::Task<bool> unlock(KeychainQuery query, KeychainAccess access) override;
    QCoro::Task<void> runPatiently(std::function<void()> function) override;

private:
    KeychainStatus addToService(const KeychainQuery& query, const QByteArray& data);
    void noteHeldByService(const KeychainQuery& query);
    bool isHeldByService(const KeychainQuery& query, KeychainStatus deletion);

    KeychainServices& m_secretService;
    KeychainServices& m_file;
    std::mutex m_heldMutex;                     ///< operations may run on two threads
    std::vector<KeychainQuery> m_heldByService; ///< seen there by this object: a service that is gone keeps them
};

} // namespace Varnel
