#include <VarnelSEMS/SEMSAPIClient.h>

#include <VarnelShared/Text.h>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {
/// Every path with the first form, then, when all of those failed, every path with the second.
std::vector<SEMSRequest> inTwoPasses(const SEMSRequest& first, const SEMSRequest& second, const QStringList& paths) {
    auto requests = requestsForPaths(first, paths);
    const auto secondPass = requestsForPaths(second, paths);
    requests.insert(requests.end(), secondPass.begin(), secondPass.end());
    return requests;
}

SEMSRequest listRequest(const SEMSSession& session, const JSON& body) {
    SEMSRequest request;
    request.baseURL = session.apiBaseURL;
    request.authSession = session;
    request.body = body;
    return request;
}

std::optional<double> sizeOf(const std::vector<PowerStation>& stations, const QString& preferredID) {
    const auto preferred = std::find_if(stations.begin(), stations.end(),
                                        [&](const PowerStation& station) { return station.id == preferredID; });
    return preferred != stations.end() ? preferred->capacityKW : stations.front().capacityKW;
}
} // namespace

QCoro::Task<Result<std::vector<PowerStation>>> SEMSAPIClient::fetchPowerStations(SEMSSession session) {
    const auto self = shared_from_this();
    switch (session.authMode) {
    case SEMSAuthMode::openAPI:
        co_return co_await fetchPowerStationsOpenAPI(session);
    case SEMSAuthMode::legacyPortal:
        break;
    }
    co_return co_await fetchPowerStationsLegacy(session);
}

QCoro::Task<Result<std::vector<PowerStation>>> SEMSAPIClient::fetchPowerStationsOpenAPI(const SEMSSession& session) {
    const SEMSRequest posted = listRequest(session, {{"searchType", 0}, {"page_index", 1}, {"page_size", 50}});
    SEMSRequest asked = posted;
    asked.method = HTTPMethod::get;
    asked.body.reset();
    return stationsOfFirstReply(inTwoPasses(posted, asked,
                                            {QStringLiteral("/api/v1/OpenApi/GetUserPowerStation"),
                                             QStringLiteral("/api/OpenApi/GetUserPowerStation"),
                                             QStringLiteral("/api/v1/OpenApi/GetPowerStationByUser"),
                                             QStringLiteral("/api/OpenApi/GetPowerStationByUser")}));
}

QCoro::Task<Result<std::vector<PowerStation>>> SEMSAPIClient::fetchPowerStationsLegacy(const SEMSSession& session) {
    const SEMSRequest asJSON = listRequest(session, {{"page_size", 20},
                                                     {"page_index", 1},
                                                     {"powerstation_id", ""},
                                                     {"orderby", ""},
                                                     {"powerstation_status", ""},
                                                     {"key", ""},
                                                     {"powerstation_type", ""}});
    SEMSRequest asForm = asJSON;
    asForm.encoding = BodyEncoding::form;
    return stationsOfFirstReply(inTwoPasses(asJSON, asForm,
                                            {QStringLiteral("v3/PowerStationQuery/QueryPowerStationMonitor"),
                                             QStringLiteral("PowerStationMonitor/QueryPowerStationMonitorForApp"),
                                             QStringLiteral("v2/PowerStationMonitor/QueryPowerStationMonitorForApp"),
                                             QStringLiteral("v1/PowerStationMonitor/QueryPowerStationMonitorForApp")}));
}

/// The first answer decides, also one without a station: the other paths read the same account.
QCoro::Task<Result<std::vector<PowerStation>>> SEMSAPIClient::stationsOfFirstReply(std::vector<SEMSRequest> requests) {
    std::vector<PowerStation> stations;
    AttemptRules rules;
    rules.read = [&stations](const JSON& reply, const SEMSRequest& /*answered*/) {
        stations = SEMSJSONSearch::extractStations(reply);
        return Result<void>();
    };
    const auto outcome = co_await tryInOrder(std::move(requests), std::move(rules));
    const auto answered = outcome.result();
    if (!answered) {
        co_return failure(answered.error());
    }
    if (stations.empty()) {
        co_return failure(SEMSAPIError::noPowerStation());
    }
    co_return stations;
}

QCoro::Task<Result<PowerStation>> SEMSAPIClient::discoverDefaultPowerStation(SEMSSession session) {
    const auto stations = co_await fetchPowerStations(session);
    co_return stations.map([](const std::vector<PowerStation>& found) { return found.front(); });
}

QCoro::Task<Result<std::optional<double>>> SEMSAPIClient::fetchSystemSizeKW(SEMSSession session,
                                                                            std::optional<QString> preferredStationID) {
    const auto stations = co_await fetchPowerStations(session);
    // A size is an addition to the chart: an account without a station has none, which is no failure here.
    if (!stations && isCase<SEMSAPIError::NoPowerStation>(stations.error())) {
        co_return std::optional<double>();
    }
    const QString preferredID = trimmed(preferredStationID.value_or(QString()));
    co_return stations.map([&](const std::vector<PowerStation>& found) { return sizeOf(found, preferredID); });
}

} // namespace Varnel
