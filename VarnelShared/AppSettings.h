#pragma once

#include <VarnelShared/ChartScaleMode.h>
#include <VarnelShared/IconAppearanceMode.h>
#include <VarnelShared/Result.h>

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <utility>

namespace Varnel {

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

    bool hasEnabledProductionNotifications() const;

    bool operator==(const AppSettings&) const = default;
};

/// Compact JSON with all twelve fields as keys, in declaration order; enumerations as their raw values.
QByteArray encodeAppSettings(const AppSettings& settings);

/// Reads what `encodeAppSettings` writes. A key that is missing or null takes its default; a value of the wrong type
/// or an unknown enumeration text fails the whole decode. Nothing is clamped or trimmed, other keys are ignored.
/// Fails with `JSONError`.
Result<AppSettings> decodeAppSettings(const QByteArray& text);

} // namespace Varnel
