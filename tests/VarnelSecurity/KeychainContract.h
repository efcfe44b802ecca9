#pragma once

#include "../Support/EventLoop.h"

#include <VarnelSecurity/KeychainServices.h>

#include <gtest/gtest.h>

namespace Varnel::Testing {

/// The item that the tests keep.
inline const KeychainQuery passwordItem{QStringLiteral("com.varnel.menubar"),
                                        QStringLiteral("password.me@example.com")};

/// What every keychain without these items owes its callers.
inline void expectKeychainContract(KeychainServices& keychain) {
    const KeychainQuery mine{QStringLiteral("contract"), QStringLiteral("password.jürgen")};
    const KeychainQuery other{QStringLiteral("contract.other"), mine.account};
    EXPECT_EQ(keychain.copyMatching(mine), KeychainMatch());
    EXPECT_EQ(keychain.deleteMatching(mine), keychainItemNotFound);

    EXPECT_EQ(keychain.add(other, "other"), keychainSuccess);
    settle();
    for (const QByteArray& data : {QByteArray("first"), QByteArray("\xff p\xc3\xa4ss\n\"\\", 9), QByteArray("")}) {
        EXPECT_EQ(keychain.add(mine, data), keychainSuccess);
        EXPECT_EQ(keychain.copyMatching(mine), (KeychainMatch{keychainSuccess, data}));
        settle();
    }
    EXPECT_EQ(keychain.deleteMatching(mine), keychainSuccess);
    EXPECT_EQ(keychain.copyMatching(mine).status, keychainItemNotFound);
    EXPECT_EQ(keychain.copyMatching(other).data, "other");
    EXPECT_EQ(keychain.deleteMatching(other), keychainSuccess);
}

} // namespace Varnel::Testing
