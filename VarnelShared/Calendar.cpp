#include <VarnelShared/Calendar.h>

namespace Varnel::Calendar {

Timestamp startOfDay(Timestamp instant) {
    const QDateTime local = instant.toDateTime();
    return local.isValid() ? Timestamp::fromDateTime(local.date().startOfDay()) : instant;
}

std::optional<Timestamp> startOfNextDay(Timestamp instant) {
    const QDateTime local = instant.toDateTime();
    if (!local.isValid()) {
        return std::nullopt;
    }
    return Timestamp::fromDateTime(local.date().addDays(1).startOfDay());
}

bool isSameDay(Timestamp one, Timestamp other) {
    const QDate day = one.toDateTime().date();
    return day.isValid() && day == other.toDateTime().date();
}

std::optional<Timestamp> addingDays(Timestamp instant, int days) {
    const QDateTime moved = instant.toDateTime().addDays(days);
    return moved.isValid() ? std::optional(Timestamp::fromDateTime(moved)) : std::nullopt;
}

} // namespace Varnel::Calendar
