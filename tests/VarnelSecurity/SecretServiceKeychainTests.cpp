#include <VarnelSecurity/KeychainStore.h>
#include <VarnelSecurity/Linux/DesktopKeychain.h>
#include <VarnelSecurity/Linux/FileKeychain.h>
#include <VarnelSecurity/Linux/SecretServiceKeychain.h>

#include "../Support/EventLoop.h"
#include "KeychainContract.h"
#include "KeyringSession.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <functional>

namespace Varnel {
namespace {

using Testing::passwordItem;

Testing::KeyringSession& sharedSession() {
    static Testing::KeyringSession session; // the process has one session bus for its whole life
    return session;
}

/// The keychain as the program uses it, against the real keyring daemon.
class SecretServiceKeychainTest : public testing::Test {
protected:
    SecretServiceKeychainTest() { QFile::remove(path); }
    ~SecretServiceKeychainTest() override { session.stopKeyring(); }

    QByteArray secretTool(QStringList command, const QString& ofService, const QByteArray& input = {}) {
        command << QStringLiteral("service") << ofService << QStringLiteral("account") << passwordItem.account;
        return session.secretTool(command, input);
    }
    void storeFromOutside(const QString& ofService, const QByteArray& secret) {
        secretTool({QStringLiteral("store"), QStringLiteral("--label=x")}, ofService, secret);
    }
    QByteArray lookUpFromOutside(const QString& ofService) { return secretTool({QStringLiteral("lookup")}, ofService); }

    Testing::KeyringSession& session = sharedSession();
    const QString path = session.path("private/keychain.json");
    SecretServiceKeychain secretService{std::chrono::seconds(1)};
    FileKeychain file{path};
    DesktopKeychain keychain{secretService, file};
    KeychainStore store{passwordItem.service, keychain};
};

TEST_F(SecretServiceKeychainTest, KeepsTheContract) {
    session.startKeyring();
    Testing::expectKeychainContract(secretService);
}

TEST_F(SecretServiceKeychainTest, SharesItsItemsWithSecretTool) {
    session.startKeyring();
    storeFromOutside(passwordItem.service, "from outside");
    EXPECT_EQ(store.readSecret(passwordItem.account).value(), QStringLiteral("from outside"));
    storeFromOutside(QStringLiteral("other"), "theirs");

    for (const QString& secret : {QStringLiteral("first"), QStringLiteral("zwölf 日本 \U0001F31E")}) {
        ASSERT_TRUE(store.saveSecret(secret, passwordItem.account));
        EXPECT_EQ(lookUpFromOutside(passwordItem.service), secret.toUtf8());
    }
    EXPECT_EQ(secretTool({QStringLiteral("search"), QStringLiteral("--all")}, passwordItem.service).count("secret = "),
              1);
    ASSERT_TRUE(store.deleteSecret(passwordItem.account));
    EXPECT_EQ(lookUpFromOutside(passwordItem.service), "");
    EXPECT_EQ(lookUpFromOutside(QStringLiteral("other")), "theirs");
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(SecretServiceKeychainTest, TheFileServesUntilThereIsASecretServiceAndIsNewerThanThat) {
    ASSERT_TRUE(store.saveSecret(QStringLiteral("päss"), passwordItem.account));
    EXPECT_EQ(store.readSecret(passwordItem.account).value(), QStringLiteral("päss"));
    session.startKeyring();
    storeFromOutside(passwordItem.service, "older");
    EXPECT_EQ(store.readSecret(passwordItem.account).value(), QStringLiteral("päss"));
    EXPECT_EQ(lookUpFromOutside(passwordItem.service), QStringLiteral("päss").toUtf8());
    EXPECT_EQ(file.copyMatching(passwordItem).status, keychainItemNotFound);
    ASSERT_TRUE(store.deleteSecret(passwordItem.account));
    EXPECT_EQ(store.readSecret(passwordItem.account).value(), std::nullopt);
}

TEST_F(SecretServiceKeychainTest, ADeletionThatDidNotHoldIsTold) {
    const std::pair<KeychainStatus, std::function<void()>> rows[] = {
        {keychainInteractionNotAllowed, [this] { session.lockKeyring(); }},
        {keychainServiceNotResponding, [this] { session.suspendKeyring(); }},
        {keychainNotAvailable, [this] { session.stopKeyring(); }},
    };
    for (const auto& [status, happens] : rows) {
        SCOPED_TRACE(status);
        session.startKeyring();
        ASSERT_TRUE(store.saveSecret(QStringLiteral("secret"), passwordItem.account));
        happens();
        QElapsedTimer elapsed;
        elapsed.start();
        const Result<void> deleted = store.deleteSecret(passwordItem.account);
        EXPECT_LT(elapsed.elapsed(), 1500);
        ASSERT_FALSE(deleted);
        EXPECT_EQ(*deleted.error().as<KeychainError>(), KeychainError::unexpectedStatus(status));
        session.stopKeyring();
        // Also gives a silent service another chance.
        Testing::await(store.unlock(passwordItem.account, KeychainAccess::deleting));
    }
}

TEST_F(SecretServiceKeychainTest, AServiceThatCouldBeStartedCountsAsExisting) {
    session.setSecretServiceStartable(QStringLiteral("false"));
    EXPECT_FALSE(store.saveSecret(QStringLiteral("x"), passwordItem.account));
    EXPECT_FALSE(QFile::exists(path));
    session.setSecretServiceStartable(QStringLiteral(
        "sleep 1.6; echo | timeout -s KILL 2 gnome-keyring-daemon --foreground --unlock --components=secrets"));
    SecretServiceKeychain patient;
    EXPECT_TRUE(Testing::await(patient.unlock(passwordItem, KeychainAccess::reading)))
        << "while it takes its time to start";
    session.setSecretServiceStartable({});
}

TEST_F(SecretServiceKeychainTest, ALockedKeyringIsToldAndNeverReplacedByTheFile) {
    session.startKeyring();
    ASSERT_TRUE(store.saveSecret(QStringLiteral("behind the lock"), passwordItem.account));
    EXPECT_TRUE(Testing::await(store.unlock(passwordItem.account, KeychainAccess::writing))) << "nothing is locked";
    session.lockKeyring();
    EXPECT_EQ(keychain.copyMatching(passwordItem).status, keychainInteractionNotAllowed);
    EXPECT_EQ(keychain.copyMatching({passwordItem.service, QStringLiteral("nobody")}).status,
              keychainInteractionNotAllowed);
    EXPECT_EQ(keychain.add(passwordItem, "x"), keychainInteractionNotAllowed);
    EXPECT_EQ(keychain.deleteMatching(passwordItem), keychainInteractionNotAllowed);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_FALSE(session.wasUserAsked());
    EXPECT_FALSE(Testing::await(store.unlock(passwordItem.account, KeychainAccess::deleting)));
    EXPECT_TRUE(session.wasUserAsked());
}

TEST_F(SecretServiceKeychainTest, EachUnlockGetsTheAnswerToItsOwnQuestion) {
    session.startKeyring();
    storeFromOutside(passwordItem.service, "behind the lock");
    secretTool({QStringLiteral("store"), QStringLiteral("--label=x"), QStringLiteral("--collection=session")},
               QStringLiteral("other"), "never locked");
    session.lockKeyring();
    auto locked = secretService.unlock(passwordItem, KeychainAccess::reading);
    auto open = secretService.unlock({QStringLiteral("other"), passwordItem.account}, KeychainAccess::reading);
    EXPECT_FALSE(Testing::await(std::move(locked)));
    EXPECT_TRUE(Testing::await(std::move(open)));
}

TEST_F(SecretServiceKeychainTest, WhoCanWaitGetsTheAnswerOfASlowServiceWhileTheEventLoopGoesOn) {
    session.startKeyring();
    ASSERT_TRUE(store.saveSecret(QStringLiteral("slow"), passwordItem.account));
    session.suspendKeyring();
    int turns = 0;
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, &turn, [this, &turns] {
        if (++turns == 40) { // two seconds: longer than anybody else would wait
            session.resumeKeyring();
        }
    });
    turn.start(50);
    Result<std::optional<QString>> secret = std::nullopt;
    const std::function<void()> read = [&] { secret = store.readSecret(passwordItem.account); };
    Testing::await(store.runPatiently(read));
    EXPECT_GE(turns, 40);
    EXPECT_EQ(secret.value(), QStringLiteral("slow"));
    EXPECT_EQ(store.readSecret(passwordItem.account).value(), QStringLiteral("slow")) << "no rest is taken after it";
}

TEST_F(SecretServiceKeychainTest, NobodyWaitsForAPatientCallAtTheEnd) {
    session.startKeyring();
    session.suspendKeyring();
    bool hasRead = false;
    QCoro::Task<void> reading = store.runPatiently([this, &hasRead] {
        store.readSecret(passwordItem.account);
        hasRead = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    QElapsedTimer elapsed;
    elapsed.start();
    secretService.endPatientCalls();
    EXPECT_TRUE(hasRead);
    EXPECT_LT(elapsed.elapsed(), 900);
    Testing::await(std::move(reading));
}

TEST(CallsWithinTurn, TogetherWaitNoLongerThanOneLimit) {
    using std::chrono::milliseconds;
    CallsWithinTurn calls{milliseconds(400)};
    const auto takes = [&calls](int duration) {
        return calls.call([duration](const std::stop_token&) {
            std::this_thread::sleep_for(milliseconds(duration));
            return true;
        });
    };
    EXPECT_TRUE(takes(250));
    EXPECT_FALSE(takes(300));
    EXPECT_FALSE(takes(0));
    Testing::settle();
    EXPECT_TRUE(takes(300));
}

TEST_F(SecretServiceKeychainTest, AServiceThatNeverAnswersHoldsNothingUp) {
    session.startKeyring();
    session.suspendKeyring();
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_FALSE(store.saveSecret(QStringLiteral("x"), passwordItem.account));
    EXPECT_FALSE(store.readSecret(passwordItem.account));
    EXPECT_LT(elapsed.elapsed(), 1500);
    EXPECT_FALSE(QFile::exists(path));
    QCoro::Task<bool> unlocking = store.unlock(passwordItem.account, KeychainAccess::reading);
    EXPECT_LT(elapsed.elapsed(), 1600);
    EXPECT_FALSE(Testing::await(std::move(unlocking)));
}

} // namespace
} // namespace Varnel
