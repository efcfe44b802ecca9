#include <VarnelShared/PrivateFiles.h>

#include "../Support/Files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace Varnel {
namespace {

using Testing::contentOf;
using Testing::putFile;

class PrivateFilesTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("file"));
    QString other = folder.filePath(QStringLiteral("other"));
    QString kept = path + QStringLiteral(".damaged");
};

TEST_F(PrivateFilesTest, OnlyARegularFileOfSaneSizeIsRead) {
    constexpr qint64 limit = 4;
    EXPECT_EQ(readRegularFile(path, limit).value(), std::nullopt);
    for (const char* content : {"", "1234"}) {
        putFile(other, content);
        QFile::link(other, path);
        EXPECT_EQ(readRegularFile(path, limit).value(), content) << "through the link";
    }
    putFile(other, "12345");
    EXPECT_FALSE(readRegularFile(path, limit));
    EXPECT_FALSE(readRegularFile(folder.path(), limit));
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    EXPECT_FALSE(readRegularFile(pipe, limit));
}

TEST_F(PrivateFilesTest, TheNewestDamagedFileIsKeptAndStaysInItsPlaceUntilItIsReplaced) {
    EXPECT_FALSE(keepAsDamaged(path)) << "there is none";
    for (const char* content : {"older", "newer"}) {
        putFile(path, content);
        for (int i = 0; i < 2; ++i) { // as after a replacement that failed
            EXPECT_TRUE(keepAsDamaged(path));
            EXPECT_EQ(contentOf(path), content);
            EXPECT_EQ(contentOf(kept), content);
        }
        EXPECT_TRUE(writeFileAtomically(path, "replaced"));
        EXPECT_EQ(contentOf(kept), content);
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 2);
    }
    putFile(other, "linked");
    QFile::remove(path);
    QFile::link(other, path);
    EXPECT_TRUE(keepAsDamaged(path));
    EXPECT_TRUE(writeFileAtomically(path, "replaced"));
    EXPECT_EQ(contentOf(kept), "linked");
}

TEST_F(PrivateFilesTest, WhatCannotStayInItsPlaceGoes) {
    QDir().mkpath(path + QStringLiteral("/inside"));
    EXPECT_TRUE(keepAsDamaged(path));
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_TRUE(QFileInfo::exists(kept + QStringLiteral("/inside")));
    QDir().mkpath(path);
    EXPECT_FALSE(keepAsDamaged(path)) << "nothing is thrown away for it";
    EXPECT_TRUE(QFileInfo::exists(path));
}

} // namespace
} // namespace Varnel
