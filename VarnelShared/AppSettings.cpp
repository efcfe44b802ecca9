#include <VarnelShared/AppSettings.h>

#include <VarnelShared/JSON.h>
#include <VarnelShared/Text.h>

#include <algorithm>

namespace Varnel {

const AppSettings& AppSettings::defaults() {
    static const AppSettings record;
    return record;
}

std::int64_t AppSettings::clampedPollInterval(std::int64_t seconds) {
    return std::clamp(seconds, pollIntervalRange.first, pollIntervalRange.second);
}

std::optional<QString> AppSettings::preferredStationID() const {
    const QString trimmedID = trimmed(stationID);
    return trimmedID.isEmpty() ? std::nullopt : std::optional(trimmedID);
}

bool AppSettings::hasEnabledProductionNotifications() const {
    return notifyOnProductionStart || notifyOnProductionEnd || notifyOnProductionRiseAboveOneKilowatt;
}

namespace {

/// Visits every field with its key, in the order of the record. Reading and writing share this one list.
template <typename Settings, typename Visitor>
void visitFields(Settings& settings, Visitor&& visit) {
    visit("baseURL", settings.baseURL);
    visit("account", settings.account);
    visit("stationID", settings.stationID);
    visit("pollIntervalSeconds", settings.pollIntervalSeconds);
    visit("showOutputChart", settings.showOutputChart);
    visit("chartScaleMode", settings.chartScaleMode);
    visit("launchAtLogin", settings.launchAtLogin);
    visit("showDockIcon", settings.showDockIcon);
    visit("iconAppearanceMode", settings.iconAppearanceMode);
    visit("notifyOnProductionStart", settings.notifyOnProductionStart);
    visit("notifyOnProductionEnd", settings.notifyOnProductionEnd);
    visit("notifyOnProductionRiseAboveOneKilowatt", settings.notifyOnProductionRiseAboveOneKilowatt);
}

JSON encoded(const QString& text) {
    return toUtf8(text);
}

JSON encoded(std::int64_t number) {
    return number;
}

JSON encoded(bool flag) {
    return flag;
}

template <typename E>
JSON encoded(E value) {
    return rawValueCase(value).rawValue;
}

bool decode(const JSON& value, QString& text) {
    text = textOf(value);
    return value.is_string();
}

bool decode(const JSON& value, std::int64_t& number) {
    const auto found = integerOf(value);
    number = found.value_or(number);
    return found.has_value();
}

bool decode(const JSON& value, bool& flag) {
    flag = value.is_boolean() && value.get<bool>();
    return value.is_boolean();
}

template <typename E>
bool decode(const JSON& value, E& choice) {
    const std::optional<E> found = value.is_string() ? fromRawValue<E>(textOf(value)) : std::nullopt;
    choice = found.value_or(choice);
    return found.has_value();
}

} // namespace

QByteArray encodeAppSettings(const AppSettings& settings) {
    JSON object = JSON::object();
    visitFields(settings, [&object](const char* key, const auto& field) { object[key] = encoded(field); });
    return serializedJSON(object);
}

Result<AppSettings> decodeAppSettings(const QByteArray& text) {
    const Result<JSON> parsed = parseJSON(text);
    if (!parsed) {
        return failure(parsed.error());
    }
    if (!parsed->is_object()) {
        return failure(JSONError{QStringLiteral("The settings are not a JSON object.")});
    }
    AppSettings settings;
    QString badKey;
    visitFields(settings, [&](const char* key, auto& field) {
        const auto member = parsed->find(key);
        if (member != parsed->end() && !member->is_null() && !decode(*member, field)) {
            badKey = QString::fromLatin1(key);
        }
    });
    if (!badKey.isEmpty()) {
        return failure(JSONError{QStringLiteral("The setting \"%1\" has a value of the wrong kind.").arg(badKey)});
    }
    return settings;
}

} // namespace Varnel
