#pragma once

#include <QString>

#include <array>
#include <optional>

namespace Varnel {

/// One case of an enumeration that is stored by name and offered in a picker.
template <typename E>
struct RawValueCase {
    E value;
    const char* rawValue;    ///< the stored form, compared exactly
    const char* displayName; ///< the form shown to the user
};

/// Specialised with an array `cases` of `RawValueCase`, in the order in which pickers list them.
template <typename E>
struct RawValueTable;

/// All cases, in picker order.
template <typename E>
constexpr const auto& allCases() {
    return RawValueTable<E>::cases;
}

template <typename E>
constexpr const RawValueCase<E>& rawValueCase(E value) {
    for (const auto& entry : allCases<E>()) {
        if (entry.value == value) {
            return entry;
        }
    }
    return allCases<E>().front();
}

template <typename E>
QString rawValue(E value) {
    return QString::fromUtf8(rawValueCase(value).rawValue);
}

template <typename E>
QString displayName(E value) {
    return QString::fromUtf8(rawValueCase(value).displayName);
}

/// The case with exactly this raw value (case-sensitive), or none.
template <typename E>
std::optional<E> fromRawValue(const QString& text) {
    for (const auto& entry : allCases<E>()) {
        if (text == QLatin1String(entry.rawValue)) {
            return entry.value;
        }
    }
    return std::nullopt;
}

} // namespace Varnel
