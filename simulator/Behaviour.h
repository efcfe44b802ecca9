#pragma once

#include <simulator/Fault.h>
#include <simulator/ReplyShape.h>
#include <simulator/SimulatedStation.h>

#include <VarnelShared/RawValueEnum.h>
#include <VarnelShared/Timestamp.h>

#include <deque>
#include <optional>
#include <vector>

namespace Varnel::Simulator {

/// Which API families exist at all; the paths of the other one are answered with 404.
enum class ServedFamilies { both, token, portal };

/// How a wrong password is refused.
enum class Rejection { envelope, missingToken, status };

/// How a session is refused that is unknown or has expired.
enum class Expiry { status, envelope };

/// What the simulated service does. Everything may be changed at any time and holds from the next request on.
struct Behaviour {
    QString account = QStringLiteral("demo@example.com");
    QString password = QStringLiteral("sunshine");
    ServedFamilies families = ServedFamilies::both;
    Rejection rejection = Rejection::envelope;
    Expiry expiry = Expiry::status;
    QString region; ///< when not empty, portal sessions live below /<region>/api/ and the sign-in reply says so

    std::vector<SimulatedStation> stations;
    std::deque<double> powerScript;       ///< in kW; each monitor detail takes one, the last stays; empty: the sun
    std::optional<double> todayOutputKWh; ///< none: what the sun has made
    Seconds timeOffset{0};                ///< from the machine's clock to the simulator's

    ReplyShape shape;
    std::vector<Fault> faults; ///< the first that matches a request counts
};

/// The first `count` of the built-in stations, all of different sizes.
std::vector<SimulatedStation> builtInStations(std::size_t count);

/// How many stations there are to choose from.
extern const std::size_t builtInStationCount;

/// What the simulator starts with: two stations under the sun of this machine's clock.
Behaviour standardBehaviour();

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
        RawValueCase{Simulator::Expiry::status, "status", "HTTP 401"},
        RawValueCase{Simulator::Expiry::envelope, "envelope", "code 100002"},
    };
};

} // namespace Varnel
