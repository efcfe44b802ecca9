#pragma once

#include <VarnelShared/AppSettings.h>

namespace Varnel {

/// The editable copy of the settings that the preferences window works on, with the password beside them.
struct PreferencesDraft {
    QString baseURL;
    QString account;
    QString password; ///< plain text; goes to the keychain, never into the settings
    QString stationID;
    std::int64_t pollIntervalSeconds = AppSettings::minimumPollIntervalSeconds;
    bool showOutputChart = true;
    ChartScaleMode chartScaleMode = ChartScaleMode::adaptive;
    bool launchAtLogin = false;
    bool showDockIcon = false;
    IconAppearanceMode iconAppearanceMode = IconAppearanceMode::automatic;
    bool notifyOnProductionStart = false;
    bool notifyOnProductionEnd = false;
    bool notifyOnProductionRiseAboveOneKilowatt = false;

    bool operator==(const PreferencesDraft&) const = default;
};

} // namespace Varnel
