#pragma once

#include <VarnelShared/JSON.h>
#include <VarnelShared/RawValueEnum.h>

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
    UnitStyle units = UnitStyle::wattsAndUnit;
    KeyStyle keys = KeyStyle::usual;
    DetailSize detailSize = DetailSize::usual;
    DayForm dayForm = DayForm::samples;
    int nesting = 0;               ///< further objects around the data of a monitor detail
    bool detailTellsEnergy = true; ///< false leaves today's energy out of a monitor detail

    bool operator==(const ReplyShape&) const = default;
};

/// Sets `key`, and with some styles `key` + "_unit", to a power.
void setPower(JSON& object, const std::string& key, double kilowatts, UnitStyle style);

/// Sets `key`, and with some styles `key` + "_unit", to an energy.
void setEnergy(JSON& object, const std::string& key, double kilowattHours, UnitStyle style);

/// The same tree with the names that `keys` asks for.
JSON withKeyStyle(JSON value, KeyStyle keys);

/// The same tree without today's energy, at any depth.
JSON withoutTodayEnergy(JSON value);

/// Rounded to three decimals, as the service writes numbers.
double rounded(double value);

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
        RawValueCase{Simulator::DetailSize::usual, "usual", "about 3 KB"},
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
