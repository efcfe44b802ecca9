#include <simulator/ServiceRequest.h>

#include <VarnelShared/JSON.h>

#include <QRegularExpression>

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

using Values = std::map<QString, QString>;

QString decoded(QByteArray text) {
    return QString::fromUtf8(QByteArray::fromPercentEncoding(text.replace('+', ' ')));
}

/// Pairs that are there already stay.
void addPairs(Values& values, const QByteArray& pairs) {
    for (const QByteArray& pair : pairs.split('&')) {
        const qsizetype equals = pair.indexOf('=');
        if (equals > 0) {
            values.try_emplace(decoded(pair.first(equals)), decoded(pair.mid(equals + 1)));
        }
    }
}

Result<void> addMembers(Values& values, const QByteArray& body) {
    const Result<JSON> json = parseJSON(body);
    if (!json) {
        return failure(json.error());
    }
    if (!json->is_object()) {
        return failure(SimulatorError{QStringLiteral("The body is not a JSON object.")});
    }
    for (const auto& [key, value] : json->items()) {
        const QString text = value.is_string() ? textOf(value) : QString::fromUtf8(serializedJSON(value));
        values.try_emplace(QString::fromStdString(key), text);
    }
    return {};
}

Result<void> addBody(Values& values, const ServiceRequest& request) {
    const QByteArray type = request.header("Content-Type").toLower();
    if (type.startsWith("application/json")) {
        return addMembers(values, request.body);
    }
    if (type.startsWith("application/x-www-form-urlencoded")) {
        addPairs(values, request.body);
        return {};
    }
    return failure(SimulatorError{QStringLiteral("The body is neither JSON nor a form.")});
}
} // namespace

QByteArray ServiceRequest::path() const {
    const qsizetype query = target.indexOf('?');
    return query < 0 ? target : target.first(query);
}

bool ServiceRequest::matches(const QString& pattern) const {
    const QString wildcards = QRegularExpression::escape(pattern).replace(QStringLiteral("\\*"), QStringLiteral(".*"));
    const QRegularExpression expression(QRegularExpression::anchoredPattern(wildcards),
                                        QRegularExpression::CaseInsensitiveOption);
    return expression.match(QString::fromUtf8(target)).hasMatch();
}

QByteArray ServiceRequest::header(const QByteArray& name) const {
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return {};
}

Family familyOf(Operation operation) {
    const bool isToken = operation == Operation::tokenSignIn || operation == Operation::tokenStations ||
                         operation == Operation::tokenDetail || operation == Operation::tokenDay;
    return isToken ? Family::token : Family::portal;
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

Result<Parameters> Parameters::of(const ServiceRequest& request) {
    Parameters parameters;
    if (!request.body.isEmpty()) {
        if (const Result<void> added = addBody(parameters.m_values, request); !added) {
            return failure(added.error());
        }
    }
    addPairs(parameters.m_values, request.target.mid(request.path().size() + 1));
    return parameters;
}

QString Parameters::first(const QStringList& names) const {
    for (const QString& name : names) {
        if (const auto found = m_values.find(name); found != m_values.end() && !found->second.isEmpty()) {
            return found->second;
        }
    }
    return {};
}

int Parameters::number(const QString& name, int fallback) const {
    bool isNumber = false;
    const int value = first({name}).toInt(&isNumber);
    return isNumber ? value : fallback;
}

} // namespace Varnel::Simulator
