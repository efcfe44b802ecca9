#pragma once

#include <VarnelShared/Result.h>

#include <nlohmann/json.hpp>

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <optional>
#include <string>

namespace Varnel {

/// A parsed JSON value whose objects keep the order of the document.
using JSON = nlohmann::ordered_json;

/// Why a text is not JSON. The description is the parser's own as a sentence, without any piece of the text.
struct JSONError {
    QString description;

    QString localizedDescription() const { return description; }
    bool operator==(const JSONError&) const = default;
};

/// Arrays and objects nested deeper than this are a parse failure, so that a recursive walk of any parsed value is
/// safe for the stack.
constexpr std::size_t jsonNestingLimit = 512;

/// Parses a whole UTF-8 text in time linear in its size, whatever its shape; a bare number, string, boolean or null is
/// accepted. Of repeated members of an object the value of the last stands at the place of the first. Fails with
/// `JSONError`.
Result<JSON> parseJSON(QByteArrayView text);

/// The compact UTF-8 form, members in the value's own order, doubles in their shortest exact form.
QByteArray serializedJSON(const JSON& value);

/// The text of a JSON string; empty for any other value.
QString textOf(const JSON& value);

/// A number with a whole value, also one written as 300.0 or 3e2; none for any other value and for one that 64 bits
/// with a sign do not hold.
std::optional<std::int64_t> integerOf(const JSON& value);

inline std::string toUtf8(const QString& text) {
    return text.toStdString();
}

} // namespace Varnel
