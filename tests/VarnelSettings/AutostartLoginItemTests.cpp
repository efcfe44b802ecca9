#include <VarnelSettings/LaunchAtLoginManager.h>
#include <VarnelSettings/Linux/AutostartLoginItem.h>

#include "../Support/EventLoop.h"
#include "../Support/Files.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace Varnel {
namespace {

class AutostartLoginItemTest : public testing::Test {
protected:
    void SetUp() override { write(executable, "#!/bin/sh\ntouch \"$(dirname \"$0\")/started\"\n"); }

    static void write(const QString& path, const QByteArray& content) {
        Testing::putFile(path, content);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QByteArray entry() const { return Testing::contentOf(entryPath); }

    QTemporaryDir folder;
    QString autostart = folder.filePath(QStringLiteral("config/autostart"));
    QString entryPath = autostart + QStringLiteral("/com.example.solar.desktop");
    QString executable = folder.filePath(QStringLiteral("odd dir/\"pro\" $HOME `x` \\ é'/solar"));
    AutostartLoginItem item{autostart, QStringLiteral("com.example.solar"), executable};
    LaunchAtLoginManager manager{item, QStringLiteral("com.example.solar")};
};

TEST_F(AutostartLoginItemTest, TogglingTwiceMakesNoFurtherChange) {
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
    ASSERT_TRUE(manager.setEnabled(true));
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
    EXPECT_TRUE(manager.isEnabledForUI());
    const QByteArray written = entry();
    const QDateTime writtenAt = QFileInfo(entryPath).lastModified();
    ASSERT_TRUE(manager.setEnabled(true));
    EXPECT_EQ(entry(), written);
    EXPECT_EQ(QFileInfo(entryPath).lastModified(), writtenAt);
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(manager.setEnabled(false));
        EXPECT_EQ(QDir(autostart).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 0);
    }
}

TEST_F(AutostartLoginItemTest, TheEntryIsValidAndStartsTheProgramWhateverItsPath) {
    ASSERT_TRUE(item.registerItem());
    EXPECT_EQ(QProcess::execute(QStringLiteral("desktop-file-validate"), {entryPath}), 0);
    EXPECT_EQ(QProcess::execute(QStringLiteral("gio"), {QStringLiteral("launch"), entryPath}), 0);
    const QString trace = QFileInfo(executable).path() + QStringLiteral("/started");
    EXPECT_TRUE(Testing::waitUntil([&] { return QFile::exists(trace); })) << entry().toStdString();

    const QString percent = folder.filePath(QStringLiteral("100%f")); // gio itself cannot start such a program
    write(percent, "");
    AutostartLoginItem other(autostart, QStringLiteral("com.example.solar"), percent);
    ASSERT_TRUE(other.registerItem());
    EXPECT_TRUE(entry().contains("100%%f\"\n"));
    EXPECT_TRUE(entry().contains("\nTryExec=" + percent.toUtf8() + '\n'));
    EXPECT_EQ(other.status(), LoginItemStatus::enabled);
}

TEST_F(AutostartLoginItemTest, AnEntryDisabledByTheSessionIsLeftAlone) {
    for (const char* content : {"[Desktop Entry]\nHidden=true\n",
                                "[Desktop Entry]\nType=Application\nExec=/gone\nX-GNOME-Autostart-enabled=false\n"}) {
        write(entryPath, content);
        EXPECT_EQ(item.status(), LoginItemStatus::requiresApproval);
        EXPECT_TRUE(manager.isEnabledForUI());
        EXPECT_TRUE(manager.setEnabled(true));
        EXPECT_EQ(entry(), content);
    }
    EXPECT_TRUE(manager.setEnabled(false));
    EXPECT_FALSE(QFile::exists(entryPath));
}

TEST_F(AutostartLoginItemTest, AnEntryThatStartsNothingIsWrittenAnew) {
    ASSERT_TRUE(item.registerItem());
    ASSERT_TRUE(QFile::remove(executable));
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
    for (const char* content : {"[Desktop Entry]\nType=Application\n", "[Desktop Entry]\nExec=\"unterminated\n",
                                "[Desktop Entry]\nExec=\n", "no entry at all"}) {
        write(entryPath, content);
        write(executable, "");
        EXPECT_FALSE(manager.isEnabledForUI()) << content;
        EXPECT_TRUE(manager.setEnabled(true));
        EXPECT_EQ(item.status(), LoginItemStatus::enabled);
    }
}

TEST_F(AutostartLoginItemTest, FailuresCarryTheSystemsMessage) {
    write(autostart, "a file where the folder would be");
    EXPECT_EQ(item.status(), LoginItemStatus::notFound);
    EXPECT_FALSE(manager.isEnabledForUI());
    EXPECT_EQ(manager.setEnabled(true).error().localizedDescription(),
              QStringLiteral("Launch at login update failed: Not a directory"));

    ASSERT_TRUE(QFile::remove(autostart));
    ASSERT_TRUE(QDir().mkpath(entryPath)); // a folder where the entry would be
    EXPECT_FALSE(manager.setEnabled(true));
    EXPECT_TRUE(QFileInfo(entryPath).isDir());

    ASSERT_TRUE(QDir().rmdir(entryPath));
    ASSERT_EQ(mkfifo(qPrintable(entryPath), 0600), 0);
    EXPECT_EQ(item.status(), LoginItemStatus::notFound);
    EXPECT_TRUE(manager.setEnabled(true));
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
}

TEST_F(AutostartLoginItemTest, NeedsABundledApp) {
    LaunchAtLoginManager unbundled(item, std::nullopt);
    EXPECT_EQ(unbundled.setEnabled(true).error().localizedDescription(),
              QStringLiteral("Launch at login requires running as a bundled app."));
    EXPECT_EQ(entry(), QByteArray());
}

} // namespace
} // namespace Varnel
