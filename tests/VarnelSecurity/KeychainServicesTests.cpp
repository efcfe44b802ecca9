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
