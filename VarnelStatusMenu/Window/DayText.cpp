#include <VarnelStatusMenu/Window/DayText.h>

#include <VarnelShared/Text.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QGuiApplication>
#include <QLocale>

namespace Varnel {

namespace {

QString translated(const char* sentence) {
    return QCoreApplication::translate("OutputWindow", sentence);
}

/// Reads from left to right also in the middle of a sentence that does not: "3.42 kW".
QString isolated(const QString& quantity) {
    constexpr QChar leftToRightIsolate(0x2066);
    constexpr QChar popIsolate(0x2069);
    return QGuiApplication::isRightToLeft() ? leftToRightIsolate + quantity + popIsolate : quantity;
}

std::size_t countOf(const std::vector<OutputCurve>& curves) {
    std::size_t count = 0;
    for (const OutputCurve& curve : curves) {
        count += curve.size();
    }
    return count;
}

} // namespace

QString dateText(QDate date, bool isToday) {
    const QString text = QLocale().toString(date, QLocale::LongFormat);
    return isToday ? translated(QT_TRANSLATE_NOOP("OutputWindow", "Today, %1")).arg(text) : text;
}

QString peakText(const DrawnDay& day) {
    const std::optional<OutputPoint> peak = peakOf(day);
    if (!peak) {
        return translated(QT_TRANSLATE_NOOP("OutputWindow", "Peak: none yet"));
    }
    const QLocale locale;
    return translated(QT_TRANSLATE_NOOP("OutputWindow", "Peak: %1 at %2"))
        .arg(isolated(kilowattsText(peak->kilowatts, locale)),
             locale.toString(peak->at.toDateTime().time(), hoursAndMinutesFormat(locale)));
}

QString energyText(const DrawnDay& day, std::optional<double> countedKWh) {
    const QLocale locale;
    if (countedKWh) {
        return translated(QT_TRANSLATE_NOOP("OutputWindow", "Energy: %1"))
            .arg(isolated(kilowattHoursText(*countedKWh, locale)));
    }
    return translated(QT_TRANSLATE_NOOP("OutputWindow", "Energy under the curve: %1"))
        .arg(isolated(kilowattHoursText(energyKWh(day.measured) + energyKWh(day.filled), locale)));
}

QString dayDescription(const DrawnDay& day, std::optional<double> countedKWh) {
    QStringList sentences{peakText(day), energyText(day, countedKWh),
                          translated(QT_TRANSLATE_NOOP("OutputWindow", "Readings: %1"))
                              .arg(QLocale().toString(static_cast<qulonglong>(countOf(day.measured))))};
    if (day.measured.size() > 1) {
        sentences << translated(QT_TRANSLATE_NOOP("OutputWindow", "Gaps: %1"))
                         .arg(QLocale().toString(static_cast<qulonglong>(day.measured.size() - 1)));
    }
    return sentences.join(QStringLiteral(". "));
}

} // namespace Varnel
