#include <VarnelSecurity/Linux/DesktopKeychain.h>

#include "../Support/EventLoop.h"
#include "FakeKeychainServices.h"
#include "KeychainContract.h"

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Testing::passwordItem;

using Testing::FakeKeychainServices;

class DesktopKeychainTest : public testing::Test {
protected:
    FakeKeychainServices service;
    FakeKeychainServices file;
    DesktopKeychain keychain{service, file};
};

TEST_F(DesktopKeychainTest, UsesTheFileForNewItemsOnlyWhereThereIsNoService) {
    const struct {
        KeychainStatus service;
        bool movesWhatItReads;
        QByteArray filedAfterAdding; ///< where an older secret was filed; empty: nothing
        KeychainStatus nothingFiled; ///< what reading gives with nothing in the file
        KeychainStatus changed;      ///< what adding and deleting give
    } rows[] = {
        {keychainSuccess, true, "", keychainItemNotFound, keychainSuccess},
        {keychainNotAvailable, false, "new", keychainItemNotFound, keychainSuccess},
        {keychainInteractionNotAllowed, false, "older", keychainInteractionNotAllowed, keychainInteractionNotAllowed},
        {keychainServiceNotResponding, false, "older", keychainServiceNotResponding, keychainServiceNotResponding},
    };
    const std::pair key{passwordItem.service, passwordItem.account};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.service);
        service.status = row.service;
        file.items[key] = "filed";
        EXPECT_EQ(keychain.copyMatching(passwordItem), (KeychainMatch{keychainSuccess, "filed"}));
        EXPECT_EQ(service.items.contains(key), row.movesWhatItReads);
        EXPECT_EQ(file.items.contains(key), !row.movesWhatItReads);

        file.items.clear();
        service.items.clear();
        EXPECT_EQ(keychain.copyMatching(passwordItem).status, row.nothingFiled);
        file.items[key] = "older";
        EXPECT_EQ(keychain.add(passwordItem, "new"), row.changed);
        EXPECT_EQ(file.copyMatching(passwordItem).data.value_or(""), row.filedAfterAdding);
        file.items[key] = "filed";
        EXPECT_EQ(keychain.deleteMatching(passwordItem), row.changed);
        EXPECT_TRUE(file.items.isEmpty() && service.items.isEmpty()) << "deleted in both";
    }
}

TEST_F(DesktopKeychainTest, WhatTheFileHoldsIsNewerThanWhatTheServiceHolds) {
    Testing::expectKeychainContract(keychain);
    service.add(passwordItem, "older");
    service.status = keychainNotAvailable;
    EXPECT_EQ(keychain.add(passwordItem, "newer"), keychainSuccess);
    service.status = keychainInteractionNotAllowed;
    EXPECT_EQ(keychain.copyMatching(passwordItem).data, "newer") << "not served from behind a lock";
    EXPECT_TRUE(Testing::await(keychain.unlock(passwordItem, KeychainAccess::reading)));
    EXPECT_FALSE(service.calls.contains(QStringLiteral("unlock"))) << "reading needs no answer of the user";
    service.status = keychainSuccess;
    EXPECT_EQ(keychain.copyMatching(passwordItem).data, "newer");
    EXPECT_EQ(service.copyMatching(passwordItem).data, "newer");
    EXPECT_TRUE(file.items.isEmpty());
    EXPECT_EQ(keychain.copyMatching(passwordItem).data, "newer");
}

TEST_F(DesktopKeychainTest, ASaveHoldsOnlyWhenTheFileHasNoOlderSecretLeft) {
    file.add(passwordItem, "older");
    file.deleteStatus = keychainInputOutputError;
    EXPECT_EQ(keychain.add(passwordItem, "newer"), keychainInputOutputError) << "the older one would be read first";
    file.status = keychainDecodeError;
    EXPECT_EQ(keychain.add(passwordItem, "newer"), keychainSuccess) << "nothing can be read there";
    EXPECT_EQ(keychain.copyMatching(passwordItem).data, "newer");
}

TEST_F(DesktopKeychainTest, DeletingUnlocksTheServiceAndTellsThatSomethingMayBeLeft) {
    const struct {
        const char* name;
        bool wasInService;
        KeychainStatus service;
        KeychainStatus file;
        KeychainStatus expected;
    } rows[] = {
        {"both", true, keychainSuccess, keychainSuccess, keychainSuccess},
        {"locked", true, keychainInteractionNotAllowed, keychainSuccess, keychainInteractionNotAllowed},
        {"hanging", true, keychainServiceNotResponding, keychainSuccess, keychainServiceNotResponding},
        {"the service that had it is gone", true, keychainNotAvailable, keychainSuccess, keychainNotAvailable},
        {"there never was a service", false, keychainNotAvailable, keychainSuccess, keychainSuccess},
        {"no disk", true, keychainSuccess, keychainInputOutputError, keychainInputOutputError},
        {"no disk, no service", false, keychainNotAvailable, keychainInputOutputError, keychainInputOutputError},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        FakeKeychainServices someService;
        FakeKeychainServices someFile;
        DesktopKeychain both(someService, someFile);
        if (row.wasInService) {
            someService.add(passwordItem, "secret");
            EXPECT_EQ(both.copyMatching(passwordItem).data, "secret");
        }
        someFile.add(passwordItem, "secret");
        someService.status = row.service;
        EXPECT_EQ(Testing::await(both.unlock(passwordItem, KeychainAccess::deleting)), row.service == keychainSuccess);
        someFile.status = row.file;
        EXPECT_EQ(both.deleteMatching(passwordItem), row.expected);
        EXPECT_EQ(someFile.items.isEmpty(), row.file == keychainSuccess);
    }
}

} // namespace
} // namespace Varnel
