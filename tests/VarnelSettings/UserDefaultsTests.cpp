#include <VarnelSettings/UserDefaults.h>

#include "../Support/Files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <sys/stat.h>

namespace Varnel {
namespace {

using Testing::contentOf;
using Testing::FullDisk;
using Testing::putFile;
using Testing::RecordedLog;

const QString someKey = QStringLiteral("a.someKey");
const QString otherKey = QStringLiteral("another.someKey");
constexpr QFileDevice::Permissions others(0x0077);

class UserDefaultsTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a/b/defaults.ini"));
    QString kept = path + QStringLiteral(".damaged");
};

TEST_F(UserDefaultsTest, TheFileAndItsFoldersAreTheOwnersAlone) {
    UserDefaults defaults(path);
    EXPECT_TRUE(defaults.setData(someKey, "value"));
    for (const char* made : {"a", "a/b", "a/b/defaults.ini"}) {
        EXPECT_EQ(QFileInfo(folder.filePath(QString::fromLatin1(made))).permissions() & others, 0) << made;
    }
    chmod(qPrintable(path), 0644);
    chmod(qPrintable(QFileInfo(path).path()), 0755);
    EXPECT_EQ(UserDefaults(path).data(someKey), "value");
    EXPECT_EQ(QFileInfo(path).permissions() & others, 0);
    EXPECT_EQ(QFileInfo(QFileInfo(path).path()).permissions() & others, 0);
}

TEST_F(UserDefaultsTest, WhatIsNoSuchFileIsNotWaitedForAndKeptWhenItIsWrittenOver) {
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"no INI file", [this] { putFile(path, "\x89PNG\r\n\x1a\n"); }},
        {"a line that is none", [this] { putFile(path, "[General]\nbroken\nanother.someKey=\"@ByteArray(kept)\"\n"); }},
        {"too large", [this] { putFile(path, "[General]\na.someKey=@ByteArray(x)\n;" + QByteArray(1'048'576, 'x')); }},
        {"a pipe", [this] { ASSERT_EQ(mkfifo(qPrintable(path), 0600), 0); }},
        {"a folder", [this] { QDir().mkpath(path + QStringLiteral("/inside")); }},
    };
    for (const auto& [name, happens] : rows) {
        SCOPED_TRACE(name);
        QDir(folder.filePath(QStringLiteral("a"))).removeRecursively();
        QDir().mkpath(QFileInfo(path).path());
        happens();
        struct stat before{};
        stat(qPrintable(path), &before);

        const RecordedLog log;
        UserDefaults defaults(path);
        EXPECT_EQ(defaults.data(someKey), std::nullopt);
        EXPECT_FALSE(QFileInfo::exists(kept)) << "reading moves nothing";
        EXPECT_TRUE(defaults.setData(someKey, "value"));
        EXPECT_TRUE(defaults.setData(otherKey, "new"));
        struct stat after{};
        ASSERT_EQ(stat(qPrintable(kept), &after), 0);
        EXPECT_EQ(after.st_ino, before.st_ino);
        EXPECT_EQ(UserDefaults(path).data(someKey), "value");
        EXPECT_EQ(log.lines.size(), 1) << qPrintable(log.lines.join(u'\n'));
    }
}

TEST_F(UserDefaultsTest, WhatADamagedFileStillTellsIsKept) {
    putFile(path, "[General]\nbroken\nanother.someKey=\"@ByteArray(told)\"\n");
    UserDefaults defaults(path);
    EXPECT_EQ(defaults.data(otherKey), "told");
    EXPECT_TRUE(defaults.setData(someKey, "value"));
    EXPECT_EQ(UserDefaults(path).data(otherKey), "told");
}

TEST_F(UserDefaultsTest, AFullDiskIsToldOnceAndTheNextChangeWritesWhatWasNotWritten) {
    UserDefaults defaults(path);
    EXPECT_TRUE(defaults.setData(someKey, "before"));
    const QByteArray before = contentOf(path);
    const RecordedLog log;
    {
        const FullDisk disk;
        EXPECT_FALSE(defaults.setData(someKey, "unsaved"));
        EXPECT_FALSE(defaults.setData(otherKey, "unsaved too"));
        EXPECT_EQ(defaults.data(someKey), "unsaved");
        EXPECT_EQ(contentOf(path), before);
    }
    EXPECT_EQ(log.lines.filter(QStringLiteral("could not be written")).size(), 1) << qPrintable(log.lines.join(u'\n'));
    EXPECT_TRUE(defaults.setData(otherKey, "saved"));
    UserDefaults reopened(path);
    EXPECT_EQ(reopened.data(someKey), "unsaved");
    EXPECT_EQ(reopened.data(otherKey), "saved");
}

TEST_F(UserDefaultsTest, AFolderThatCannotBeMadeKeepsTheValueForThisRun) {
    putFile(folder.filePath(QStringLiteral("a")), "a file where the folder would be");
    UserDefaults defaults(path);
    const Result<void> written = defaults.setData(someKey, "value");
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().localizedDescription(), QStringLiteral("Not a directory"));
    EXPECT_EQ(defaults.data(someKey), "value");
    EXPECT_TRUE(defaults.contains(someKey));
}

} // namespace
} // namespace Varnel
