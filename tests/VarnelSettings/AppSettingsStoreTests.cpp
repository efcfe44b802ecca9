#include <VarnelSettings/AppSettingsStore.h>

#include "../Support/Files.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace Varnel {
namespace {

using Testing::contentOf;
using Testing::putFile;

const QString key = QStringLiteral("varnel.settings.v1");

AppSettings unusualSettings() {
    AppSettings settings;
    settings.baseURL = QStringLiteral("http://127.0.0.1:1/a=b;c,d%20\"\\");
    settings.account = QStringLiteral("Jürgen@example.com");
    settings.pollIntervalSeconds = 30;
    settings.chartScaleMode = ChartScaleMode::fixed;
    settings.notifyOnProductionEnd = true;
    return settings;
}

class AppSettingsStoreTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a/b/defaults.ini"));
};

TEST_F(AppSettingsStoreTest, WritesTheRecordAtOnce) {
    UserDefaults defaults(path);
    AppSettingsStore store(defaults);
    EXPECT_EQ(store.load(), AppSettings::defaults());
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(store.save(AppSettings::defaults()));
    EXPECT_THAT(
        contentOf(path).toStdString(),
        testing::HasSubstr(R"(varnel.settings.v1="@ByteArray({\"baseURL\":\"https://www.semsportal.com/api/\")"));
    EXPECT_TRUE(store.save(unusualSettings()));
    EXPECT_EQ(store.load(), unusualSettings());
    EXPECT_EQ(UserDefaults(path).data(key), encodeAppSettings(unusualSettings()));
}

TEST_F(AppSettingsStoreTest, AForeignRecordYieldsTheDefaultsAndIsKeptBesideTheNextSave) {
    for (const char* foreign :
         {"@ByteArray([])", "@ByteArray({)", "@ByteArray()", R"(@ByteArray({\"showDockIcon\":1}))",
          R"({\"pollIntervalSeconds\": 30})", "42", "a, b", "@Variant(broken"}) {
        SCOPED_TRACE(foreign);
        const QByteArray content = QByteArray("[General]\nother=kept\nvarnel.settings.v1=\"") + foreign + "\"\n";
        putFile(path, content);
        UserDefaults defaults(path);
        AppSettingsStore store(defaults);
        EXPECT_EQ(store.load(), AppSettings::defaults());
        EXPECT_EQ(contentOf(path), content);

        const Testing::RecordedLog log;
        EXPECT_TRUE(store.save(unusualSettings()));
        EXPECT_TRUE(store.save(unusualSettings()));
        EXPECT_EQ(contentOf(path + QStringLiteral(".damaged")), content);
        EXPECT_EQ(log.lines.size(), 1);
        UserDefaults reopened(path);
        EXPECT_EQ(AppSettingsStore(reopened).load(), unusualSettings());
        EXPECT_TRUE(contentOf(path).contains("other=kept"));
    }
}

TEST_F(AppSettingsStoreTest, ASignOutIsRememberedUntilTheUserConnects) {
    const auto isSignedOut = [this] {
        UserDefaults ofAnotherRun(path);
        return AppSettingsStore(ofAnotherRun).isSignedOut();
    };
    UserDefaults defaults(path);
    AppSettingsStore store(defaults);
    EXPECT_TRUE(store.setSignedOut(false));
    EXPECT_FALSE(QFile::exists(path)) << "nothing to remember";
    EXPECT_FALSE(isSignedOut());
    EXPECT_TRUE(store.setSignedOut(true));
    EXPECT_TRUE(store.save(unusualSettings()));
    EXPECT_TRUE(isSignedOut());
    EXPECT_TRUE(store.setSignedOut(false));
    EXPECT_FALSE(isSignedOut());
    EXPECT_EQ(store.load(), unusualSettings());
    for (const char* junk : {"", "1", "yes", "TRUE", "true ", "\xff"}) {
        EXPECT_TRUE(defaults.setData(QStringLiteral("varnel.signedOut"), junk));
        EXPECT_FALSE(isSignedOut()) << junk;
    }
}

} // namespace
} // namespace Varnel
