#pragma once

#include <VarnelSecurity/KeychainServices.h>

#include <QCoroFuture>
#include <QMap>
#include <QPromise>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Varnel::Testing {

/// A keychain in memory that records its calls and, when told so, answers all of them, or all deletions, with one
/// status.
class FakeKeychainServices final : public KeychainServices {
public:
    KeychainStatus add(const KeychainQuery& query, const QByteArray& data) override {
        calls << QStringLiteral("add");
        if (answer() == keychainSuccess) {
            items[{query.service, query.account}] = data;
        }
        return answer();
    }
    KeychainMatch copyMatching(const KeychainQuery& query) override {
        calls << QStringLiteral("copyMatching");
        const auto found = items.constFind({query.service, query.account});
        if (answer() != keychainSuccess || found == items.constEnd()) {
            return {answer() == keychainSuccess ? keychainItemNotFound : answer(), {}};
        }
        return {keychainSuccess, *found};
    }
    KeychainStatus deleteMatching(const KeychainQuery& query) override {
        calls << QStringLiteral("deleteMatching");
        if (answer() != keychainSuccess || deleteStatus != keychainSuccess) {
            return answer() != keychainSuccess ? answer() : deleteStatus;
        }
        return items.remove({query.service, query.account}) > 0 ? keychainSuccess : keychainItemNotFound;
    }
    QCoro::Task<bool> unlock(KeychainQuery /*query*/, KeychainAccess /*access*/) override {
        calls << QStringLiteral("unlock");
        isLocked = isLocked && status != keychainSuccess;
        co_return status == keychainSuccess;
    }

    QCoro::Task<void> runPatiently(std::function<void()> function) override {
        if (!isSlow) {
            function();
            co_return;
        }
        const auto promise = std::make_shared<QPromise<void>>();
        promise->start();
        slowCalls.push_back([function, promise] {
            function();
            promise->finish();
        });
        QFuture<void> answered = promise->future();
        co_await answered;
    }

    /// Until then those who can wait do.
    void answerSlowCalls() {
        for (const auto& call : std::exchange(slowCalls, {})) {
            call();
        }
    }

    QMap<std::pair<QString, QString>, std::optional<QByteArray>> items;
    KeychainStatus status = keychainSuccess; ///< of every operation; `unlock` succeeds with it alone
    KeychainStatus deleteStatus = keychainSuccess;
    bool isLocked = false; ///< until an `unlock` that succeeds
    bool isSlow = false;
    std::vector<std::function<void()>> slowCalls;
    QStringList calls;

private:
    KeychainStatus answer() const { return isLocked ? keychainInteractionNotAllowed : status; }
};

} // namespace Varnel::Testing
