#include <VarnelSEMS/SEMSAPIClient.h>

#include <VarnelSEMS/LegacyTokenHeader.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelShared/Logging.h>

#include <algorithm>
#include <utility>

namespace Varnel {

using namespace Qt::StringLiterals;

namespace {
constexpr int samplesPerDay = 288; // one for every five minutes

/// All of the day's optional extras together take no longer than this, so that they never hold back a reading.
constexpr std::chrono::seconds dayEndpointTimeLimit{30};

/// Each family is asked below its own paths alone.
QStringList dayEndpointPaths(SEMSAuthMode mode) {
    switch (mode) {
    case SEMSAuthMode::openAPI:
        return {u"api/OpenApi/GetPowerStationPowerAndIncomeByDay"_s,
                u"api/v1/OpenApi/GetPowerStationPowerAndIncomeByDay"_s,
                u"OpenApi/GetPowerStationPowerAndIncomeByDay"_s,
                u"v1/OpenApi/GetPowerStationPowerAndIncomeByDay"_s,
                u"api/OpenApi/GetPowerStationPowerByDay"_s,
                u"api/v1/OpenApi/GetPowerStationPowerByDay"_s,
                u"OpenApi/GetPowerStationPowerByDay"_s,
                u"v1/OpenApi/GetPowerStationPowerByDay"_s};
    case SEMSAuthMode::legacyPortal:
        break;
    }
    return {u"PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"_s,
            u"PowerStation/GetPowerStationPowerAndIncomeByDay"_s,
            u"v3/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"_s,
            u"v2/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"_s,
            u"v1/PowerStationMonitor/GetPowerStationPowerAndIncomeByDay"_s,
            u"v1/PowerStation/GetPowerStationPowerAndIncomeByDay"_s,
            u"PowerStationMonitor/GetPowerStationPowerByDay"_s,
            u"v2/PowerStationMonitor/GetPowerStationPowerByDay"_s,
            u"v1/PowerStationMonitor/GetPowerStationPowerByDay"_s,
            u"PowerStation/GetPowerStationPowerByDay"_s,
            u"v1/PowerStation/GetPowerStationPowerByDay"_s};
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
    for (const QString& name : {u"powerstation_id"_s, u"powerStationId"_s, u"id"_s}) {
        pairs += name + u'=' + QString::fromLatin1(QUrl::toPercentEncoding(stationID));
    }
    for (const QString& name : {u"date"_s, u"day"_s, u"queryDate"_s, u"start"_s, u"end"_s}) {
        pairs += name + u'=' + day;
    }
    pairs += u"count="_s + QString::number(count);
    return pairs.join(u'&');
}

} // namespace

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
        asked.path += u'?' + dayQuery(stationID, count, day);
        asked.body.reset();
        requests.push_back(asked);
    }
    rules.endAtTransportFailure = true;
    rules.timeLimit = dayEndpointTimeLimit;
    return tryInOrder(std::move(requests), std::move(rules));
}

QCoro::Task<std::optional<double>> SEMSAPIClient::fetchTodayOutput(SEMSSession session, QString stationID) {
    const QDate day = m_clock.now().toDateTime().date();
    AttemptRules rules;
    auto outcome = co_await fetchTodayDayEndpointResponse(session, stationID, 1, std::move(rules));
    const auto reply = std::move(outcome).result();
    if (!reply) {
        qCDebug(lcSEMSAPI, "Today output fallback request failed: %s",
                qUtf8Printable(reply.error().localizedDescription()));
        co_return std::nullopt;
    }
    co_return SEMSJSONSearch::extractDayOutputKWh(*reply, day);
}

/// Some day endpoints answer with the day's energy alone, so an answer without a curve is passed over.
QCoro::Task<Result<std::optional<std::vector<double>>>> SEMSAPIClient::fetchTodayOutputSeries(SEMSSession session,
                                                                                              QString stationID) {
    const auto self = shared_from_this();
    std::optional<std::vector<double>> series;
    bool hasAnswer = false;
    AttemptRules rules;
    rules.accept = [&series, &hasAnswer](const JSON& reply) -> Result<void> {
        hasAnswer = true;
        series = SEMSJSONSearch::extractTodayPowerSeriesKW(reply);
        return series ? Result<void>() : failure(SEMSAPIError::invalidResponse());
    };
    auto outcome = co_await fetchTodayDayEndpointResponse(session, stationID, samplesPerDay, std::move(rules));
    if (hasAnswer) {
        co_return series;
    }
    co_return failure(std::move(outcome).result().error());
}

} // namespace Varnel
