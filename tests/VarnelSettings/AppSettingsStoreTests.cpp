#include <VarnelSettings/AppSettingsStore.h>
#include <VarnelSettings/UserDefaults.h>

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

class UserDefaultsTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a/b/defaults.ini"));
};

TEST_F(UserDefaultsTest, WritesTheRecordAtOnceIntoAPrivateFolder) {
    UserDefaults defaults(path);
    AppSettingsStore store(defaults);
    EXPECT_EQ(store.load(), AppSettings::defaults());
    EXPECT_FALSE(QFile::exists(path));
    store.save(AppSettings::defaults());
    EXPECT_THAT(
        contentOf(path).toStdString(),
        testing::HasSubstr(R"(varnel.settings.v1="@ByteArray({\"baseURL\":\"https://www.semsportal.com/api/\")"));
    const QFileDevice::Permissions others(0x0077);
    for (const char* made : {"a", "a/b"}) {
        EXPECT_EQ(QFileInfo(folder.filePath(QLatin1String(made))).permissions() & others, 0) << made;
    }
    store.save(unusualSettings());
    EXPECT_EQ(store.load(), unusualSettings());
    EXPECT_EQ(UserDefaults(path).data(key), encodeAppSettings(unusualSettings()));
}

TEST_F(UserDefaultsTest, AForeignRecordYieldsTheDefaultsAndIsKeptUntilTheNextSave) {
    UserDefaults defaults(path);
    AppSettingsStore store(defaults);
    for (const char* foreign : {"[]", "{", "", "\xff\x00", R"({"chartScaleMode": "Fixed"})"}) {
        defaults.setData(key, foreign);
        EXPECT_EQ(store.load(), AppSettings::defaults()) << foreign;
        EXPECT_EQ(defaults.data(key), QByteArray(foreign));
    }
    store.save(unusualSettings());
    EXPECT_EQ(store.load(), unusualSettings());
    EXPECT_EQ(defaults.data(QStringLiteral("another")), std::nullopt);
}

TEST_F(UserDefaultsTest, OtherKindsOfValueCountAsAbsentAndStay) {
    for (const char* value : {R"("{\"pollIntervalSeconds\": 30}")", "42", "a, b", "@Variant(broken"}) {
        const QByteArray content = QByteArray("[General]\nvarnel.settings.v1=") + value + "\nother=kept\n";
        putFile(path, content);
        UserDefaults defaults(path);
        EXPECT_EQ(AppSettingsStore(defaults).load(), AppSettings::defaults()) << value;
        EXPECT_EQ(contentOf(path), content);
    }
    putFile(path, "\x00\xff not an INI file at all \n[");
    UserDefaults defaults(path);
    AppSettingsStore(defaults).save(unusualSettings());
    UserDefaults reopened(path);
    EXPECT_EQ(AppSettingsStore(reopened).load(), unusualSettings());
}

TEST_F(UserDefaultsTest, AFileThatCannotBeWrittenKeepsTheValueForThisRun) {
    const QString blocker = folder.filePath(QStringLiteral("a"));
    putFile(blocker, "a file where the folder would be");
    UserDefaults unwritable(path);
    AppSettingsStore store(unwritable);
    store.save(unusualSettings());
    EXPECT_EQ(store.load(), unusualSettings());
    EXPECT_FALSE(QFile::exists(path));
}

} // namespace
} // namespace Varnel
