#include <VarnelSEMS/SEMSAPIClient.h>

#include <VarnelSEMS/LegacyTokenHeader.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelShared/Text.h>

#include <utility>

namespace Varnel {

using namespace Qt::StringLiterals;

QCoro::Task<Result<PowerReading>> SEMSAPIClient::fetchCurrentPower(SEMSSession session,
                                                                   std::optional<QString> preferredStationID) {
    const auto self = shared_from_this();
    const auto stationID = co_await settledStationID(session, preferredStationID);
    if (!stationID) {
        co_return failure(stationID.error());
    }
    auto outcome = co_await fetchMonitorDetail(session, *stationID);
    const auto detail = std::move(outcome).result();
    if (!detail) {
        co_return failure(detail.error());
    }
    auto todayOutputKWh = SEMSJSONSearch::extractTodayOutputKWh(*detail);
    if (!todayOutputKWh) {
        todayOutputKWh = co_await fetchTodayOutput(session, *stationID);
    }
    const auto kilowatts = SEMSJSONSearch::extractInstantPowerKW(*detail);
    if (!kilowatts) {
        co_return failure(kilowatts.error());
    }
    co_return PowerReading{*kilowatts, todayOutputKWh, *stationID, m_clock.now()};
}

QCoro::Task<Result<QString>> SEMSAPIClient::settledStationID(SEMSSession session,
                                                             std::optional<QString> preferredStationID) {
    const QString preferredID = trimmed(preferredStationID.value_or(QString()));
    if (!preferredID.isEmpty()) {
        co_return preferredID;
    }
    const auto station = co_await discoverDefaultPowerStation(session);
    co_return station.map([](const PowerStation& found) { return found.id; });
}

QCoro::Task<AttemptOutcome> SEMSAPIClient::fetchMonitorDetail(const SEMSSession& session, const QString& stationID) {
    switch (session.authMode) {
    case SEMSAuthMode::openAPI:
        return fetchCurrentPowerOpenAPI(session, stationID);
    case SEMSAuthMode::legacyPortal:
        break;
    }
    return fetchCurrentPowerLegacy(session, stationID);
}

/// The identifier goes into the first two paths as it is; one that makes no address there fails those two alone, with
/// `invalidConfiguration`.
QCoro::Task<AttemptOutcome> SEMSAPIClient::fetchCurrentPowerOpenAPI(const SEMSSession& session,
                                                                    const QString& stationID) {
    const QString inQuery = QString::fromLatin1(QUrl::toPercentEncoding(stationID));
    SEMSRequest request;
    request.baseURL = session.apiBaseURL;
    request.method = HTTPMethod::get;
    request.authSession = session;
    return tryInOrder(requestsForPaths(request, {u"/api/v1/OpenApi/GetPowerStationMonitorDetail/"_s + stationID,
                                                 u"/api/OpenApi/GetPowerStationMonitorDetail/"_s + stationID,
                                                 u"/api/v1/OpenApi/GetPowerStationMonitorDetail?id="_s + inQuery,
                                                 u"/api/OpenApi/GetPowerStationMonitorDetail?id="_s + inQuery}),
                      AttemptRules());
}

/// The form pass stands last in the list, so that its own error is the call's: an expired session then shows as
/// `authenticationFailed` and is renewed.
QCoro::Task<AttemptOutcome> SEMSAPIClient::fetchCurrentPowerLegacy(const SEMSSession& session,
                                                                   const QString& stationID) {
    SEMSRequest request;
    request.baseURL = session.apiBaseURL;
    request.authSession = session;
    request.body = JSON::object();
    (*request.body)["powerStationId"] = toUtf8(stationID);
    request.extraHeaders = {{"User-Agent", legacyUserAgent}};
    auto requests = requestsForPaths(request, {u"v2/PowerStation/GetMonitorDetailByPowerstationId"_s,
                                               u"v1/PowerStation/GetMonitorDetailByPowerstationId"_s,
                                               u"PowerStation/GetMonitorDetailByPowerstationId"_s});
    SEMSRequest asForm = requests.front();
    asForm.encoding = BodyEncoding::form;
    requests.push_back(asForm);
    return tryInOrder(std::move(requests), AttemptRules());
}

} // namespace Varnel
