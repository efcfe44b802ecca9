#include <simulator/Behaviour.h>

#include <simulator/JSONMembers.h>

namespace Varnel::Simulator {

template <>
struct Members<Fault> {
    static constexpr std::array list = {
        member<Fault, &Fault::kind>("kind"),
        member<Fault, &Fault::path>("path"),
        member<Fault, &Fault::method>("method"),
        member<Fault, &Fault::contentType>("contentType"),
        member<Fault, &Fault::count>("count"),
        member<Fault, &Fault::from>("from"),
        member<Fault, &Fault::to>("to"),
        member<Fault, &Fault::status>("status"),
        member<Fault, &Fault::retryAfter>("retryAfter"),
        member<Fault, &Fault::text>("text"),
        member<Fault, &Fault::code>("code"),
        member<Fault, &Fault::bytesPerSecond>("bytesPerSecond"),
        member<Fault, &Fault::delay>("delayMilliseconds"),
    };
};

template <>
struct Members<SimulatedStation> {
    static constexpr std::array list = {
        member<SimulatedStation, &SimulatedStation::id>("id"),
        member<SimulatedStation, &SimulatedStation::name>("name"),
        member<SimulatedStation, &SimulatedStation::capacityKW>("capacityKW"),
        Member<SimulatedStation>{"inverters",
                                 [](SimulatedStation& station, const JSON& value) {
                                     return assignBounded<1, 100>(station.inverters, value);
                                 },
                                 member<SimulatedStation, &SimulatedStation::inverters>("").json},
    };
};

namespace {
/// What a change works on.
struct Target {
    SettingsChange change;
    QDateTime now;
};

Result<void> assignStations(Target& target, const JSON& value) {
    int count = 0;
    if (!value.is_array() && (!Value<int>::assign(count, value) || count > builtInStationCount)) {
        return wrong(QStringLiteral("a list or a number up to %1 is expected").arg(builtInStationCount));
    }
    // What an entry of a list leaves out is that of the built-in station in its place.
    std::vector<SimulatedStation> stations = builtInStations(value.is_array() ? static_cast<int>(value.size()) : count);
    for (std::size_t i = 0; value.is_array() && i < value.size(); ++i) {
        stations.resize(std::max(stations.size(), i + 1));
        if (const Result<void> assigned = Value<SimulatedStation>::assign(stations[i], value[i]); !assigned) {
            return assigned;
        }
    }
    target.change.behaviour.stations = std::move(stations);
    return {};
}

Result<void> assignScript(Target& target, const JSON& value) {
    const JSON list = value.is_null() ? JSON::array() : value.is_number() ? JSON::array({value}) : value;
    return Value<std::deque<double>>::assign(target.change.behaviour.powerScript, list);
}

/// Bounded, because trees are walked recursively.
Result<void> assignNesting(Target& target, const JSON& value) {
    return assignBounded<0, 100>(target.change.behaviour.shape.nesting, value);
}

Result<void> assignWattDecimals(Target& target, const JSON& value) {
    return assignBounded<0, 3>(target.change.behaviour.wattDecimals, value);
}

Result<void> assignTime(Target& target, const JSON& value) {
    QTime time;
    if (const Result<void> assigned = Value<QTime>::assign(time, value); !assigned || !time.isValid()) {
        return assigned;
    }
    const qint64 milliseconds = target.now.msecsTo(QDateTime(target.now.date(), time));
    target.change.behaviour.timeOffset += Seconds(static_cast<double>(milliseconds) / 1000);
    return {};
}

Result<void> addFault(Target& target, const JSON& value) {
    return Value<Fault>::assign(target.change.behaviour.faults.emplace_back(), value);
}

template <auto... path>
constexpr Member<Target> setting(const char* name) {
    return member<Target, &Target::change, &SettingsChange::behaviour, path...>(name);
}

/// With another way to assign than to tell.
constexpr Member<Target> assignedBy(Result<void> (*assign)(Target&, const JSON&), Member<Target> member) {
    return {member.name, assign, member.json};
}

/// Once the port is closed nobody can ask for it to be opened again.
bool neverStopsRefusing(const Fault& fault) {
    return fault.kind == FaultKind::refuse && (!fault.from.isValid() || !fault.to.isValid());
}
} // namespace

template <>
struct Members<Target> {
    static constexpr std::array list = {
        setting<&Behaviour::account>("account"),
        setting<&Behaviour::password>("password"),
        setting<&Behaviour::families>("families"),
        setting<&Behaviour::servedPaths>("servedPaths"),
        setting<&Behaviour::region>("region"),
        setting<&Behaviour::rejection>("rejection"),
        setting<&Behaviour::expiry>("expiry"),
        setting<&Behaviour::sessionLifetime>("sessionSeconds"),
        setting<&Behaviour::sessionRequests>("sessionRequests"),
        assignedBy(assignStations, setting<&Behaviour::stations>("stations")),
        assignedBy(assignScript, setting<&Behaviour::powerScript>("powerKW")),
        setting<&Behaviour::todayOutputKWh>("todayOutputKWh"),
        setting<&Behaviour::nightWatts>("nightWatts"),
        assignedBy(assignWattDecimals, setting<&Behaviour::wattDecimals>("wattDecimals")),
        setting<&Behaviour::timeOffset>("timeOffsetSeconds"),
        setting<&Behaviour::shape, &ReplyShape::units>("units"),
        setting<&Behaviour::shape, &ReplyShape::keys>("keys"),
        assignedBy(assignNesting, setting<&Behaviour::shape, &ReplyShape::nesting>("nesting")),
        setting<&Behaviour::shape, &ReplyShape::detailSize>("detailSize"),
        setting<&Behaviour::shape, &ReplyShape::detailTellsEnergy>("detailTellsEnergy"),
        setting<&Behaviour::shape, &ReplyShape::powerTexts>("powerTexts"),
        setting<&Behaviour::shape, &ReplyShape::dayForm>("dayForm"),
        setting<&Behaviour::faults>("faults"),
        Member<Target>{"time", assignTime, nullptr},
        Member<Target>{"fault", addFault, nullptr},
        Member<Target>{"expireSessions", member<Target, &Target::change, &SettingsChange::expireSessions>("").assign,
                       nullptr},
        Member<Target>{"clearLog", member<Target, &Target::change, &SettingsChange::clearLog>("").assign, nullptr},
    };
};

Result<SettingsChange> changed(Behaviour behaviour, const JSON& settings, const QDateTime& now) {
    Target target{{std::move(behaviour)}, now};
    if (const Result<void> applied = Value<Target>::assign(target, settings); !applied) {
        return failure(applied.error());
    }
    const std::vector<Fault>& faults = target.change.behaviour.faults;
    if (std::any_of(faults.begin(), faults.end(), neverStopsRefusing)) {
        return wrong(QStringLiteral("faults: refuse needs from and to: nothing else would end it"));
    }
    return std::move(target.change);
}

JSON settingsOf(const Behaviour& behaviour) {
    return Value<Target>::json({{behaviour}, {}});
}

} // namespace Varnel::Simulator
