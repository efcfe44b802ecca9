#include <VarnelSettings/AppSettingsStore.h>
#include <VarnelSettings/Linux/IniUserDefaults.h>

#include <gmock/gmock.h>

#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTemporaryDir>

namespace Varnel {
namespace {

const QString key = QStringLiteral("varnel.settings.v1");

class FakeUserDefaults final : public UserDefaults {
public:
    std::optional<QByteArray> data(const QString& name) const override {
        return values.contains(name) ? std::optional(values[name]) : std::nullopt;
    }
    void setData(const QString& name, const QByteArray& bytes) override { values[name] = bytes; }

    QMap<QString, QByteArray> values;
};

AppSettings unusualSettings() {
    AppSettings settings;
    settings.baseURL = QStringLiteral("http://127.0.0.1:1/a=b;c,d%20\"\\");
    settings.account = QStringLiteral("Jürgen@example.com");
    settings.pollIntervalSeconds = 30;
    settings.chartScaleMode = ChartScaleMode::fixed;
    settings.notifyOnProductionEnd = true;
    return settings;
}

/// What every implementation of the port owes the store.
void expectContract(UserDefaults& defaults) {
    AppSettingsStore store(defaults);
    EXPECT_EQ(store.load(), AppSettings::defaults());
    store.save(unusualSettings());
    EXPECT_EQ(store.load(), unusualSettings());
    EXPECT_EQ(defaults.data(key), encodeAppSettings(unusualSettings()));

    for (const char* foreign : {"[]", "{", "", "\xff\x00", R"({"chartScaleMode": "Fixed"})"}) {
        defaults.setData(key, foreign);
        EXPECT_EQ(store.load(), AppSettings::defaults()) << foreign;
        EXPECT_EQ(defaults.data(key), QByteArray(foreign)) << "kept until the next save";
    }
    store.save(AppSettings::defaults());
    EXPECT_EQ(store.load(), AppSettings::defaults());
    EXPECT_EQ(defaults.data(QStringLiteral("another")), std::nullopt);
}

TEST(AppSettingsStore, KeepsTheRecordInAnyUserDefaults) {
    FakeUserDefaults fake;
    expectContract(fake);
    const QTemporaryDir folder;
    IniUserDefaults ini(folder.filePath(QStringLiteral("defaults.ini")));
    expectContract(ini);
}

class IniUserDefaultsTest : public testing::Test {
protected:
    void write(const QByteArray& content) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QByteArray read() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("a/b/defaults.ini"));
};

TEST_F(IniUserDefaultsTest, WritesAtOnceIntoAPrivateFolder) {
    IniUserDefaults defaults(path);
    EXPECT_FALSE(QFile::exists(path));
    AppSettingsStore(defaults).save(AppSettings::defaults());
    EXPECT_THAT(
        read().toStdString(),
        testing::HasSubstr(R"(varnel.settings.v1="@ByteArray({\"baseURL\":\"https://www.semsportal.com/api/\")"));
    for (const char* made : {"a", "a/b"}) {
        EXPECT_EQ(QFileInfo(folder.filePath(QLatin1String(made))).permissions() & QFileDevice::Permissions(0x0077),
                  QFileDevice::Permissions())
            << made;
    }
    EXPECT_EQ(IniUserDefaults(path).data(key), encodeAppSettings(AppSettings::defaults()));
}

TEST_F(IniUserDefaultsTest, OtherKindsOfValueCountAsAbsentAndStay) {
    for (const char* value :
         {R"("{\"pollIntervalSeconds\": 30}")", "42", "a, b", "@Variant(broken", "@Rect(1 2 3 4)"}) {
        const QByteArray content = QByteArray("[General]\nvarnel.settings.v1=") + value + "\nother=kept\n";
        write(content);
        IniUserDefaults defaults(path);
        EXPECT_EQ(AppSettingsStore(defaults).load(), AppSettings::defaults()) << value;
        EXPECT_EQ(read(), content);
    }
    write("\x00\xff not an INI file at all \n[");
    IniUserDefaults defaults(path);
    AppSettingsStore(defaults).save(unusualSettings());
    IniUserDefaults reopened(path);
    EXPECT_EQ(AppSettingsStore(reopened).load(), unusualSettings());
}

TEST_F(IniUserDefaultsTest, AFileThatCannotBeWrittenKeepsTheValueForThisRun) {
    const QString blocker = folder.filePath(QStringLiteral("a"));
    ASSERT_TRUE(QFile(blocker).open(QIODevice::WriteOnly)); // a file where the folder would be
    IniUserDefaults unwritable(path);
    AppSettingsStore store(unwritable);
    store.save(unusualSettings());
    EXPECT_EQ(store.load(), unusualSettings());
    EXPECT_FALSE(QFile::exists(path));
}

} // namespace
} // namespace Varnel
