#include <VarnelStatusMenu/Window/OutputDay.h>

#include <VarnelShared/Calendar.h>
#include <VarnelShared/PowerReading.h>

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <utility>

namespace Varnel {

namespace {

constexpr double secondsPerHour = 3600;

bool isDrawable(const OutputPoint& point) {
    return std::isfinite(point.kilowatts) && point.kilowatts <= largestPowerKW && point.at.toDateTime().isValid();
}

/// The middle one of the distances between neighbours, the shorter of two; none for fewer than two readings.
std::optional<Seconds> usualStep(const OutputCurve& readings) {
    if (readings.size() < 2) {
        return std::nullopt;
    }
    std::vector<Seconds> steps;
    steps.reserve(readings.size() - 1);
    for (std::size_t i = 1; i < readings.size(); ++i) {
        steps.push_back(readings[i].at - readings[i - 1].at);
    }
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>((steps.size() - 1) / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    return *middle;
}

/// Night is no gap that anybody misses: the service tells a zero for each of its minutes.
void dropLeadingNight(OutputCurve& curve) {
    const auto sunrise = std::find_if(curve.begin(), curve.end(), [](const OutputPoint& p) { return p.kilowatts > 0; });
    if (sunrise == curve.end()) {
        curve.clear();
    } else if (sunrise != curve.begin()) {
        curve.erase(curve.begin(), std::prev(sunrise));
    }
}

/// One gap of a day, between two readings or an end of the day and one.
struct Gap {
    Timestamp from;
    Timestamp to;
    std::optional<OutputPoint> before; ///< the reading that it begins at
    std::optional<OutputPoint> after;
};

std::vector<Gap> gapsBetween(const std::vector<OutputCurve>& measured, Timestamp from, Timestamp to) {
    std::vector<Gap> gaps;
    Gap gap{from, to, std::nullopt, std::nullopt};
    for (const OutputCurve& piece : measured) {
        gap.to = piece.front().at;
        gap.after = piece.front();
        gaps.push_back(gap);
        gap = {piece.back().at, to, piece.back(), std::nullopt};
    }
    gaps.push_back(gap);
    return gaps;
}

/// What the curve has in the gap, in pieces that are joined to the readings around it where they are near.
void fill(const Gap& gap, const OutputCurve& curve, Seconds longest, std::vector<OutputCurve>& filled) {
    OutputCurve inside;
    std::copy_if(curve.begin(), curve.end(), std::back_inserter(inside),
                 [&gap](const OutputPoint& point) { return point.at > gap.from && point.at < gap.to; });
    if (!gap.before) {
        dropLeadingNight(inside);
    }
    if (inside.empty() || gap.to - gap.from <= longest) {
        return;
    }
    if (gap.before) {
        inside.insert(inside.begin(), *gap.before);
    }
    if (gap.after) {
        inside.push_back(*gap.after);
    }
    for (OutputCurve& piece : pieces(inside, longest)) {
        const bool isReading = piece.size() == 1 && (piece.front() == gap.before || piece.front() == gap.after);
        if (!isReading) {
            filled.push_back(std::move(piece));
        }
    }
}

QString csvLine(const OutputPoint& point, const char* source) {
    const QDateTime local = point.at.toDateTime();
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODate) + QLatin1Char(',') +
           QString::number(point.kilowatts, 'f', QLocale::FloatingPointShortest) + QLatin1Char(',') +
           QLatin1String(source) + QLatin1Char('\n');
}

} // namespace

OutputCurve drawable(OutputCurve points) {
    std::erase_if(points, [](const OutputPoint& point) { return !isDrawable(point); });
    std::map<Timestamp, double> byTime;
    for (const OutputPoint& point : points) {
        byTime.insert_or_assign(point.at, std::max(point.kilowatts, 0.0));
    }
    points.clear();
    for (const auto& [at, kilowatts] : byTime) {
        points.push_back({at, kilowatts});
    }
    return points;
}

std::vector<OutputDay> outputDays(OutputCurve readings) {
    std::vector<OutputDay> days;
    std::optional<Timestamp> nextDay; // asked for once a day: conversions to local time are what costs
    for (const OutputPoint& reading : drawable(std::move(readings))) {
        if (!nextDay || reading.at >= *nextDay) {
            days.push_back({reading.at.toDateTime().date(), {}});
            nextDay = Calendar::startOfNextDay(reading.at);
        }
        days.back().readings.push_back(reading);
    }
    return days;
}

Seconds longestStep(const OutputCurve& readings, Seconds interval) {
    const Seconds ofDay = std::min(usualStep(readings).value_or(interval), longestPollInterval);
    return 2 * std::max(interval, ofDay);
}

std::vector<OutputCurve> pieces(const OutputCurve& curve, Seconds longest) {
    std::vector<OutputCurve> found;
    for (const OutputPoint& point : curve) {
        if (found.empty() || point.at - found.back().back().at > longest) {
            found.emplace_back();
        }
        found.back().push_back(point);
    }
    return found;
}

DrawnDay drawnDay(const OutputCurve& readings, const OutputCurve& ofService, Seconds interval, Timestamp from,
                  Timestamp to) {
    const Seconds longest = longestStep(readings, interval);
    DrawnDay day{pieces(readings, longest), {}};
    const OutputCurve curve = drawable(ofService);
    for (const Gap& gap : gapsBetween(day.measured, from, to)) {
        fill(gap, curve, longest, day.filled);
    }
    return day;
}

double energyKWh(const std::vector<OutputCurve>& curves) {
    double energy = 0;
    for (const OutputCurve& curve : curves) {
        for (std::size_t i = 1; i < curve.size(); ++i) {
            const double hours = (curve[i].at - curve[i - 1].at).count() / secondsPerHour;
            energy += hours * (curve[i].kilowatts + curve[i - 1].kilowatts) / 2;
        }
    }
    return energy;
}

std::optional<OutputPoint> peakOf(const DrawnDay& day) {
    std::optional<OutputPoint> peak;
    for (const std::vector<OutputCurve>* curves : {&day.measured, &day.filled}) {
        for (const OutputCurve& curve : *curves) {
            for (const OutputPoint& point : curve) {
                const bool isHigher = !peak || point.kilowatts > peak->kilowatts;
                const bool isEarlier = peak && point.kilowatts == peak->kilowatts && point.at < peak->at;
                peak = isHigher || isEarlier ? point : peak;
            }
        }
    }
    return peak;
}

QString csvText(const DrawnDay& day) {
    std::map<Timestamp, QString> lines;
    for (const OutputCurve& curve : day.measured) {
        for (const OutputPoint& point : curve) {
            lines.emplace(point.at, csvLine(point, "measured"));
        }
    }
    for (const OutputCurve& curve : day.filled) {
        for (const OutputPoint& point : curve) {
            lines.emplace(point.at, csvLine(point, "service")); // never in place of a reading that it begins at
        }
    }
    QString text = QStringLiteral("time,kW,source\n");
    for (const auto& [at, line] : lines) {
        text += line;
    }
    return text;
}

} // namespace Varnel
