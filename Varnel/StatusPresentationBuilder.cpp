#include <Varnel/StatusPresentationBuilder.h>

#include <VarnelShared/Text.h>

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace Varnel {

namespace {
constexpr double smallestShownInKilowatts = 0.1;
constexpr double wattsPerKilowatt = 1000.0;

/// The short format without seconds, which only the C locale has in it.
QString hoursAndMinutesFormat(const QLocale& locale) {
    static const QRegularExpression seconds(QStringLiteral("[:.]s{1,2}"));
    return locale.timeFormat(QLocale::ShortFormat).remove(seconds);
}
} // namespace

StatusPresentationBuilder::StatusPresentationBuilder(const QLocale& locale)
    : m_locale(locale)
    , m_timeFormat(hoursAndMinutesFormat(locale)) {}

QString StatusPresentationBuilder::formatPowerDisplay(double kilowatts) const {
    const double shown = std::max(kilowatts, 0.0);
    if (shown < smallestShownInKilowatts) {
        return QString::number(std::lround(shown * wattsPerKilowatt)) + QLatin1String(" W");
    }
    return kilowattsText(shown, m_locale);
}

QString StatusPresentationBuilder::formatEnergyDisplay(double kilowattHours) const {
    return m_locale.toString(kilowattHours, 'f', 2) + QLatin1String(" kWh");
}

QString StatusPresentationBuilder::formatTime(Timestamp instant) const {
    return m_locale.toString(instant.toDateTime().time(), m_timeFormat);
}

} // namespace Varnel
