#include <VarnelSecurity/Linux/DesktopKeychain.h>
#include <VarnelSecurity/Linux/FileKeychain.h>

#include "../Support/EventLoop.h"
#include "FakeKeychainServices.h"
#include "KeychainContract.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace Varnel {
namespace {

using Testing::FakeKeychainServices;
const KeychainQuery query{QStringLiteral("service"), QStringLiteral("account")};

TEST(KeychainServices, TheFakeKeepsTheContract) {
    FakeKeychainServices fake;
    Testing::expectKeychainContract(fake);
}

class FileKeychainTest : public testing::Test {
protected:
    QByteArray read(const QString& name) const {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QByteArray& content) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("private/keychain.json"));
    FileKeychain keychain{path};
};

TEST_F(FileKeychainTest, KeepsTheContractInAFileOfTheOwnerAlone) {
    Testing::expectKeychainContract(keychain);
    constexpr auto others = QFileDevice::Permissions(0x0077) | QFileDevice::ExeOwner;
    EXPECT_EQ(QFileInfo(path).permissions() & others, QFileDevice::Permissions());
    EXPECT_EQ(QFileInfo(QFileInfo(path).path()).permissions() & others, QFileDevice::ExeOwner);
    EXPECT_TRUE(Testing::await(keychain.unlock(query, KeychainAccess::writing)));
}

TEST_F(FileKeychainTest, AFileThatIsNotUnderstoodIsToldAndMovedAsideBeforeTheNextItem) {
    for (const char* content :
         {"", "[]", R"({"items":{}})", R"({"items":[{"service":"a","account":"b"}]})", R"({"items":[7]})",
          R"({"items":[{"service":"a","account":"b","data":"not base64!"}]})", R"({"items":[)"}) {
        write(content);
        EXPECT_EQ(keychain.copyMatching(query).status, keychainDecodeError) << content;
        EXPECT_EQ(keychain.deleteMatching(query), keychainDecodeError);
        EXPECT_EQ(read(path), content);
        EXPECT_EQ(keychain.add(query, "secret"), keychainSuccess);
        EXPECT_EQ(read(path + QStringLiteral(".corrupt")), content);
        EXPECT_EQ(keychain.copyMatching(query).data, "secret");
    }
}

TEST_F(FileKeychainTest, WhatCannotBeReadOrWrittenIsAnInputOutputError) {
    ASSERT_TRUE(QDir().mkpath(path)); // a folder where the file would be
    EXPECT_EQ(keychain.copyMatching(query).status, keychainInputOutputError);
    EXPECT_EQ(keychain.add(query, "x"), keychainInputOutputError);
    EXPECT_EQ(keychain.deleteMatching(query), keychainInputOutputError);
}

/// What the combination does for one state of the service, with an item in the file.
struct Case {
    KeychainStatus service;
    KeychainMatch read;
    bool movedByReading;
    KeychainStatus added;
    bool addedToFile;
    KeychainStatus deleted;
};

TEST(DesktopKeychain, UsesTheFileForNewItemsOnlyWhereThereIsNoService) {
    const KeychainMatch filed{keychainSuccess, "filed"};
    const Case cases[] = {
        {keychainSuccess, filed, true, keychainSuccess, false, keychainSuccess},
        {keychainNotAvailable, filed, false, keychainSuccess, true, keychainSuccess},
        {keychainInteractionNotAllowed, filed, false, keychainInteractionNotAllowed, false,
         keychainInteractionNotAllowed},
        {keychainServiceNotResponding, filed, false, keychainServiceNotResponding, false, keychainServiceNotResponding},
    };
    const std::pair key{query.service, query.account};
    for (const Case& expected : cases) {
        SCOPED_TRACE(expected.service);
        FakeKeychainServices service;
        service.status = expected.service;
        FakeKeychainServices file;
        file.items[key] = "filed";
        DesktopKeychain keychain(service, file);
        EXPECT_EQ(keychain.copyMatching(query), expected.read);
        EXPECT_EQ(service.items.contains(key), expected.movedByReading);
        EXPECT_EQ(service.calls.contains(QStringLiteral("add")), expected.movedByReading);
        EXPECT_EQ(file.items.contains(key), !expected.movedByReading);

        file.items.clear();
        const bool nothingThere = expected.service == keychainNotAvailable;
        service.items.clear();
        EXPECT_EQ(keychain.copyMatching(query).status,
                  nothingThere || !expected.service ? keychainItemNotFound : expected.service);

        EXPECT_EQ(keychain.add(query, "new"), expected.added);
        EXPECT_EQ(file.items.contains(key), expected.addedToFile);
        file.items[key] = "filed";
        EXPECT_EQ(keychain.deleteMatching(query), expected.deleted);
        EXPECT_TRUE(file.items.isEmpty() && service.items.isEmpty()) << "deleted in both";
    }
}

TEST(DesktopKeychain, TheServiceIsReadFirstAndTheUserAskedOnlyForIt) {
    FakeKeychainServices service;
    FakeKeychainServices file;
    DesktopKeychain keychain(service, file);
    EXPECT_EQ(keychain.deleteMatching(query), keychainItemNotFound);
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
