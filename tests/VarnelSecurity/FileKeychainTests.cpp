#include <VarnelSecurity/Linux/FileKeychain.h>

#include "../Support/EventLoop.h"
#include "KeychainContract.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace Varnel {
namespace {

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

} // namespace
} // namespace Varnel
