#include <VarnelSecurity/Linux/DesktopKeychain.h>

#include <algorithm>
#include <utility>

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
    const KeychainStatus status = addToService(query, data);
    return status == keychainNotAvailable ? m_file.add(query, data) : status;
}

/// A service that has taken the item is done only when the file no longer holds an older one, which would be read
/// first.
KeychainStatus DesktopKeychain::addToService(const KeychainQuery& query, const QByteArray& data) {
    const KeychainStatus added = m_secretService.add(query, data);
    if (added != keychainSuccess) {
        return added;
    }
    noteHeldByService(query);
    const KeychainStatus removed = m_file.deleteMatching(query);
    const bool isOlderLeft = removed != keychainSuccess && m_file.copyMatching(query).status == keychainSuccess;
    return isOlderLeft ? removed : keychainSuccess;
}

KeychainMatch DesktopKeychain::copyMatching(const KeychainQuery& query) {
    KeychainMatch filed = m_file.copyMatching(query);
    if (filed.status == keychainSuccess) {
        if (filed.data) {
            addToService(query, *filed.data); // where the service does not take it, the file keeps it
        }
        return filed;
    }
    KeychainMatch kept = m_secretService.copyMatching(query);
    if (kept.status == keychainSuccess) {
        noteHeldByService(query);
    }
    return isNothingThere(kept.status) ? filed : kept;
}

KeychainStatus DesktopKeychain::deleteMatching(const KeychainQuery& query) {
    const KeychainStatus kept = m_secretService.deleteMatching(query);
    const KeychainStatus filed = m_file.deleteMatching(query);
    const bool isOutOfReach = isHeldByService(query, kept);
    if (kept == keychainNotAvailable && isOutOfReach) {
        return kept;
    }
    if (isNothingThere(kept)) {
        return filed;
    }
    // A failure of either is a failure of both: something may be left.
    return kept == keychainSuccess && filed != keychainItemNotFound ? filed : kept;
}

/// Whether the item was seen there and has not been deleted since, by the status of a deletion.
bool DesktopKeychain::isHeldByService(const KeychainQuery& query, KeychainStatus deletion) {
    const std::lock_guard lock(m_heldMutex);
    if (deletion == keychainSuccess || deletion == keychainItemNotFound) {
        std::erase(m_heldByService, query);
    }
    return std::find(m_heldByService.begin(), m_heldByService.end(), query) != m_heldByService.end();
}

QCoro::Task<bool> DesktopKeychain::unlock(KeychainQuery query, KeychainAccess access) {
    const bool servedByFile = access == KeychainAccess::reading && m_file.copyMatching(query).status == keychainSuccess;
    return servedByFile ? m_file.unlock(query, access) : m_secretService.unlock(query, access);
}

QCoro::Task<void> DesktopKeychain::runPatiently(std::function<void()> function) {
    return m_secretService.runPatiently(std::move(function));
}

void DesktopKeychain::noteHeldByService(const KeychainQuery& query) {
    const std::lock_guard lock(m_heldMutex);
    std::erase(m_heldByService, query);
    m_heldByService.push_back(query);
}

} // namespace Varnel
