#pragma once

#include <VarnelShared/Timestamp.h>

#include <optional>

/// Calendar questions, answered in the time zone that the system has at the moment of the call: a change of the
/// zone takes effect at once. An instant outside the years 1 to 9999 belongs to no day.
namespace Varnel::Calendar {

/// The first instant of the local day (01:00 where clocks skip midnight); an instant of no day is its own start.
Timestamp startOfDay(Timestamp instant);

/// The first instant of the local day after the one of `instant`; none for an instant of no day.
std::optional<Timestamp> startOfNextDay(Timestamp instant);

bool isSameDay(Timestamp one, Timestamp other);

/// The same local time of day `days` calendar days later (earlier when negative); none where there is no such date.
std::optional<Timestamp> addingDays(Timestamp instant, int days);

} // namespace Varnel::Calendar
