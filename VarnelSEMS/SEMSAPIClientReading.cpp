#include <VarnelSEMS/SEMSAPIClient.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Text.h>

#include <algorithm>
#include <utility>

// The current power and today's output of one station.

namespace Varnel {

namespace {
constexpr int samplesPerDay = 288; // one for every five minutes

/// All of the day's optional extras together take no longer than this, so that they never hold back a reading.
constexpr std::chrono::seconds dayEndpointTimeLimit{30};

/// Each family is asked below its own paths alone.
QStringList dayEndpointPaths(SEMSAuthMode mode) {
    switch (mode) {
    case SEMSAuthMode::openAPI:
        return {QStringLiteral("api/OpenApi/GetPowerStationPowerAndIncomeByDay"),
                QStringLiteral("api/v1/OpenApi/GetPowerStationPowerAndIncomeByDay"),
                QStringLiteral("OpenApi/GetPowerStationPowerAndIncomeByDay"),
                QStringLiteral("v1/OpenApi/GetPowerStationPowerAndIncomeByDay"),
                QStringLiteral("api/OpenApi/GetPowerStationPowerByDay"),
                QStringLiteral("api/v1/OpenApi/GetPowerStationPowerByDay"),
                QStringLiteral("OpenApi/GetPowerStationPowerByDay"),
                QStringLiteral("v1/OpenApi/GetPowerStationPowerByDay")};
    case SEMSAuthMode::legacyPortal:
        break;
    }
    return {QStringLiteral("PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"),
            QStringLiteral("PowerStation/GetPowerStationPowerAndIncomeByDay"),
            QStringLiteral("v3/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"),
            QStringLiteral("v2/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"),
            QStringLiteral("v1/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"),
            QStringLiteral("v1/PowerStation/GetPowerStationPowerAndIncomeByDay"),
            QStringLiteral("PowerStationMonitor/GetPowerStationPowerByDay"),
            QStringLiteral("v2/PowerStationMonitor/GetPowerStationPowerByDay"),
            QStringLiteral("v1/PowerStationMonitor/GetPowerStationPowerByDay"),
            QStringLiteral("PowerStation/GetPowerStationPowerByDay"),
            QStringLiteral("v1/PowerStation/GetPowerStationPowerByDay")};
}

/// The calendar day in the system's current zone as "yyyy-MM-dd", whatever the language.
QString dayText(Timestamp instant) {
    return instant.toDateTime().date().toString(Qt::ISODate);
}

/// Which of the names the server reads differs by path; every name is sent at once.
JSON dayBody(const QString& stationID, int count, const QString& day) {
    JSON body = JSON::object();
    for (const char* name : {"powerstation_id", "powerStationId", "id"}) {
        body[name] = toUtf8(stationID);
    }
    body["count"] = count;
    for (const char* name : {"date", "day", "queryDate", "start", "end"}) {
        body[name] = toUtf8(day);
    }
    return body;
}

QString dayQuery(const QString& stationID, int count, const QString& day) {
    QStringList pairs;
    for (const QString& name :
         {QStringLiteral("powerstation_id"), QStringLiteral("powerStationId"), QStringLiteral("id")}) {
        pairs += name + QLatin1Char('=') + QString::fromLatin1(QUrl::toPercentEncoding(stationID));
    }
    for (const QString& name : {QStringLiteral("date"), QStringLiteral("day"), QStringLiteral("queryDate"),
                                QStringLiteral("start"), QStringLiteral("end")}) {
        pairs += name + QLatin1Char('=') + day;
    }
    pairs += QStringLiteral("count=") + QString::number(count);
    return pairs.join(QLatin1Char('&'));
}
} // namespace

QCoro::Task<Result<PowerReading>> SEMSAPIClient::fetchCurrentPower(SEMSSession session,
                                                                   std::optional<QString> preferredStationID) {
    const auto self = shared_from_this();
    const auto stationID = co_await settledStationID(session, preferredStationID);
    if (!stationID) {
        co_return failure(stationID.error());
    }
    std::optional<double> todayOutputKWh;
    Result<double> kilowatts = 0.0;
    AttemptRules rules;
    rules.read = [&todayOutputKWh, &kilowatts](const JSON& detail, const SEMSRequest& /*answered*/) {
        todayOutputKWh = SEMSJSONSearch::extractTodayOutputKWh(detail);
        kilowatts = SEMSJSONSearch::extractInstantPowerKW(detail);
        return Result<void>();
    };
    const auto outcome = co_await fetchMonitorDetail(session, *stationID, std::move(rules));
    const auto answered = outcome.result();
    if (!answered) {
        co_return failure(answered.error());
    }
    if (!todayOutputKWh) {
        todayOutputKWh = co_await fetchTodayOutput(session, *stationID);
    }
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

QCoro::Task<AttemptOutcome> SEMSAPIClient::fetchMonitorDetail(const SEMSSession& session, const QString& stationID,
                                                              AttemptRules rules) {
    switch (session.authMode) {
    case SEMSAuthMode::openAPI:
        return fetchCurrentPowerOpenAPI(session, stationID, std::move(rules));
    case SEMSAuthMode::legacyPortal:
        break;
    }
    return fetchCurrentPowerLegacy(session, stationID, std::move(rules));
}

/// The identifier goes into the first two paths as it is; one that makes no address there fails those two alone, with
/// `invalidConfiguration`.
QCoro::Task<AttemptOutcome> SEMSAPIClient::fetchCurrentPowerOpenAPI(const SEMSSession& session,
                                                                    const QString& stationID, AttemptRules rules) {
    const QString inQuery = QString::fromLatin1(QUrl::toPercentEncoding(stationID));
    SEMSRequest request;
    request.baseURL = session.apiBaseURL;
    request.method = HTTPMethod::get;
    request.authSession = session;
    return tryInOrder(
        requestsForPaths(request, {QStringLiteral("/api/v1/OpenApi/GetPowerStationMonitorDetail/") + stationID,
                                   QStringLiteral("/api/OpenApi/GetPowerStationMonitorDetail/") + stationID,
                                   QStringLiteral("/api/v1/OpenApi/GetPowerStationMonitorDetail?id=") + inQuery,
                                   QStringLiteral("/api/OpenApi/GetPowerStationMonitorDetail?id=") + inQuery}),
        std::move(rules));
}

/// The form pass stands last in the list, so that its own error is the call's: an expired session then shows as
/// `authenticationFailed` and is renewed.
QCoro::Task<AttemptOutcome> SEMSAPIClient::fetchCurrentPowerLegacy(const SEMSSession& session, const QString& stationID,
                                                                   AttemptRules rules) {
    SEMSRequest request;
    request.baseURL = session.apiBaseURL;
    request.authSession = session;
    request.body = JSON::object();
    (*request.body)["powerStationId"] = toUtf8(stationID);
    request.extraHeaders = {{"User-Agent", legacyUserAgent}};
    auto requests = requestsForPaths(request, {QStringLiteral("v2/PowerStation/GetMonitorDetailByPowerstationId"),
                                               QStringLiteral("v1/PowerStation/GetMonitorDetailByPowerstationId"),
                                               QStringLiteral("PowerStation/GetMonitorDetailByPowerstationId")});
    SEMSRequest asForm = requests.front();
    asForm.encoding = BodyEncoding::form;
    requests.push_back(asForm);
    return tryInOrder(std::move(requests), std::move(rules));
}

/// The JSON form of every path, then, when all of those failed, the query form of every path.
QCoro::Task<AttemptOutcome> SEMSAPIClient::fetchTodayDayEndpointResponse(const SEMSSession& session,
                                                                         const QString& stationID, int sampleCount,
                                                                         AttemptRules rules) {
    const int count = std::max(sampleCount, 1);
    const QString day = dayText(m_clock.now());
    SEMSRequest posted;
    posted.baseURL = session.apiBaseURL;
    posted.authSession = session;
    posted.body = dayBody(stationID, count, day);
    if (session.authMode == SEMSAuthMode::legacyPortal) {
        posted.extraHeaders = {{"User-Agent", legacyUserAgent}};
    }
    auto requests = requestsForPaths(posted, dayEndpointPaths(session.authMode));
    const std::size_t paths = requests.size();
    for (std::size_t i = 0; i < paths; ++i) {
        SEMSRequest asked = requests[i];
        asked.method = HTTPMethod::get;
        asked.path += QLatin1Char('?') + dayQuery(stationID, count, day);
        asked.body.reset();
        requests.push_back(asked);
    }
    rules.endAtTransportFailure = true;
    rules.timeLimit = dayEndpointTimeLimit;
    return tryInOrder(std::move(requests), std::move(rules));
}

QCoro::Task<std::optional<double>> SEMSAPIClient::fetchTodayOutput(SEMSSession session, QString stationID) {
    const QDate day = m_clock.now().toDateTime().date();
    std::optional<double> todayOutputKWh;
    AttemptRules rules;
    rules.read = [&todayOutputKWh, day](const JSON& reply, const SEMSRequest& /*answered*/) {
        todayOutputKWh = SEMSJSONSearch::extractDayOutputKWh(reply, day);
        return Result<void>();
    };
    const auto outcome = co_await fetchTodayDayEndpointResponse(session, stationID, 1, std::move(rules));
    const auto answered = outcome.result();
    if (!answered) {
        qCDebug(lcSEMSAPI, "Today output fallback request failed: %s",
                qUtf8Printable(answered.error().localizedDescription()));
    }
    co_return todayOutputKWh;
}

/// Some day endpoints answer with the day's energy alone, so an answer without a curve is passed over.
QCoro::Task<Result<std::optional<SEMSDaySeries>>> SEMSAPIClient::fetchTodayOutputSeries(SEMSSession session,
                                                                                        QString stationID) {
    const auto self = shared_from_this();
    std::optional<SEMSDaySeries> series;
    bool hasAnswer = false;
    AttemptRules rules;
    rules.read = [&series, &hasAnswer](const JSON& reply, const SEMSRequest& /*answered*/) -> Result<void> {
        hasAnswer = true;
        series = SEMSJSONSearch::extractTodayPowerSeries(reply);
        return series ? Result<void>() : failure(SEMSAPIError::invalidResponse());
    };
    const auto outcome = co_await fetchTodayDayEndpointResponse(session, stationID, samplesPerDay, std::move(rules));
    if (hasAnswer) {
        co_return series;
    }
    co_return failure(outcome.result().error());
}

} // namespace Varnel
