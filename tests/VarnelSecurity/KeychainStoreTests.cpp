#include <VarnelSecurity/KeychainStore.h>

#include "FakeKeychainServices.h"
#include "KeychainContract.h"

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Testing::passwordItem;

class KeychainStoreTest : public testing::Test {
protected:
    Testing::FakeKeychainServices keychain;
    KeychainStore store{passwordItem.service, keychain};
};

TEST_F(KeychainStoreTest, TextWithoutUTF8FormIsRefusedBeforeAnythingIsDeleted) {
    const QString kept = QStringLiteral("\uFEFFpäss wörd");
    ASSERT_TRUE(store.saveSecret(kept, passwordItem.account));
    EXPECT_EQ((keychain.items[{passwordItem.service, passwordItem.account}]), kept.toUtf8());
    for (const auto& [first, second] : {std::pair(0xD83C, 0x61), std::pair(0x61, 0xD83C), std::pair(0xDF1E, 0xD83C)}) {
        const QString broken = QString(QChar(first)) + QChar(second);
        EXPECT_EQ(*store.saveSecret(broken, passwordItem.account).error().as<KeychainError>(),
                  KeychainError::encodingFailed());
    }
    EXPECT_EQ(store.readSecret(passwordItem.account).value(), kept);
}

TEST_F(KeychainStoreTest, ReadingTellsNothingFromEmptyFromUnreadable) {
    EXPECT_EQ(store.readSecret(passwordItem.account).value(), std::nullopt);
    keychain.items[{passwordItem.service, passwordItem.account}] = QByteArray();
    EXPECT_EQ(store.readSecret(passwordItem.account).value(), QString());
    const std::optional<QByteArray> unreadable[] = {std::nullopt, "\xff\xfe", "caf\xc3", "\xed\xa0\xbc"};
    for (const auto& data : unreadable) {
        keychain.items[{passwordItem.service, passwordItem.account}] = data;
        const auto read = store.readSecret(passwordItem.account);
        ASSERT_FALSE(read);
        EXPECT_EQ(*read.error().as<KeychainError>(), KeychainError::decodingFailed());
    }
}

TEST_F(KeychainStoreTest, OtherStatusesAreErrorsThatNameThem) {
    keychain.status = keychainInteractionNotAllowed;
    const auto expected = KeychainError::unexpectedStatus(-25308);
    EXPECT_EQ(*store.readSecret(passwordItem.account).error().as<KeychainError>(), expected);
    EXPECT_EQ(*store.deleteSecret(passwordItem.account).error().as<KeychainError>(), expected);
    EXPECT_EQ(*store.saveSecret(QStringLiteral("x"), passwordItem.account).error().as<KeychainError>(), expected);
    keychain.status = keychainSuccess;
    EXPECT_TRUE(store.deleteSecret(passwordItem.account)) << "nothing to delete is no failure";
    EXPECT_EQ(expected.localizedDescription(), QStringLiteral("Keychain operation failed with status -25308."));
}

TEST(FakeKeychainServices, KeepsTheContract) {
    Testing::FakeKeychainServices keychain;
    Testing::expectKeychainContract(keychain);
}

} // namespace
} // namespace Varnel
