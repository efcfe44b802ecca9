#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace Varnel::Simulator {

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

bool isTokenOperation(Operation operation);
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

} // namespace Varnel::Simulator
