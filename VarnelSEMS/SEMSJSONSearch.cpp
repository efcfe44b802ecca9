#include <VarnelSEMS/SEMSJSONSearch.h>

#include <VarnelSEMS/SEMSJSONCoercion.h>
#include <VarnelSEMS/SEMSJSONTree.h>

namespace Varnel {

namespace {
/// Searches key by key: what the first member with a key holds decides about that key, and the order of the list is
/// the order of priority, whatever the depths.
template <typename T>
std::optional<T> firstCoerced(const JSON& root, const QStringList& keys, std::optional<T> (*coerce)(const JSON&)) {
    for (const QString& key : keys) {
        const JSON* found = key.contains(QLatin1Char('.')) ? SEMSJSONSearch::value(root, key)
                                                           : firstValue(root, normalizedKey(toUtf8(key)));
        if (std::optional<T> value = found ? coerce(*found) : std::nullopt) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<const JSON*> castToDictionary(const JSON& value) {
    return value.is_object() ? std::optional(&value) : std::nullopt;
}
} // namespace

std::optional<QString> SEMSJSONSearch::firstString(const JSON& root, const QStringList& keys) {
    return firstCoerced(root, keys, coerceToString);
}

std::optional<std::int64_t> SEMSJSONSearch::firstInt(const JSON& root, const QStringList& keys) {
    return firstCoerced(root, keys, coerceToInt);
}

std::optional<bool> SEMSJSONSearch::firstBool(const JSON& root, const QStringList& keys) {
    return firstCoerced(root, keys, coerceToBool);
}

const JSON* SEMSJSONSearch::firstDictionary(const JSON& root, const QStringList& keys) {
    return firstCoerced(root, keys, castToDictionary).value_or(nullptr);
}

const JSON* SEMSJSONSearch::value(const JSON& root, const QString& path) {
    const JSON* current = &root;
    const QStringList steps = path.split(QLatin1Char('.'), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < steps.size() && current; ++i) {
        current = ownValue(*current, normalizedKey(toUtf8(steps[i])));
    }
    return current;
}

} // namespace Varnel
