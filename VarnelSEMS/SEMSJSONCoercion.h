#pragma once

#include <VarnelShared/JSON.h>

#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

namespace Varnel {

/// What the unit of a supposed power turned out to be.
enum class PowerUnitKind {
    kilowatts,
    watts,
    energy,  ///< so the number is no power
    unknown, ///< some other unit, so the number is no power either
};

/// A number of a reply. One that came out of a text that named its unit is already in kW (kWh for an energy), and no
/// unit field next to it applies any more.
struct SEMSNumber {
    double value = 0;                     ///< finite
    std::optional<PowerUnitKind> ownUnit; ///< that the text named: `kilowatts` or `watts`

    bool operator==(const SEMSNumber&) const = default;
};

/// The first number anywhere in a UTF-8 text. A comma is a decimal separator ("1,234" is 1.234). A text with "kw"
/// keeps its number; one with " w" in it or "w" at its end counts in watts and is divided by 1000 ("1 MW" as well).
std::optional<SEMSNumber> parseNumber(std::string_view text);

/// Numbers as they are, booleans as 1 and 0, texts through `parseNumber`; none for anything else.
std::optional<SEMSNumber> coerceToDouble(const JSON& value);

/// Integers, numbers without a fraction and texts that are an integer; booleans are none.
std::optional<std::int64_t> coerceToInt(const JSON& value);

/// Booleans, numbers (all but 0 are true) and the texts true/false, yes/no, 1/0 in any case.
std::optional<bool> coerceToBool(const JSON& value);

/// Texts trimmed, numbers in their shortest decimal form (a whole number without a fraction or an exponent).
std::optional<QString> coerceToString(const JSON& value);

} // namespace Varnel
