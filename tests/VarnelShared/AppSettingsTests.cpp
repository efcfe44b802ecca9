#include <VarnelShared/AppSettings.h>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

AppSettings decoded(const char* text) {
    const Result<AppSettings> settings = decodeAppSettings(text);
    EXPECT_TRUE(settings.has_value()) << text;
    return settings.value_or(AppSettings());
}

TEST(AppSettings, EncodesTheTwelveKeysInOrder) {
    AppSettings settings;
    settings.account = QStringLiteral("jörg@example.com");
    settings.chartScaleMode = ChartScaleMode::fixed;
    settings.notifyOnProductionEnd = true;
    EXPECT_EQ(encodeAppSettings(settings).toStdString(),
              "{\"baseURL\":\"https://www.semsportal.com/api/\",\"account\":\"jörg@example.com\",\"stationID\":\"\","
              "\"pollIntervalSeconds\":300,\"showOutputChart\":true,\"chartScaleMode\":\"fixed\","
              "\"launchAtLogin\":false,\"showDockIcon\":false,\"iconAppearanceMode\":\"automatic\","
              "\"notifyOnProductionStart\":false,\"notifyOnProductionEnd\":true,"
              "\"notifyOnProductionRiseAboveOneKilowatt\":false}");
}

TEST(AppSettings, RoundTripsEveryField) {
    AppSettings settings;
    settings.baseURL = QStringLiteral("https://example.com/api/");
    settings.account = QStringLiteral(" \"quoted\" \\ \n ");
    settings.stationID = QStringLiteral("42");
    settings.pollIntervalSeconds = -7;
    settings.showOutputChart = false;
    settings.chartScaleMode = ChartScaleMode::fixed;
    settings.launchAtLogin = true;
    settings.showDockIcon = true;
    settings.iconAppearanceMode = IconAppearanceMode::dark;
    settings.notifyOnProductionStart = true;
    settings.notifyOnProductionEnd = true;
    settings.notifyOnProductionRiseAboveOneKilowatt = true;
    EXPECT_EQ(decoded(encodeAppSettings(settings).constData()), settings);
}

TEST(AppSettings, MissingAndNullKeysTakeTheirDefaults) {
    EXPECT_EQ(decoded("{}"), AppSettings::defaults());
    EXPECT_EQ(decoded(R"({"account": null, "later": {"key": []}})"), AppSettings::defaults());
    AppSettings expected;
    expected.pollIntervalSeconds = 30;
    EXPECT_EQ(decoded(R"({"pollIntervalSeconds": 30})"), expected);
}

TEST(AppSettings, AWrongTypeOrAnUnknownCaseFailsTheWholeDecode) {
    for (const char* text : {"", "[]", "3", "{", R"({"chartScaleMode": "Fixed"})", R"({"iconAppearanceMode": ""})",
                             R"({"pollIntervalSeconds": "300"})", R"({"pollIntervalSeconds": 300.5})",
                             R"({"pollIntervalSeconds": true})", R"({"pollIntervalSeconds": 9223372036854775808})",
                             R"({"showDockIcon": 1})", R"({"account": 5})", R"({"chartScaleMode": 0})"}) {
        EXPECT_FALSE(decodeAppSettings(text).has_value()) << text;
    }
}

TEST(AppSettings, ClampsTheIntervalOnlyWhenAsked) {
    const std::pair<std::int64_t, std::int64_t> rows[] = {{INT64_MIN, 300}, {30, 300},    {300, 300},       {301, 301},
                                                          {3600, 3600},     {7200, 3600}, {INT64_MAX, 3600}};
    for (const auto& [stored, clamped] : rows) {
        AppSettings settings;
        settings.pollIntervalSeconds = stored;
        EXPECT_EQ(settings.clampedPollInterval(), clamped);
        EXPECT_EQ(settings.pollIntervalSeconds, stored);
    }
}

TEST(AppSettings, AnyOneFlagEnablesNotifications) {
    EXPECT_FALSE(AppSettings::defaults().hasEnabledProductionNotifications());
    for (bool AppSettings::*flag : {&AppSettings::notifyOnProductionStart, &AppSettings::notifyOnProductionEnd,
                                    &AppSettings::notifyOnProductionRiseAboveOneKilowatt}) {
        AppSettings settings;
        settings.*flag = true;
        EXPECT_TRUE(settings.hasEnabledProductionNotifications());
    }
}

} // namespace
} // namespace Varnel
