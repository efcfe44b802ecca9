#pragma once

#include <simulator/Behaviour.h>

#include <VarnelShared/Result.h>

#include <QDateTime>
#include <QStringList>

namespace Varnel::Simulator {

/// What a control request or the command line asks for.
struct SettingsChange {
    Behaviour behaviour;
    bool expireSessions = false;
    bool clearLog = false;
};

/// The behaviour with a JSON object of settings applied to it. Fails with `SimulatorError` naming the setting that
/// is unknown or has no usable value; `now` is the service's time.
Result<SettingsChange> changed(Behaviour behaviour, const JSON& settings, const QDateTime& now);

/// One setting for a person.
struct SettingDescription {
    QString name; ///< the member's name in JSON
    QString help;
};

/// All settings, in the order in which they are explained.
std::vector<SettingDescription> settingDescriptions();

} // namespace Varnel::Simulator
