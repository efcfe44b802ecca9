#include <VarnelShared/AppSettings.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

AppSettings decoded(const char* text) {
    const Result<AppSettings> settings = decodeAppSettings(text);
    EXPECT_TRUE(settings.has_value()) << text;
    return settings.value_or(AppSettings());
}

TEST(AppSettings, TheTwelveKeysAreWrittenInOrderAndReadBack) {
    AppSettings settings;
    settings.baseURL = QStringLiteral("https://example.com/api/");
    settings.account = QStringLiteral(" \"jörg\" \\ \n ");
    settings.stationID = QStringLiteral("42");
    settings.pollIntervalSeconds = -7;
    settings.showOutputChart = false;
    settings.chartScaleMode = ChartScaleMode::fixed;
    settings.launchAtLogin = true;
    settings.iconAppearanceMode = IconAppearanceMode::dark;
    settings.notifyOnProductionEnd = true;
    const char text[] = R"({"baseURL":"https://example.com/api/","account":" \"jörg\" \\ \n ","stationID":"42",)"
                        R"("pollIntervalSeconds":-7,"showOutputChart":false,"chartScaleMode":"fixed",)"
                        R"("launchAtLogin":true,"showDockIcon":false,"iconAppearanceMode":"dark",)"
                        R"("notifyOnProductionStart":false,"notifyOnProductionEnd":true,)"
                        R"("notifyOnProductionRiseAboveOneKilowatt":false})";
    EXPECT_EQ(encodeAppSettings(settings).toStdString(), text);
    EXPECT_EQ(decoded(text), settings);
    EXPECT_TRUE(decoded(R"({"showDockIcon":true})").showDockIcon);
}

TEST(AppSettings, MissingAndNullKeysTakeTheirDefaults) {
    EXPECT_EQ(decoded("{}"), AppSettings::defaults());
    EXPECT_EQ(decoded(R"({"account": null, "later": {"key": []}})"), AppSettings::defaults());
    AppSettings expected;
    expected.pollIntervalSeconds = 30;
    EXPECT_EQ(decoded(R"({"pollIntervalSeconds": 30})"), expected);
}

TEST(AppSettings, AWholeNumberIsAnIntegerHoweverItIsWritten) {
    for (const char* written : {"600", "600.0", "6e2", "6.0E+2", "6000e-1"}) {
        const QByteArray text = QByteArray(R"({"pollIntervalSeconds":)") + written + '}';
        EXPECT_EQ(decoded(text.constData()).pollIntervalSeconds, 600) << written;
    }
    EXPECT_EQ(decoded(R"({"pollIntervalSeconds":-9223372036854775808.0})").pollIntervalSeconds, INT64_MIN);
}

TEST(AppSettings, AWrongTypeOrAnUnknownCaseFailsTheWholeDecode) {
    for (const char* text :
         {"", "[]", "3", "{", R"({"chartScaleMode": "Fixed"})", R"({"iconAppearanceMode": ""})",
          R"({"pollIntervalSeconds": "300"})", R"({"pollIntervalSeconds": 300.5})", R"({"pollIntervalSeconds": true})",
          R"({"pollIntervalSeconds": 9223372036854775808})", R"({"pollIntervalSeconds": 9223372036854775808.0})",
          R"({"showDockIcon": 1})", R"({"account": 5})", R"({"chartScaleMode": 0})"}) {
        EXPECT_FALSE(decodeAppSettings(text).has_value()) << text;
    }
}

TEST(AppSettings, AnyOneFlagEnablesNotifications) {
    EXPECT_FALSE(AppSettings::defaults().hasEnabledProductionNotifications());
    for (const char* flag : {"Start", "End", "RiseAboveOneKilowatt"}) {
        const QByteArray text = QByteArray(R"({"notifyOnProduction)") + flag + "\":true}";
        EXPECT_TRUE(decoded(text.constData()).hasEnabledProductionNotifications()) << flag;
    }
}

} // namespace
} // namespace Varnel
