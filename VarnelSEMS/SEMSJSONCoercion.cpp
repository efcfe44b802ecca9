#include <VarnelSEMS/SEMSJSONCoercion.h>

#include <VarnelSEMS/SEMSJSONTree.h>
#include <VarnelShared/Text.h>

#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace Varnel {

namespace {
/// Whole numbers up to here are exact in a double.
constexpr double exactIntegerLimit = 9007199254740992.0;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The first match of [-+]?\d+(?:[.,]\d+)? with "." as its separator and without a "+"; empty when there is none.
std::string firstNumberText(std::string_view text) {
    const auto* const begin = std::find_if(text.begin(), text.end(), isDigit);
    if (begin == text.end()) {
        return {};
    }
    const auto* end = std::find_if_not(begin, text.end(), isDigit);
    if (text.end() - end > 1 && (*end == '.' || *end == ',') && isDigit(end[1])) {
        end = std::find_if_not(end + 1, text.end(), isDigit);
    }
    std::string number(begin, end);
    std::replace(number.begin(), number.end(), ',', '.');
    const bool isNegative = begin != text.begin() && begin[-1] == '-';
    return isNegative ? '-' + number : number;
}

QString shortestText(double number) {
    if (std::trunc(number) == number && std::abs(number) <= exactIntegerLimit) {
        return QString::number(static_cast<qint64>(number));
    }
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}
} // namespace

std::optional<SEMSNumber> parseNumber(std::string_view text) {
    const std::string number = firstNumberText(text);
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (number.empty() || error != std::errc() || end != number.data() + number.size()) {
        return std::nullopt;
    }
    const std::string lower = lowercased(text);
    if (lower.find("kw") != std::string::npos) {
        return SEMSNumber{value, PowerUnitKind::kilowatts};
    }
    if (lower.find(" w") != std::string::npos || lower.ends_with('w')) {
        return SEMSNumber{value / 1000, PowerUnitKind::watts};
    }
    return SEMSNumber{value, std::nullopt};
}

std::optional<SEMSNumber> coerceToDouble(const JSON& value) {
    if (value.is_number()) {
        return SEMSNumber{value.get<double>(), std::nullopt};
    }
    if (value.is_boolean()) {
        return SEMSNumber{value.get<bool>() ? 1.0 : 0.0, std::nullopt};
    }
    const auto* text = value.get_ptr<const JSON::string_t*>();
    return text ? parseNumber(*text) : std::nullopt;
}

std::optional<std::int64_t> coerceToInt(const JSON& value) {
    if (value.is_number()) {
        return integerOf(value);
    }
    bool isInteger = false;
    const qint64 number = trimmed(textOf(value)).toLongLong(&isInteger);
    return isInteger ? std::optional<std::int64_t>(number) : std::nullopt;
}

std::optional<bool> coerceToBool(const JSON& value) {
    if (value.is_boolean()) {
        return value.get<bool>();
    }
    if (value.is_number()) {
        return value.get<double>() != 0;
    }
    const QString text = trimmed(textOf(value)).toLower();
    if (text == QLatin1String("true") || text == QLatin1String("yes") || text == QLatin1String("1")) {
        return true;
    }
    if (text == QLatin1String("false") || text == QLatin1String("no") || text == QLatin1String("0")) {
        return false;
    }
    return std::nullopt;
}

std::optional<QString> coerceToString(const JSON& value) {
    if (value.is_string()) {
        return trimmed(textOf(value));
    }
    if (value.is_number_unsigned()) {
        return QString::number(value.get<std::uint64_t>());
    }
    if (value.is_number_integer()) {
        return QString::number(value.get<std::int64_t>());
    }
    return value.is_number_float() ? std::optional(shortestText(value.get<double>())) : std::nullopt;
}

} // namespace Varnel
