#include <simulator/Settings.h>

#include <simulator/SimulatorError.h>

#include <cmath>

namespace Varnel::Simulator {

namespace {
Result<void> wrong(const QString& expectation) {
    return failure(SimulatorError{expectation});
}

Result<void> assign(QString& field, const JSON& value) {
    if (!value.is_string()) {
        return wrong(QStringLiteral("a text is expected"));
    }
    field = textOf(value);
    return {};
}

Result<void> assign(bool& field, const JSON& value) {
    if (!value.is_boolean()) {
        return wrong(QStringLiteral("true or false is expected"));
    }
    field = value.get<bool>();
    return {};
}

Result<void> assign(double& field, const JSON& value) {
    if (!value.is_number()) {
        return wrong(QStringLiteral("a number is expected"));
    }
    field = value.get<double>();
    return {};
}

/// Counts, ports and sizes: none is negative or larger than a million.
Result<void> assign(int& field, const JSON& value) {
    constexpr int largest = 1000000;
    if (!value.is_number_integer() || value.get<double>() < 0 || value.get<double>() > largest) {
        return wrong(QStringLiteral("an integer from 0 to %1 is expected").arg(largest));
    }
    field = value.get<int>();
    return {};
}

template <typename T>
Result<void> assign(std::optional<T>& field, const JSON& value) {
    if (value.is_null()) {
        field.reset();
        return {};
    }
    T inner{};
    const Result<void> assigned = assign(inner, value);
    if (assigned) {
        field = inner;
    }
    return assigned;
}

template <typename E>
requires std::is_enum_v<E> Result<void> assign(E& field, const JSON& value) {
    const std::optional<E> found = fromRawValue<E>(textOf(value));
    if (!found) {
        QStringList names;
        for (const auto& entry : allCases<E>()) {
            names << QString::fromUtf8(entry.rawValue);
        }
        return wrong(QStringLiteral("one of %1 is expected").arg(names.join(QStringLiteral(", "))));
    }
    field = *found;
    return {};
}

template <typename Owner>
struct Member {
    const char* name;
    Result<void> (*apply)(Owner&, const JSON&);
};

/// Applies the members of an object one after the other; the failure names the member.
template <typename Owner, typename Table>
Result<void> applyMembers(Owner& owner, const JSON& object, const Table& table) {
    if (!object.is_object()) {
        return wrong(QStringLiteral("a JSON object is expected"));
    }
    for (const auto& [key, value] : object.items()) {
        const auto row =
            std::find_if(std::begin(table), std::end(table), [&key](const auto& r) { return key == r.name; });
        const Result<void> applied =
            row == std::end(table) ? wrong(QStringLiteral("there is no such setting")) : row->apply(owner, value);
        if (!applied) {
            return wrong(QString::fromStdString(key) + QStringLiteral(": ") + applied.error().localizedDescription());
        }
    }
    return {};
}

constexpr Member<Fault> faultMembers[] = {
    {"kind", [](Fault& fault, const JSON& value) { return assign(fault.kind, value); }},
    {"path", [](Fault& fault, const JSON& value) { return assign(fault.path, value); }},
    {"method", [](Fault& fault, const JSON& value) { return assign(fault.method, value); }},
    {"contentType", [](Fault& fault, const JSON& value) { return assign(fault.contentType, value); }},
    {"count", [](Fault& fault, const JSON& value) { return assign(fault.count, value); }},
    {"status", [](Fault& fault, const JSON& value) { return assign(fault.status, value); }},
    {"text", [](Fault& fault, const JSON& value) { return assign(fault.text, value); }},
    {"code", [](Fault& fault, const JSON& value) { return assign(fault.code, value); }},
    {"bytesPerSecond", [](Fault& fault, const JSON& value) { return assign(fault.bytesPerSecond, value); }},
    {"delayMilliseconds",
     [](Fault& fault, const JSON& value) {
         int milliseconds = 0;
         const Result<void> assigned = assign(milliseconds, value);
         fault.delay = std::chrono::milliseconds(milliseconds);
         return assigned;
     }},
};

Result<void> assign(Fault& fault, const JSON& value) {
    return value.is_object() && value.contains("kind") ? applyMembers(fault, value, faultMembers)
                                                       : wrong(QStringLiteral("an object with a kind is expected"));
}

constexpr Member<SimulatedStation> stationMembers[] = {
    {"id", [](SimulatedStation& station, const JSON& value) { return assign(station.id, value); }},
    {"name", [](SimulatedStation& station, const JSON& value) { return assign(station.name, value); }},
    {"capacityKW", [](SimulatedStation& station, const JSON& value) { return assign(station.capacityKW, value); }},
};

Result<void> assign(SimulatedStation& station, const JSON& value) {
    return applyMembers(station, value, stationMembers);
}

template <typename List>
Result<void> assignList(List& field, const JSON& value) {
    if (!value.is_array()) {
        return wrong(QStringLiteral("a list is expected"));
    }
    List list;
    for (const JSON& element : value) {
        typename List::value_type item{};
        if (const Result<void> assigned = assign(item, element); !assigned) {
            return assigned;
        }
        list.push_back(std::move(item));
    }
    field = std::move(list);
    return {};
}

/// Bounded, because trees are walked recursively.
Result<void> assignNesting(int& field, const JSON& value) {
    constexpr int deepest = 100;
    int levels = 0;
    if (!assign(levels, value) || levels > deepest) {
        return wrong(QStringLiteral("an integer from 0 to %1 is expected").arg(deepest));
    }
    field = levels;
    return {};
}

Result<void> assignStations(std::vector<SimulatedStation>& field, const JSON& value) {
    if (value.is_array()) {
        return assignList(field, value);
    }
    int count = 0;
    if (!assign(count, value) || static_cast<std::size_t>(count) > builtInStationCount) {
        return wrong(QStringLiteral("a list or a number up to %1 is expected").arg(builtInStationCount));
    }
    field = builtInStations(static_cast<std::size_t>(count));
    return {};
}

Result<void> assignScript(std::deque<double>& field, const JSON& value) {
    if (value.is_null()) {
        field.clear();
        return {};
    }
    return assignList(field, value.is_number() ? JSON::array({value}) : value);
}

/// What a change works on.
struct Target {
    SettingsChange change;
    QDateTime now;
};

Result<void> assignTime(Target& target, const JSON& value) {
    const QTime time = QTime::fromString(textOf(value), QStringLiteral("H:mm"));
    if (!time.isValid()) {
        return wrong(QStringLiteral("a time such as 12:30 is expected"));
    }
    const qint64 milliseconds = target.now.msecsTo(QDateTime(target.now.date(), time));
    target.change.behaviour.timeOffset += Seconds(static_cast<double>(milliseconds) / 1000);
    return {};
}

Result<void> assignOffset(Target& target, const JSON& value) {
    double seconds = 0;
    const Result<void> assigned = assign(seconds, value);
    target.change.behaviour.timeOffset = Seconds(seconds);
    return assigned;
}

Result<void> addFault(Target& target, const JSON& value) {
    Fault fault;
    const Result<void> assigned = assign(fault, value);
    target.change.behaviour.faults.push_back(std::move(fault));
    return assigned;
}

template <typename E>
QString choices() {
    QStringList texts;
    for (const auto& entry : allCases<E>()) {
        texts << QStringLiteral("%1 (%2)").arg(QString::fromUtf8(entry.rawValue), QString::fromUtf8(entry.displayName));
    }
    return texts.join(QStringLiteral(", "));
}

QString noChoices() {
    return {};
}

struct Setting {
    const char* name;
    const char* help;
    QString (*choices)();
    Result<void> (*apply)(Target&, const JSON&);
};

constexpr Setting settings[] = {
    {"account", "The account that can sign in.", noChoices,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.account, v); }},
    {"password", "Its password.", noChoices,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.password, v); }},
    {"families", "The API families that exist:", choices<ServedFamilies>,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.families, v); }},
    {"rejection", "The answer to a wrong password:", choices<Rejection>,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.rejection, v); }},
    {"expiry", "The answer to an unknown session:", choices<Expiry>,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.expiry, v); }},
    {"region", "Portal sign-ins lead to /<region>/api/.", noChoices,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.region, v); }},
    {"stations", "How many of the built-in stations, or a list of {\"id\", \"name\", \"capacityKW\"}.", noChoices,
     [](Target& t, const JSON& v) { return assignStations(t.change.behaviour.stations, v); }},
    {"time", "The service's time of day now, as H:MM.", noChoices, assignTime},
    {"timeOffsetSeconds", "Seconds between the machine's clock and the service's.", noChoices, assignOffset},
    {"powerKW", "Power in kW: a number, or a list of which each monitor detail takes one; null: the sun.", noChoices,
     [](Target& t, const JSON& v) { return assignScript(t.change.behaviour.powerScript, v); }},
    {"todayOutputKWh", "Today's energy in kWh; null: what the sun has made.", noChoices,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.todayOutputKWh, v); }},
    {"units", "How power and energy are written:", choices<UnitStyle>,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.shape.units, v); }},
    {"keys", "The names of the members:", choices<KeyStyle>,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.shape.keys, v); }},
    {"nesting", "Further objects around the data of a monitor detail, up to 100.", noChoices,
     [](Target& t, const JSON& v) { return assignNesting(t.change.behaviour.shape.nesting, v); }},
    {"detailSize", "The size of a monitor detail:", choices<DetailSize>,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.shape.detailSize, v); }},
    {"detailTellsEnergy", "Whether a monitor detail has today's energy.", noChoices,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.shape.detailTellsEnergy, v); }},
    {"dayForm", "The form of a day:", choices<DayForm>,
     [](Target& t, const JSON& v) { return assign(t.change.behaviour.shape.dayForm, v); }},
    {"fault",
     "One more disturbance: {\"kind\", \"path\", \"method\", \"contentType\", \"count\", \"status\", "
     "\"text\", \"code\", \"delayMilliseconds\", \"bytesPerSecond\"}; * in path stands for anything, kind is one of",
     choices<FaultKind>, addFault},
    {"faults", "All disturbances as a list, [] for none.", noChoices,
     [](Target& t, const JSON& v) { return assignList(t.change.behaviour.faults, v); }},
    {"expireSessions", "true: every session is unknown from now on.", noChoices,
     [](Target& t, const JSON& v) { return assign(t.change.expireSessions, v); }},
    {"clearLog", "true: what was asked is forgotten.", noChoices,
     [](Target& t, const JSON& v) { return assign(t.change.clearLog, v); }},
};
} // namespace

Result<SettingsChange> changed(Behaviour behaviour, const JSON& wanted, const QDateTime& now) {
    Target target{{std::move(behaviour)}, now};
    if (const Result<void> applied = applyMembers(target, wanted, settings); !applied) {
        return failure(applied.error());
    }
    return std::move(target.change);
}

std::vector<SettingDescription> settingDescriptions() {
    std::vector<SettingDescription> descriptions;
    for (const Setting& setting : settings) {
        const QString choices = setting.choices();
        const QString help = QString::fromUtf8(setting.help);
        descriptions.push_back({QString::fromUtf8(setting.name),
                                choices.isEmpty() ? help : help + QStringLiteral(" ") + choices + QStringLiteral(".")});
    }
    return descriptions;
}

} // namespace Varnel::Simulator
