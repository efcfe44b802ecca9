#include <VarnelAppSupport/OutputHistoryArchive.h>

#include <VarnelShared/JSON.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

namespace Varnel {

namespace {

// Each decode function says whether the value was of its type; on false the target holds anything.

bool decode(const JSON& value, double& number) {
    if (!value.is_number()) {
        return false;
    }
    number = value.get<double>();
    // The parser keeps "-0" as the signed integer 0, which every positive number is not.
    if (number == 0 && value.is_number_integer() && !value.is_number_unsigned()) {
        number = -0.0;
    }
    return true;
}

bool decode(const JSON& value, Timestamp& instant) {
    return decode(value, instant.secondsSinceReferenceDate);
}

bool decode(const JSON& value, QString& text) {
    text = textOf(value);
    return value.is_string();
}

bool decode(const JSON& value, OutputHistorySample& sample);
bool decode(const JSON& value, OutputHistorySnapshot& snapshot);

template <typename T>
bool decode(const JSON& value, std::vector<T>& list) {
    if (!value.is_array()) {
        return false;
    }
    list.resize(value.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (!decode(value[i], list[i])) {
            return false;
        }
    }
    return true;
}

template <typename T>
bool decodeMember(const JSON& object, const char* key, T& target) {
    const auto member = object.find(key);
    return member != object.end() && decode(*member, target);
}

bool decode(const JSON& value, OutputHistorySample& sample) {
    return decodeMember(value, "timestamp", sample.timestamp) && decodeMember(value, "kilowatts", sample.kilowatts);
}

bool decode(const JSON& value, OutputHistorySnapshot& snapshot) {
    return decodeMember(value, "dayStart", snapshot.dayStart) && decodeMember(value, "account", snapshot.account) &&
           decodeMember(value, "stationID", snapshot.stationID) && decodeMember(value, "samples", snapshot.samples);
}

bool decode(const JSON& value, OutputHistoryArchive& archive) {
    const auto version = value.find("version"); // whichever it is
    return version != value.end() && integerOf(*version) && decodeMember(value, "snapshots", archive.snapshots);
}

/// Nearly always the plain notation; very large and very small numbers take the exponent that other JSON coders give
/// them.
void append(QByteArray& out, double number) {
    const double magnitude = std::abs(number);
    const bool isPlain = number == 0 || (magnitude >= 1e-4 && magnitude < 18014398509481984.0);
    std::array<char, 40> text; // the longest are 17 digits with sign, point, leading zeros or exponent
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number,
                                       isPlain ? std::chars_format::fixed : std::chars_format::scientific);
    out.append(text.data(), written.ptr - text.data());
}

void append(QByteArray& out, const QString& text) {
    out += serializedJSON(toUtf8(text));
}

void append(QByteArray& out, const OutputHistorySample& sample) {
    out += R"({"kilowatts":)";
    append(out, sample.kilowatts);
    out += R"(,"timestamp":)";
    append(out, sample.timestamp.secondsSinceReferenceDate);
    out += '}';
}

void append(QByteArray& out, const OutputHistorySnapshot& snapshot);

template <typename T>
void append(QByteArray& out, const std::vector<T>& list) {
    out += '[';
    for (const T& element : list) {
        append(out, element);
        out += ',';
    }
    if (!list.empty()) {
        out.chop(1);
    }
    out += ']';
}

void append(QByteArray& out, const OutputHistorySnapshot& snapshot) {
    out += R"({"account":)";
    append(out, snapshot.account);
    out += R"(,"dayStart":)";
    append(out, snapshot.dayStart.secondsSinceReferenceDate);
    out += R"(,"samples":)";
    append(out, snapshot.samples);
    out += R"(,"stationID":)";
    append(out, snapshot.stationID);
    out += '}';
}

} // namespace

std::optional<OutputHistoryArchive> decodeOutputHistory(const QByteArray& content) {
    const Result<JSON> root = parseJSON(content);
    if (!root) {
        return std::nullopt;
    }
    OutputHistoryArchive archive;
    if (decode(*root, archive)) {
        return archive;
    }
    OutputHistorySnapshot bare;
    if (decode(*root, bare)) {
        return OutputHistoryArchive{{std::move(bare)}};
    }
    return std::nullopt;
}

QByteArray encodeOutputHistory(const OutputHistoryArchive& archive) {
    QByteArray content;
    content += R"({"snapshots":)";
    append(content, archive.snapshots);
    content += R"(,"version":1})";
    return content;
}

} // namespace Varnel
