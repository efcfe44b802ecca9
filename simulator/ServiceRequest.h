#pragma once

#include <VarnelShared/Result.h>

#include <QByteArray>
#include <QDateTime>
#include <QStringList>

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace Varnel::Simulator {

/// Why the simulator cannot do what it was told, as one sentence.
struct SimulatorError {
    QString description;

    QString localizedDescription() const { return description; }
    bool operator==(const SimulatorError&) const = default;
};

/// One request as it arrived.
struct ServiceRequest {
    QByteArray method;
    QByteArray target;                                      ///< path and query, still percent-encoded
    std::vector<std::pair<QByteArray, QByteArray>> headers; ///< in the order and spelling of the sender
    QByteArray body;
    QDateTime received;
    int inFlight = 0; ///< requests without a complete reply when this one arrived, itself included

    QByteArray path() const; ///< the target without its query

    /// Whether the target is the pattern in any case; * stands for anything.
    bool matches(const QString& pattern) const;

    /// The value of the first header with this name in any case; empty when there is none.
    QByteArray header(const QByteArray& name) const;
};

/// The two API families of the service.
enum class Family { token, portal };

/// What a path asks for, by API family.
enum class Operation {
    tokenSignIn,
    tokenStations,
    tokenDetail,
    tokenDay,
    portalSignIn,
    portalStations,
    portalDetail,
    portalDay,
};

Family familyOf(Operation operation);
bool isSignIn(Operation operation);

/// Where a request leads.
struct Route {
    Operation operation = Operation::tokenSignIn;
    QString region;    ///< what stands before the first "/api/"; usually empty
    QString stationID; ///< the last piece of the path where it names the station
    bool acceptsGet = false;
    bool acceptsPost = false;
};

/// The route of a still encoded path. Paths of the service stand below /api/ and also below /api/api/, because
/// some are joined below a base that already ends in /api/.
std::optional<Route> routeOf(const QByteArray& path);

/// What a request passes to the service, whether in a JSON body, a form body or the query.
class Parameters {
public:
    /// A body counts before the query. Fails with the reason when the body is not what its Content-Type says.
    static Result<Parameters> of(const ServiceRequest& request);

    /// The first of these names that has a text which is not empty; empty when none has.
    QString first(const QStringList& names) const;

    /// The number under this name, or `fallback` when there is none.
    int number(const QString& name, int fallback) const;

private:
    std::map<QString, QString> m_values;
};

} // namespace Varnel::Simulator
