#pragma once

#include <simulator/ServiceRequest.h>
#include <simulator/Station.h>

#include <VarnelShared/JSON.h>
#include <VarnelShared/RawValueEnum.h>

#include <QDateTime>

#include <functional>

/// What the service tells of a station, in every form that its generations and regions have.
namespace Varnel::Simulator {

/// How power and energy are written.
enum class UnitStyle { wattsAndUnit, kilowattsAndUnit, watts, kilowatts, wattText, kilowattText, commaText };

/// Whether the members bear the names of the portal's usual replies or those of another generation.
enum class KeyStyle { usual, renamed };

enum class DetailSize { usual, large };

/// The three forms in which a day is told.
enum class DayForm { samples, lines, totals };

/// The form of the replies; what they tell stays the same.
struct ReplyShape {
    UnitStyle units = UnitStyle::watts; ///< as the service writes them: the power in watts, without a unit
    KeyStyle keys = KeyStyle::usual;
    DetailSize detailSize = DetailSize::usual;
    DayForm dayForm = DayForm::samples;
    int nesting = 0;               ///< further objects around the data of a monitor detail, up to 100
    bool detailTellsEnergy = true; ///< false leaves today's energy out of a monitor detail
    bool powerTexts = true;        ///< false leaves the inverters' texts such as "381W" out of it

    bool operator==(const ReplyShape&) const = default;
};

/// The part of a station list that a request asks for.
struct ListPage {
    int index = 1; ///< counted from 1
    int size = 20;
};

/// One day of a station.
struct DayRecord {
    QDate date;
    QTime until;                          ///< samples later than this do not exist yet
    std::function<double(QTime)> powerKW; ///< the power at a time of day
    double energyKWh = 0;                 ///< made until then
};

/// The data of a station list; "record" counts all stations, whatever the page shows.
JSON stationList(const std::vector<StationReading>& readings, ListPage page, Family family, const ReplyShape& shape);

/// The data of a monitor detail, the same in both families: the station, its key figures, the weather, the inverters
/// with their registers and texts, the power flow, and the flags and nulls among which the real ones are found.
JSON monitorDetail(const StationReading& reading, const ReplyShape& shape, const QDateTime& now);

/// The data of a day call: a sample every five minutes, or the total alone.
JSON dayOutput(const DayRecord& day, const ReplyShape& shape);

} // namespace Varnel::Simulator

namespace Varnel {

template <>
struct RawValueTable<Simulator::UnitStyle> {
    static constexpr std::array cases = {
        RawValueCase{Simulator::UnitStyle::wattsAndUnit, "watts-and-unit", "3420.0 beside a unit field"},
        RawValueCase{Simulator::UnitStyle::kilowattsAndUnit, "kilowatts-and-unit", "3.42 beside a unit field"},
        RawValueCase{Simulator::UnitStyle::watts, "watts", "3420.0"},
        RawValueCase{Simulator::UnitStyle::kilowatts, "kilowatts", "3.42"},
        RawValueCase{Simulator::UnitStyle::wattText, "watt-text", "\"3420 W\""},
        RawValueCase{Simulator::UnitStyle::kilowattText, "kilowatt-text", "\"3.42 kW\""},
        RawValueCase{Simulator::UnitStyle::commaText, "comma-text", "\"3,42 kW\""},
    };
};

template <>
struct RawValueTable<Simulator::KeyStyle> {
    static constexpr std::array cases = {
        RawValueCase{Simulator::KeyStyle::usual, "usual", "pac, eday, capacity"},
        RawValueCase{Simulator::KeyStyle::renamed, "renamed", "Current_Power, Today_Energy, installedCapacity"},
    };
};

template <>
struct RawValueTable<Simulator::DetailSize> {
    static constexpr std::array cases = {
        RawValueCase{Simulator::DetailSize::usual, "usual", "about 3.5 KB"},
        RawValueCase{Simulator::DetailSize::large, "large", "about 24 KB"},
    };
};

template <>
struct RawValueTable<Simulator::DayForm> {
    static constexpr std::array cases = {
        RawValueCase{Simulator::DayForm::samples, "samples", "a list of dates and watts"},
        RawValueCase{Simulator::DayForm::lines, "lines", "curves over the time of day, gaps as null"},
        RawValueCase{Simulator::DayForm::totals, "totals", "one total a day"},
    };
};

} // namespace Varnel
