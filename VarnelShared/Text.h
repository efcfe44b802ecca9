#pragma once

#include <QString>

class QLocale;

namespace Varnel {

/// The text without Unicode white space and newlines at both ends. Accounts, station identifiers, base URLs and
/// passwords are compared and stored in this form.
inline QString trimmed(const QString& text) {
    return text.trimmed();
}

/// The first `count` characters as a person counts them: neither a surrogate pair nor a letter and its accent is split.
QString firstCharacters(const QString& text, int count);

/// A power as "1.23 kW": two decimals, in the number format of `locale`.
QString kilowattsText(double kilowatts, const QLocale& locale);

/// An energy as "3.50 kWh": two decimals, in the number format of `locale`.
QString kilowattHoursText(double kilowattHours, const QLocale& locale);

/// The short time format of `locale`, in its 12- or 24-hour convention and without the seconds that only the C locale
/// has in it.
QString hoursAndMinutesFormat(const QLocale& locale);

} // namespace Varnel
