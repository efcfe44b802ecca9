#include <simulator/Route.h>

namespace Varnel::Simulator {

namespace {
enum class Methods { get, post, both };

struct Row {
    Operation operation;
    Methods methods;
    const char* path;
};

constexpr Row rows[] = {
    {Operation::tokenSignIn, Methods::post, "v1/OpenApi/GetToken"},
    {Operation::tokenSignIn, Methods::post, "OpenApi/GetToken"},
    {Operation::tokenStations, Methods::both, "v1/OpenApi/GetUserPowerStation"},
    {Operation::tokenStations, Methods::both, "OpenApi/GetUserPowerStation"},
    {Operation::tokenStations, Methods::both, "v1/OpenApi/GetPowerStationByUser"},
    {Operation::tokenStations, Methods::both, "OpenApi/GetPowerStationByUser"},
    {Operation::tokenDetail, Methods::get, "v1/OpenApi/GetPowerStationMonitorDetail"},
    {Operation::tokenDetail, Methods::get, "OpenApi/GetPowerStationMonitorDetail"},
    {Operation::tokenDay, Methods::both, "v1/OpenApi/GetPowerStationPowerAndIncomeByDay"},
    {Operation::tokenDay, Methods::both, "OpenApi/GetPowerStationPowerAndIncomeByDay"},
    {Operation::tokenDay, Methods::both, "v1/OpenApi/GetPowerStationPowerByDay"},
    {Operation::tokenDay, Methods::both, "OpenApi/GetPowerStationPowerByDay"},

    {Operation::portalSignIn, Methods::post, "v2/Common/CrossLogin"},
    {Operation::portalSignIn, Methods::post, "v1/Common/CrossLogin"},
    {Operation::portalStations, Methods::post, "v3/PowerStationQuery/QueryPowerStationMonitor"},
    {Operation::portalStations, Methods::post, "PowerStationMonitor/QueryPowerStationMonitorForApp"},
    {Operation::portalStations, Methods::post, "v2/PowerStationMonitor/QueryPowerStationMonitorForApp"},
    {Operation::portalStations, Methods::post, "v1/PowerStationMonitor/QueryPowerStationMonitorForApp"},
    {Operation::portalDetail, Methods::post, "v2/PowerStation/GetMonitorDetailByPowerstationId"},
    {Operation::portalDetail, Methods::post, "v1/PowerStation/GetMonitorDetailByPowerstationId"},
    {Operation::portalDetail, Methods::post, "PowerStation/GetMonitorDetailByPowerstationId"},
    {Operation::portalDay, Methods::both, "PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"},
    {Operation::portalDay, Methods::both, "PowerStation/GetPowerStationPowerAndIncomeByDay"},
    {Operation::portalDay, Methods::both, "v3/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"},
    {Operation::portalDay, Methods::both, "v2/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"},
    {Operation::portalDay, Methods::both, "v1/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"},
    {Operation::portalDay, Methods::both, "v1/PowerStation/GetPowerStationPowerAndIncomeByDay"},
    {Operation::portalDay, Methods::both, "PowerStationMonitor/GetPowerStationPowerByDay"},
    {Operation::portalDay, Methods::both, "v2/PowerStationMonitor/GetPowerStationPowerByDay"},
    {Operation::portalDay, Methods::both, "v1/PowerStationMonitor/GetPowerStationPowerByDay"},
    {Operation::portalDay, Methods::both, "PowerStation/GetPowerStationPowerByDay"},
    {Operation::portalDay, Methods::both, "v1/PowerStation/GetPowerStationPowerByDay"},
};

/// The last piece of `path` when the row's path and one more piece make it up.
QByteArray trailingPiece(const Row& row, const QByteArray& path) {
    const QByteArray parent = QByteArray(row.path) + '/';
    if (row.operation != Operation::tokenDetail || !path.startsWith(parent)) {
        return {};
    }
    const QByteArray piece = path.mid(parent.size());
    return piece.contains('/') ? QByteArray() : piece;
}
} // namespace

bool isTokenOperation(Operation operation) {
    return operation == Operation::tokenSignIn || operation == Operation::tokenStations ||
           operation == Operation::tokenDetail || operation == Operation::tokenDay;
}

bool isSignIn(Operation operation) {
    return operation == Operation::tokenSignIn || operation == Operation::portalSignIn;
}

std::optional<Route> routeOf(const QByteArray& path) {
    const QByteArray join = QByteArrayLiteral("/api/");
    const qsizetype at = path.indexOf(join);
    if (at < 0) {
        return std::nullopt;
    }
    QByteArray below = path.mid(at + join.size());
    if (below.startsWith("api/")) {
        below.remove(0, 4);
    }
    for (const Row& row : rows) {
        const QByteArray piece = trailingPiece(row, below);
        if (below == row.path || !piece.isEmpty()) {
            return Route{row.operation, QString::fromUtf8(path.left(at)).mid(1),
                         QString::fromUtf8(QByteArray::fromPercentEncoding(piece)), row.methods != Methods::post,
                         row.methods != Methods::get};
        }
    }
    return std::nullopt;
}

} // namespace Varnel::Simulator
