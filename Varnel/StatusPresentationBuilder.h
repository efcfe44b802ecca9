#pragma once

#include <VarnelShared/Timestamp.h>

#include <QLocale>
#include <QString>

namespace Varnel {

/// The number and time formats of the status item, in the user's own conventions.
class StatusPresentationBuilder {
public:
    explicit StatusPresentationBuilder(const QLocale& locale = QLocale::system());

    /// A power in kW as text: "46 W" below 0.1 kW, "1.23 kW" otherwise; a negative power counts as 0.
    QString formatPowerDisplay(double kilowatts) const;

    /// An energy in kWh with two decimals: "3.50 kWh".
    QString formatEnergyDisplay(double kilowattHours) const;

    /// Hours and minutes in the 12- or 24-hour convention of the user, in the system's zone of this moment.
    QString formatTime(Timestamp instant) const;

private:
    QLocale m_locale;
    QString m_timeFormat;
};

} // namespace Varnel
