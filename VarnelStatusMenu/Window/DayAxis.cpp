#include <VarnelStatusMenu/Window/DayAxis.h>

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <array>

namespace Varnel {

namespace {

constexpr qreal sideRoom = 4;    // between the outermost points and the chart's edges
constexpr qreal labelGap = 16;   // at least, between two labels
constexpr qreal labelTopGap = 3; // between the chart's lower edge and its labels
constexpr int minutesPerDay = 24 * 60;
constexpr Seconds aroundLonePoint{1800};

constexpr std::array<int, 9> minutesBetweenMarks = {5, 15, 30, 60, 120, 180, 240, 360, 720};

std::vector<Timestamp> marksEvery(int minutes, const DayAxis& axis) {
    std::vector<Timestamp> marks;
    const QDate date = axis.from.toDateTime().date();
    for (int minute = 0; minute < minutesPerDay; minute += minutes) {
        const QTime time(minute / 60, minute % 60);
        const Timestamp mark = Timestamp::fromDateTime(QDateTime(date, time));
        // A time that the clocks skip comes back as another.
        if (mark.toDateTime().time() == time && mark >= axis.from && mark <= axis.to) {
            marks.push_back(mark);
        }
    }
    return marks;
}

} // namespace

std::optional<DayAxis> axisOf(const DrawnDay& day, std::optional<Timestamp> end) {
    std::optional<DayAxis> axis;
    for (const std::vector<OutputCurve>* curves : {&day.measured, &day.filled}) {
        for (const OutputCurve& curve : *curves) {
            const DayAxis own{curve.front().at, curve.back().at};
            axis = axis ? DayAxis{std::min(axis->from, own.from), std::max(axis->to, own.to)} : own;
        }
    }
    if (!axis) {
        return std::nullopt;
    }
    axis->to = std::max(axis->to, end.value_or(axis->to));
    if (axis->from == axis->to) {
        return DayAxis{axis->from - aroundLonePoint, axis->to + aroundLonePoint};
    }
    return axis;
}

qreal placeOnAxis(Timestamp at, const DayAxis& axis, const QRectF& chartRect) {
    const qreal share = (at - axis.from) / (axis.to - axis.from);
    return chartRect.left() + sideRoom + (chartRect.width() - 2 * sideRoom) * share;
}

std::vector<Timestamp> axisMarks(const DayAxis& axis, int most) {
    for (const int minutes : minutesBetweenMarks) {
        if ((axis.to - axis.from) / Seconds(minutes * 60) >= most + 1) {
            continue; // spares asking for each of them
        }
        std::vector<Timestamp> marks = marksEvery(minutes, axis);
        if (static_cast<int>(marks.size()) <= most) {
            return marks;
        }
    }
    return {};
}

std::vector<PlacedText> placedAxisLabels(const DayAxis& axis, const QRectF& chartRect, const TextSize& textSize,
                                         const QString& timeFormat) {
    const QLocale locale;
    const qreal widest = textSize(locale.toString(QTime(22, 44), timeFormat)).width();
    const int most = std::max(1, static_cast<int>(chartRect.width() / (widest + labelGap)));
    std::vector<PlacedText> placed;
    for (const Timestamp mark : axisMarks(axis, most)) {
        const QString text = locale.toString(mark.toDateTime().time(), timeFormat);
        const QSizeF size = textSize(text);
        const qreal left = std::clamp(placeOnAxis(mark, axis, chartRect) - size.width() / 2, chartRect.left(),
                                      std::max(chartRect.left(), chartRect.right() - size.width()));
        placed.push_back({text, QRectF(QPointF(left, lowerEdge(chartRect) - size.height() - labelTopGap), size)});
    }
    return placed;
}

} // namespace Varnel
