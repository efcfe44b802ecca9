#include <VarnelShared/Text.h>

#include <QLocale>
#include <QRegularExpression>
#include <QTextBoundaryFinder>

namespace Varnel {

QString firstCharacters(const QString& text, int count) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (int found = 0; found < count; ++found) {
        if (finder.toNextBoundary() < 0) {
            return text;
        }
    }
    return text.left(finder.position());
}

QString kilowattsText(double kilowatts, const QLocale& locale) {
    return locale.toString(kilowatts, 'f', 2) + QStringLiteral(" kW");
}

QString kilowattHoursText(double kilowattHours, const QLocale& locale) {
    return locale.toString(kilowattHours, 'f', 2) + QLatin1String(" kWh");
}

QString hoursAndMinutesFormat(const QLocale& locale) {
    static const QRegularExpression seconds(QStringLiteral("[:.]s{1,2}"));
    return locale.timeFormat(QLocale::ShortFormat).remove(seconds);
}

} // namespace Varnel
