#pragma once

#include <VarnelSEMS/SEMSPowerSeries.h>
#include <VarnelShared/JSON.h>
#include <VarnelShared/Result.h>

#include <QDate>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace Varnel {

/// A solar installation of the account.
struct PowerStation {
    QString id; ///< as the service gives it, never empty
    std::optional<QString> name;
    std::optional<double> capacityKW; ///< rated size in kW

    bool operator==(const PowerStation&) const = default;
};

/// Finds power, energy, series, stations and envelope fields anywhere in a reply of the service, whose key names,
/// units and nesting differ between its generations and regions. Stateless; only `extractInstantPowerKW` can fail.
/// Keys match in normalised form: lower-cased, every "_" removed. Members are visited in document order.
class SEMSJSONSearch {
public:
    /// The current power in kW as found, negative while the inverter draws power. Fails with
    /// `SEMSAPIError::noInstantPower`.
    static Result<double> extractInstantPowerKW(const JSON& root);

    /// Today's energy in kWh, or none when no key matches.
    static std::optional<double> extractTodayOutputKWh(const JSON& root);

    /// The energy in kWh of one day in a reply of a day call: what `extractTodayOutputKWh` finds, else a total named
    /// generation, else the entry of that day in a list of days. None when there is none of these.
    static std::optional<double> extractDayOutputKWh(const JSON& dayResponse, const QDate& day);

    /// Today's power curve, one value per sample in time order and none below 0; none when no candidate has two values
    /// or more.
    static std::optional<SEMSDaySeries> extractTodayPowerSeries(const JSON& root);

    /// The same, the values in kW alone.
    static std::optional<std::vector<double>> extractTodayPowerSeriesKW(const JSON& root);

    /// For each key in turn: the first member anywhere that has it, or for a key with "." what `value` finds. The first
    /// of these that is of the wanted kind is the answer, whatever the depths. `firstString` gives texts trimmed, which
    /// may leave them empty, and numbers as text; `firstInt` and `firstBool` also read texts.
    static std::optional<QString> firstString(const JSON& root, const QStringList& keys);
    static std::optional<std::int64_t> firstInt(const JSON& root, const QStringList& keys);
    static std::optional<bool> firstBool(const JSON& root, const QStringList& keys);

    /// A pointer into `root`, valid as long as it; null when there is none.
    static const JSON* firstDictionary(const JSON& root, const QStringList& keys);

    /// Follows a dotted path of keys from object to object, "data.info.pac"; null when a step is missing. Valid as
    /// long as `root`.
    static const JSON* value(const JSON& root, const QString& path);

    /// Every station of the reply in document order, the same id once: a later entry adds the name and the size that
    /// the earlier ones left out.
    static std::vector<PowerStation> extractStations(const JSON& root);

    /// The rated size in kW of the station that a reply is about, not of one of its inverters: that of the first object
    /// with a station's identifier, else of the first with a size. None when nothing outside what is named for
    /// inverters tells one.
    static std::optional<double> extractStationCapacityKW(const JSON& root);
};

} // namespace Varnel
