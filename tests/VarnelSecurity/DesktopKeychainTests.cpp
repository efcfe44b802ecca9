#include <VarnelSecurity/Linux/DesktopKeychain.h>

#include "../Support/EventLoop.h"
#include "FakeKeychainServices.h"
#include "KeychainContract.h"

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Testing::FakeKeychainServices;
const KeychainQuery query{QStringLiteral("service"), QStringLiteral("account")};

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
    const std::pair key{query.service, query.account};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.service);
        service.status = row.service;
        file.items[key] = "filed";
        EXPECT_EQ(keychain.copyMatching(query), (KeychainMatch{keychainSuccess, "filed"}));
        EXPECT_EQ(service.items.contains(key), row.movesWhatItReads);
        EXPECT_EQ(file.items.contains(key), !row.movesWhatItReads);

        file.items.clear();
        service.items.clear();
        EXPECT_EQ(keychain.copyMatching(query).status, row.nothingFiled);
        file.items[key] = "older";
        EXPECT_EQ(keychain.add(query, "new"), row.changed);
        EXPECT_EQ(file.copyMatching(query).data.value_or(""), row.filedAfterAdding);
        file.items[key] = "filed";
        EXPECT_EQ(keychain.deleteMatching(query), row.changed);
        EXPECT_TRUE(file.items.isEmpty() && service.items.isEmpty()) << "deleted in both";
    }
}

TEST_F(DesktopKeychainTest, TheServiceIsReadFirstAndTheUserAskedOnlyForIt) {
    Testing::expectKeychainContract(keychain);
    file.add(query, "old");
    EXPECT_TRUE(Testing::await(keychain.unlock(query, KeychainAccess::reading)));
    EXPECT_FALSE(service.calls.contains(QStringLiteral("unlock")));
    service.add(query, "new");
    EXPECT_EQ(keychain.copyMatching(query).data, "new");
    EXPECT_TRUE(Testing::await(keychain.unlock(query, KeychainAccess::writing)));
    EXPECT_TRUE(service.calls.contains(QStringLiteral("unlock")));
    file.status = keychainInputOutputError;
    EXPECT_EQ(keychain.deleteMatching(query), keychainInputOutputError) << "something may be left";
}

} // namespace
} // namespace Varnel
