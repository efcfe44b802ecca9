#pragma once

#include <simulator/Fault.h>
#include <simulator/StationReplies.h>

#include <VarnelShared/Result.h>
#include <VarnelShared/Timestamp.h>

#include <deque>
#include <optional>
#include <vector>

namespace Varnel::Simulator {

/// Which API families exist at all; the paths of the other one are answered with 404.
enum class ServedFamilies { both, token, portal };

/// How a wrong password is refused.
enum class Rejection { envelope, missingToken, status };

/// How a session is refused that is unknown or has expired. The service itself tells it in the envelope of a success.
enum class Expiry { code100002, text100002, code100001, status401 };

/// What the simulated service does: everything that can be told to it. Changes hold from the next request on.
struct Behaviour {
    QString account = QStringLiteral("demo@example.com");
    QString password = QStringLiteral("sunshine");
    ServedFamilies families = ServedFamilies::both;
    QStringList servedPaths; ///< when not empty, all but these paths with their query (* stands for anything) are 404
    QString region; ///< when not empty, portal sessions live below /<region>/api/ and the sign-in reply says so

    Rejection rejection = Rejection::envelope;
    Expiry expiry = Expiry::code100002;
    std::optional<Seconds> sessionLifetime; ///< by the simulator's clock; none: until it is told to end
    std::optional<int> sessionRequests;     ///< the calls after which a session has expired; none: no limit

    std::vector<SimulatedStation> stations = builtInStations(2);
    std::deque<double> powerScript;       ///< in kW; each monitor detail takes one, the last stays; empty: the sun
    std::optional<double> todayOutputKWh; ///< none: what the sun has made
    double nightWatts = 0;                ///< the power while there is no sun; some inverters report a few below 0
    int wattDecimals = 0;                 ///< powers are told to the watt (0) or to a tenth of it (1), up to 3
    Seconds timeOffset{0};                ///< from the clock that the simulator was given to its own

    ReplyShape shape;
    std::vector<Fault> faults; ///< the first that matches a request counts

    bool operator==(const Behaviour&) const = default;
};

/// What a control request or the command line asks for.
struct SettingsChange {
    Behaviour behaviour;
    bool expireSessions = false;
    bool clearLog = false;
};

/// The behaviour with a JSON object of settings (docs/simulator.md) applied to it. Fails with `SimulatorError` naming
/// the setting that is unknown or has no usable value; `now` is the service's time.
Result<SettingsChange> changed(Behaviour behaviour, const JSON& settings, const QDateTime& now);

/// The settings that make this behaviour out of any other.
JSON settingsOf(const Behaviour& behaviour);

} // namespace Varnel::Simulator

namespace Varnel {

template <>
struct RawValueTable<Simulator::ServedFamilies> {
    static constexpr std::array cases = {
        RawValueCase{Simulator::ServedFamilies::both, "both", "both families"},
        RawValueCase{Simulator::ServedFamilies::token, "token", "the token API alone"},
        RawValueCase{Simulator::ServedFamilies::portal, "portal", "the portal alone"},
    };
};

template <>
struct RawValueTable<Simulator::Rejection> {
    static constexpr std::array cases = {
        RawValueCase{Simulator::Rejection::envelope, "envelope", "code 100005"},
        RawValueCase{Simulator::Rejection::missingToken, "missing-token", "success without a token"},
        RawValueCase{Simulator::Rejection::status, "status", "HTTP 401"},
    };
};

template <>
struct RawValueTable<Simulator::Expiry> {
    static constexpr std::array cases = {
        RawValueCase{Simulator::Expiry::code100002, "100002", "HTTP 200 with the code as a number"},
        RawValueCase{Simulator::Expiry::text100002, "100002-text", "HTTP 200 with the code as a text"},
        RawValueCase{Simulator::Expiry::code100001, "100001", "HTTP 200 with the other code"},
        RawValueCase{Simulator::Expiry::status401, "401", "HTTP 401"},
    };
};

} // namespace Varnel
