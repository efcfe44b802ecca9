#pragma once

#include <QDateTime>

#include <chrono>
#include <compare>

namespace Varnel {

/// A duration in seconds, with fraction.
using Seconds = std::chrono::duration<double>;

/// An instant, kept as the double that the history file holds so that it comes back bit for bit.
struct Timestamp {
    double secondsSinceReferenceDate = 0; ///< seconds since 2001-01-01 00:00:00 UTC

    /// 2001-01-01 00:00:00 UTC in seconds since 1970-01-01 00:00:00 UTC.
    static constexpr double referenceDateUnixSeconds = 978307200.0;

    static Timestamp fromDateTime(const QDateTime& dateTime);

    /// The instant to the millisecond in the system's zone of this moment; an invalid QDateTime where the instant
    /// lies outside the years 1 to 9999 or is not a number. For display and calendar work only.
    QDateTime toDateTime() const;

    friend Timestamp operator+(Timestamp instant, Seconds duration) {
        return {instant.secondsSinceReferenceDate + duration.count()};
    }
    friend Timestamp operator-(Timestamp instant, Seconds duration) { return instant + -duration; }
    friend Seconds operator-(Timestamp later, Timestamp earlier) {
        return Seconds(later.secondsSinceReferenceDate - earlier.secondsSinceReferenceDate);
    }

    auto operator<=>(const Timestamp&) const = default;
};

} // namespace Varnel
