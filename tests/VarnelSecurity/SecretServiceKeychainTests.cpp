#include <VarnelSecurity/KeychainStore.h>
#include <VarnelSecurity/Linux/DesktopKeychain.h>
#include <VarnelSecurity/Linux/FileKeychain.h>
#include <VarnelSecurity/Linux/SecretServiceKeychain.h>

#include "../Support/EventLoop.h"
#include "KeychainContract.h"
#include "PrivateSession.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>

namespace Varnel {
namespace {

const QString service = QStringLiteral("com.varnel.menubar");
const QString account = QStringLiteral("password.me@example.com");
const KeychainQuery query{service, account};

/// The keychain as the program uses it, against the real keyring daemon.
class SecretServiceKeychainTest : public testing::Test {
protected:
    void SetUp() override {
        if (const QString missing = Testing::PrivateSession::missingProgram(); !missing.isEmpty()) {
            GTEST_SKIP() << missing.toStdString() << " is not installed";
        }
        static Testing::PrivateSession shared; // the process has one session bus for its whole life
        session = &shared;
        path = session->path("private/keychain.json");
        QFile::remove(path);
        file.emplace(path);
        keychain.emplace(secretService, *file);
        store.emplace(service, *keychain);
    }
    void TearDown() override {
        if (session) {
            session->stopKeyring();
        }
    }

    QByteArray secretTool(QStringList command, const QString& ofService, const QByteArray& input = {}) {
        command << QStringLiteral("service") << ofService << QStringLiteral("account") << account;
        return session->run(QStringLiteral("secret-tool"), command, input);
    }
    void storeFromOutside(const QString& ofService, const QByteArray& secret) {
        secretTool({QStringLiteral("store"), QStringLiteral("--label=x")}, ofService, secret);
    }
    QByteArray lookUpFromOutside(const QString& ofService) { return secretTool({QStringLiteral("lookup")}, ofService); }

    Testing::PrivateSession* session = nullptr;
    QString path;
    SecretServiceKeychain secretService{std::chrono::seconds(1)};
    std::optional<FileKeychain> file;
    std::optional<DesktopKeychain> keychain;
    std::optional<KeychainStore> store;
};

TEST_F(SecretServiceKeychainTest, KeepsTheContract) {
    session->startKeyring();
    Testing::expectKeychainContract(secretService);
}

TEST_F(SecretServiceKeychainTest, SharesItsItemsWithSecretTool) {
    session->startKeyring();
    storeFromOutside(service, "from outside");
    EXPECT_EQ(store->readSecret(account).value(), QStringLiteral("from outside"));
    storeFromOutside(QStringLiteral("other"), "theirs");

    for (const QString& secret : {QStringLiteral("first"), QStringLiteral("zwölf 日本 \U0001F31E")}) {
        ASSERT_TRUE(store->saveSecret(secret, account));
        EXPECT_EQ(lookUpFromOutside(service), secret.toUtf8());
    }
    EXPECT_EQ(secretTool({QStringLiteral("search"), QStringLiteral("--all")}, service).count("secret = "), 1);
    ASSERT_TRUE(store->deleteSecret(account));
    EXPECT_EQ(lookUpFromOutside(service), "");
    EXPECT_EQ(lookUpFromOutside(QStringLiteral("other")), "theirs");
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(SecretServiceKeychainTest, TheFileServesUntilThereIsASecretService) {
    ASSERT_TRUE(store->saveSecret(QStringLiteral("päss"), account));
    EXPECT_EQ(store->readSecret(account).value(), QStringLiteral("päss"));

    session->startKeyring();
    EXPECT_EQ(store->readSecret(account).value(), QStringLiteral("päss"));
    EXPECT_EQ(lookUpFromOutside(service), QStringLiteral("päss").toUtf8());
    EXPECT_EQ(file->copyMatching(query).status, keychainItemNotFound);
}

TEST_F(SecretServiceKeychainTest, AServiceThatCouldBeStartedCountsAsExisting) {
    session->setSecretServiceStartable(true);
    EXPECT_FALSE(store->saveSecret(QStringLiteral("x"), account));
    EXPECT_FALSE(QFile::exists(path));
    session->setSecretServiceStartable(false);
}

TEST_F(SecretServiceKeychainTest, ALockedKeyringIsToldAndNeverReplacedByTheFile) {
    session->startKeyring();
    ASSERT_TRUE(store->saveSecret(QStringLiteral("behind the lock"), account));
    EXPECT_TRUE(Testing::await(store->unlock(account, KeychainAccess::writing))) << "nothing is locked";
    session->lockKeyring();
    EXPECT_EQ(keychain->copyMatching(query).status, keychainInteractionNotAllowed);
    EXPECT_EQ(keychain->copyMatching({service, QStringLiteral("nobody")}).status, keychainInteractionNotAllowed);
    EXPECT_EQ(keychain->add(query, "x"), keychainInteractionNotAllowed);
    EXPECT_EQ(keychain->deleteMatching(query), keychainInteractionNotAllowed);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_FALSE(session->wasUserAsked());
    EXPECT_FALSE(Testing::await(store->unlock(account, KeychainAccess::reading)));
    EXPECT_TRUE(session->wasUserAsked());
}

TEST_F(SecretServiceKeychainTest, AServiceThatNeverAnswersHoldsNothingUp) {
    session->startKeyring();
    session->suspendKeyring();
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_FALSE(store->saveSecret(QStringLiteral("x"), account));
    EXPECT_FALSE(store->readSecret(account));
    EXPECT_LT(elapsed.elapsed(), 1500);
    EXPECT_FALSE(QFile::exists(path));
    QCoro::Task<bool> unlocking = store->unlock(account, KeychainAccess::reading);
    EXPECT_LT(elapsed.elapsed(), 1600);
    EXPECT_FALSE(Testing::await(std::move(unlocking)));
}

} // namespace
} // namespace Varnel
