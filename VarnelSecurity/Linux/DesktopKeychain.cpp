#include <VarnelSecurity/Linux/DesktopKeychain.h>

namespace Varnel {

namespace {
bool isNothingThere(KeychainStatus status) {
    return status == keychainItemNotFound || status == keychainNotAvailable;
}
} // namespace

DesktopKeychain::DesktopKeychain(KeychainServices& secretService, KeychainServices& file)
    : m_secretService(secretService)
    , m_file(file) {}

KeychainStatus DesktopKeychain::add(const KeychainQuery& query, const QByteArray& data) {
    const KeychainStatus status = m_secretService.add(query, data);
    if (status == keychainNotAvailable) {
        return m_file.add(query, data);
    }
    if (status == keychainSuccess) {
        m_file.deleteMatching(query); // an older secret must not outlive the newer one
    }
    return status;
}

KeychainMatch DesktopKeychain::copyMatching(const KeychainQuery& query) {
    KeychainMatch kept = m_secretService.copyMatching(query);
    if (kept.status == keychainSuccess) {
        return kept;
    }
    KeychainMatch filed = m_file.copyMatching(query);
    if (filed.status != keychainSuccess) {
        return isNothingThere(kept.status) ? filed : kept;
    }
    const bool isFree = kept.status == keychainItemNotFound;
    if (isFree && filed.data && m_secretService.add(query, *filed.data) == keychainSuccess) {
        m_file.deleteMatching(query);
    }
    return filed;
}

KeychainStatus DesktopKeychain::deleteMatching(const KeychainQuery& query) {
    const KeychainStatus kept = m_secretService.deleteMatching(query);
    const KeychainStatus filed = m_file.deleteMatching(query);
    if (isNothingThere(kept)) {
        return filed;
    }
    // A failure of either is a failure of both: something may be left.
    return kept == keychainSuccess && filed != keychainItemNotFound ? filed : kept;
}

QCoro::Task<bool> DesktopKeychain::unlock(KeychainQuery query, KeychainAccess access) {
    const bool servedByFile = access == KeychainAccess::reading && m_file.copyMatching(query).status == keychainSuccess;
    return servedByFile ? m_file.unlock(query, access) : m_secretService.unlock(query, access);
}

} // namespace Varnel
