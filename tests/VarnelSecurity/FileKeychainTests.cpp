#include <VarnelSecurity/Linux/FileKeychain.h>

#include "../Support/EventLoop.h"
#include "../Support/Files.h"
#include "KeychainContract.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <functional>
#include <sys/stat.h>

namespace Varnel {
namespace {

using Testing::passwordItem;

using Testing::contentOf;
using Testing::putFile;
using Testing::RecordedLog;

class FileKeychainTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("private/keychain.json"));
    QString kept = path + QStringLiteral(".damaged");
    FileKeychain keychain{path};
};

TEST_F(FileKeychainTest, KeepsTheContractInAFileOfTheOwnerAlone) {
    Testing::expectKeychainContract(keychain);
    constexpr auto others = QFileDevice::Permissions(0x0077) | QFileDevice::ExeOwner;
    EXPECT_EQ(QFileInfo(path).permissions() & others, QFileDevice::Permissions());
    EXPECT_EQ(QFileInfo(QFileInfo(path).path()).permissions() & others, QFileDevice::ExeOwner);
    EXPECT_TRUE(Testing::await(keychain.unlock(passwordItem, KeychainAccess::writing)));
}

TEST_F(FileKeychainTest, OthersRightsAreTakenAwayWhenTheFileIsMet) {
    EXPECT_EQ(keychain.add(passwordItem, "secret"), keychainSuccess);
    chmod(qPrintable(path), 0644);
    chmod(qPrintable(QFileInfo(path).path()), 0755);
    EXPECT_EQ(keychain.copyMatching(passwordItem).data, "secret");
    constexpr QFileDevice::Permissions others(0x0077);
    EXPECT_EQ(QFileInfo(path).permissions() & others, 0);
    EXPECT_EQ(QFileInfo(QFileInfo(path).path()).permissions() & others, 0);
}

TEST_F(FileKeychainTest, AFileThatIsNotUnderstoodIsToldAndKeptBesideTheNextItem) {
    for (const char* content :
         {"", "[]", R"({"items":{}})", R"({"items":[{"service":"a","account":"b"}]})", R"({"items":[7]})",
          R"({"items":[{"service":"a","account":"b","data":"not base64!"}]})", R"({"items":[)"}) {
        putFile(path, content);
        EXPECT_EQ(keychain.copyMatching(passwordItem).status, keychainDecodeError) << content;
        EXPECT_EQ(keychain.deleteMatching(passwordItem), keychainDecodeError);
        EXPECT_EQ(contentOf(path), content);
        const RecordedLog log;
        EXPECT_EQ(keychain.add(passwordItem, "secret"), keychainSuccess);
        EXPECT_EQ(contentOf(kept), content);
        EXPECT_EQ(log.lines.size(), 1);
        EXPECT_EQ(keychain.copyMatching(passwordItem).data, "secret");
    }
}

TEST_F(FileKeychainTest, WhatCannotBeReadOrWrittenIsAnInputOutputErrorAndNotWaitedFor) {
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"a folder", [this] { QDir().mkpath(path); }},
        {"a pipe", [this] { ASSERT_EQ(mkfifo(qPrintable(path), 0600), 0); }},
        {"too large", [this] { putFile(path, R"({"items":[]})" + QByteArray(1'048'576, ' ')); }},
    };
    QDir().mkpath(QFileInfo(path).path());
    for (const auto& [name, happens] : rows) {
        SCOPED_TRACE(name);
        happens();
        EXPECT_EQ(keychain.copyMatching(passwordItem).status, keychainInputOutputError);
        EXPECT_EQ(keychain.deleteMatching(passwordItem), keychainInputOutputError);
        EXPECT_TRUE(QFileInfo::exists(path));
        EXPECT_EQ(keychain.add(passwordItem, "secret"), keychainSuccess);
        EXPECT_TRUE(QFileInfo::exists(kept));
        EXPECT_EQ(keychain.copyMatching(passwordItem).data, "secret");
        QFile::remove(path);
        QDir().rmdir(kept);
    }
    EXPECT_EQ(keychain.add(passwordItem, "secret"), keychainSuccess);
    const Testing::FullDisk disk;
    EXPECT_EQ(keychain.add(passwordItem, "newer"), keychainInputOutputError);
    EXPECT_EQ(keychain.deleteMatching(passwordItem), keychainInputOutputError);
    EXPECT_EQ(keychain.copyMatching(passwordItem).data, "secret");
}

} // namespace
} // namespace Varnel
