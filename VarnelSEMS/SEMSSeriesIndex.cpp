#include <VarnelSEMS/SEMSSeriesIndex.h>

#include <VarnelShared/Text.h>

#include <QRegularExpression>

namespace Varnel {

namespace {
/// Grows with the days of either form of date; 0 without one.
int dayOrder(const QRegularExpressionMatch& match) {
    const bool isYearFirst = match.capturedLength(1) == 4;
    const int year = match.captured(isYearFirst ? 1 : 3).toInt();
    const int month = match.captured(isYearFirst ? 2 : 1).toInt();
    const int day = match.captured(isYearFirst ? 3 : 2).toInt();
    return (year * 12 + month) * 31 + day;
}

std::optional<SEMSSeriesIndex> clockIndex(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral(
        R"(^\s*(?:(\d{1,4})\D{1,3}(\d{1,2})\D{1,3}(\d{1,4})\D{1,3})?(\d{1,2})\s*:\s*(\d{2})(?:\s*:\s*(\d{2}))?)"));
    const QRegularExpressionMatch match = pattern.match(text);
    const int hour = match.captured(4).toInt();
    const int minute = match.captured(5).toInt();
    if (!match.hasMatch() || hour > 24 || minute > 59) {
        return std::nullopt;
    }
    const int minuteOfDay = hour * 60 + minute;
    return SEMSSeriesIndex{dayOrder(match) * 86400.0 + minuteOfDay * 60.0 + match.captured(6).toInt(), minuteOfDay};
}
} // namespace

std::optional<SEMSSeriesIndex> parsedSeriesIndex(const QString& text) {
    if (const std::optional<SEMSSeriesIndex> clock = clockIndex(text)) {
        return clock;
    }
    static const QRegularExpression pattern(QStringLiteral(R"(^(?:hour|minute|time|point|h|t|p)?_?(\d{1,15})$)"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(trimmed(text));
    return match.hasMatch() ? std::optional(SEMSSeriesIndex{match.captured(1).toDouble(), std::nullopt}) : std::nullopt;
}

} // namespace Varnel
