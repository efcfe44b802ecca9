#pragma once

#include <VarnelSecurity/KeychainServices.h>

#include <QMap>
#include <QStringList>

#include <utility>

namespace Varnel::Testing {

/// A keychain in memory that records its calls and, when told so, answers all of them, or all deletions, with one
/// status.
class FakeKeychainServices final : public KeychainServices {
public:
    KeychainStatus add(const KeychainQuery& query, const QByteArray& data) override {
        calls << QStringLiteral("add");
        if (status == keychainSuccess) {
            items[{query.service, query.account}] = data;
        }
        return status;
    }
    KeychainMatch copyMatching(const KeychainQuery& query) override {
        calls << QStringLiteral("copyMatching");
        const auto found = items.constFind({query.service, query.account});
        if (status != keychainSuccess || found == items.constEnd()) {
            return {status == keychainSuccess ? keychainItemNotFound : status, {}};
        }
        return {keychainSuccess, *found};
    }
    KeychainStatus deleteMatching(const KeychainQuery& query) override {
        calls << QStringLiteral("deleteMatching");
        if (status != keychainSuccess || deleteStatus != keychainSuccess) {
            return status != keychainSuccess ? status : deleteStatus;
        }
        return items.remove({query.service, query.account}) > 0 ? keychainSuccess : keychainItemNotFound;
    }
    QCoro::Task<bool> unlock(KeychainQuery /*query*/, KeychainAccess /*access*/) override {
        calls << QStringLiteral("unlock");
        co_return status == keychainSuccess;
    }

    QMap<std::pair<QString, QString>, std::optional<QByteArray>> items;
    KeychainStatus status = keychainSuccess;
    KeychainStatus deleteStatus = keychainSuccess;
    QStringList calls;
};

} // namespace Varnel::Testing
