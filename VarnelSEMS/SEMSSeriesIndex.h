#pragma once

#include <QString>

#include <optional>

namespace Varnel {

/// Where a sample stands in its series, read from its key or its time text.
struct SEMSSeriesIndex {
    double order = 0;               ///< grows with time within one series
    std::optional<int> minuteOfDay; ///< known when the text names a time of day

    bool operator==(const SEMSSeriesIndex&) const = default;
};

/// Reads "12:05", "06/21/2025 12:05:00" (month first) and "2025-06-21T12:05", with spaces anywhere, and whole numbers
/// with or without a word of time before them ("7", "hour_7", "t0935"); none for any other text.
std::optional<SEMSSeriesIndex> parsedSeriesIndex(const QString& text);

} // namespace Varnel
