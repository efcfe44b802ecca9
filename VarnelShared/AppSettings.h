#pragma once

#include <VarnelShared/RawValueEnum.h>
#include <VarnelShared/Result.h>
#include <VarnelShared/Timestamp.h>

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <utility>

namespace Varnel {

/// How the chart's vertical axis is scaled: by the day's peak, or by the station's size.
enum class ChartScaleMode { adaptive, fixed };

template <>
struct RawValueTable<ChartScaleMode> {
    static constexpr std::array cases = {
        RawValueCase{ChartScaleMode::adaptive, "adaptive", QT_TRANSLATE_NOOP("AppSettings", "Adaptive")},
        RawValueCase{ChartScaleMode::fixed, "fixed", QT_TRANSLATE_NOOP("AppSettings", "Fixed")},
    };
};

/// Which variant of the application icon is shown; `automatic` follows the system's light or dark appearance.
enum class IconAppearanceMode { automatic, light, dark };

template <>
struct RawValueTable<IconAppearanceMode> {
    static constexpr std::array cases = {
        RawValueCase{IconAppearanceMode::automatic, "automatic", QT_TRANSLATE_NOOP("AppSettings", "Automatic")},
        RawValueCase{IconAppearanceMode::light, "light", QT_TRANSLATE_NOOP("AppSettings", "Light")},
        RawValueCase{IconAppearanceMode::dark, "dark", QT_TRANSLATE_NOOP("AppSettings", "Dark")},
    };
};

/// The user's persisted settings. The password is not among them.
struct AppSettings {
    /// The SEMS service's public API, tried when the user names no other.
    static constexpr char defaultBaseURL[] = "https://www.semsportal.com/api/";

    static constexpr std::int64_t minimumPollIntervalSeconds = 300;
    static constexpr std::int64_t maximumPollIntervalSeconds = 3600;
    static constexpr std::int64_t pollIntervalStepSeconds = 60;
    /// Both ends included.
    static constexpr std::pair pollIntervalRange{minimumPollIntervalSeconds, maximumPollIntervalSeconds};

    QString baseURL = QString::fromLatin1(defaultBaseURL);
    QString account;
    QString stationID;                                             ///< empty: discover the station automatically
    std::int64_t pollIntervalSeconds = minimumPollIntervalSeconds; ///< as stored; read it through clampedPollInterval
    bool showOutputChart = true;
    ChartScaleMode chartScaleMode = ChartScaleMode::adaptive;
    bool launchAtLogin = false;
    bool showDockIcon = false;
    IconAppearanceMode iconAppearanceMode = IconAppearanceMode::automatic;
    bool notifyOnProductionStart = false;
    bool notifyOnProductionEnd = false;
    bool notifyOnProductionRiseAboveOneKilowatt = false;

    /// The record that a first start begins with.
    static const AppSettings& defaults();

    /// `seconds` clamped into 300…3600.
    static std::int64_t clampedPollInterval(std::int64_t seconds);

    /// The stored interval clamped into 300…3600 seconds.
    std::int64_t clampedPollInterval() const { return clampedPollInterval(pollIntervalSeconds); }

    /// The same as a duration.
    Seconds pollInterval() const { return Seconds(static_cast<double>(clampedPollInterval())); }

    /// The station that is chosen, trimmed; none where it is to be discovered.
    std::optional<QString> preferredStationID() const;

    bool hasEnabledProductionNotifications() const;

    bool operator==(const AppSettings&) const = default;
};

/// The editable copy of the settings that the preferences window works on, with the password beside them: plain text,
/// which goes to the keychain and never into the settings.
struct PreferencesDraft : AppSettings {
    QString password;

    bool operator==(const PreferencesDraft&) const = default;
};

/// Compact JSON with all twelve fields as keys, in declaration order; enumerations as their raw values.
QByteArray encodeAppSettings(const AppSettings& settings);

/// Reads what `encodeAppSettings` writes. A key that is missing or null takes its default; a value of the wrong type
/// or an unknown enumeration text fails the whole decode. Nothing is clamped or trimmed, other keys are ignored.
/// Fails with `JSONError`.
Result<AppSettings> decodeAppSettings(const QByteArray& text);

} // namespace Varnel
