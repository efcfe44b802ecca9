#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSEndpoints.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelSEMS/SEMSRequest.h>
#include <VarnelSEMS/SEMSSession.h>
#include <VarnelShared/Clock.h>
#include <VarnelShared/JSON.h>
#include <VarnelShared/PowerReading.h>

#include <QCoroTask>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Varnel {

/// Takes what is wanted from the reply to a request; its error makes the attempt a failed one. Called on another thread
/// where the reply is a large one, while whoever asked for it is suspended: it must touch nothing but what is theirs.
using ReplyReader = std::function<Result<void>(const JSON& reply, const SEMSRequest& answered)>;

/// How far a list of requests is tried, beyond "each in order until one succeeds".
struct AttemptRules {
    ReplyReader read;

    bool endAtTransportFailure = false; ///< without a connection the next path is not tried either

    /// No attempt starts later than this after the first, and the last one's own deadline is shortened to it.
    std::optional<std::chrono::seconds> timeLimit = std::nullopt;
};

/// What became of a list of requests.
struct AttemptOutcome {
    bool hasReply = false;       ///< and it was read: of the request behind the failed ones
    std::vector<Error> failures; ///< of the first requests of the list, in order
    bool carriedSession = false; ///< the requests did

    /// The longest that a failure asked for.
    std::optional<std::chrono::seconds> retryAfter() const;

    /// Success with a reply, else the last failure. But an expired session is one whatever a path says that no longer
    /// exists: where the requests carried a session, `authenticationFailed` comes before every other failure.
    /// `SEMSAPIError::invalidResponse` when nothing was tried.
    Result<void> result() const;
};

/// Reads a home solar station from the SEMS service, whose two API families, paths and regional hosts are tried in
/// fixed orders.
///
/// Made by `std::make_shared` only. A call keeps its client alive until it ends, so a caller may drop the client while
/// calls are in flight. The HTTP session and the clock must outlive the client and its calls. The client holds no
/// state but the account and the password of its last sign-in, for nothing but to mask them: each call takes its
/// session as an argument. Within one call no two requests are in flight at once; each has a total deadline of 12 s.
///
/// Calls fail with `SEMSAPIError`, with `URLError` as the HTTP session reports it, or with `JSONError` for a body that
/// is not JSON; a call with a session that no longer holds fails with `authenticationFailed`. No error carries the
/// account, the password or a token, unless it has fewer than four characters. Every failed attempt is logged at debug
/// level.
class SEMSAPIClient : public std::enable_shared_from_this<SEMSAPIClient> {
public:
    /// Sends nothing. `baseURL` is the configured base.
    SEMSAPIClient(QUrl baseURL, HTTPSession& session, const Clock& clock, SEMSEndpoints endpoints = SEMSEndpoints());

    /// Sends nothing any more: what a call that goes on would send next fails as `cancelled`.
    void stop() { m_isStopped = true; }

    /// Fails with `invalidConfiguration`, without a request, where the configured base is no http or https address.
    /// Else tries the token API on the configured base, then the portal on every candidate base; the first token wins.
    /// Fails with `allSignInStrategiesFailed` and one line for each of the two; `isTransient` tells of that error
    /// whether nothing judged the password.
    QCoro::Task<Result<SEMSSession>> signIn(QString account, QString password);

    /// The first station of `fetchPowerStations`, with its errors.
    QCoro::Task<Result<PowerStation>> discoverDefaultPowerStation(SEMSSession session);

    /// The account's stations in the service's order, never empty: an answer without a station is `noPowerStation`.
    QCoro::Task<Result<std::vector<PowerStation>>> fetchPowerStations(SEMSSession session);

    /// The rated size in kW of the preferred station, or of the first one when none is preferred or none matches.
    /// None when the service reports no size or no station.
    QCoro::Task<Result<std::optional<double>>> fetchSystemSizeKW(SEMSSession session,
                                                                 std::optional<QString> preferredStationID);

    /// Reads the preferred station, or the default one when none is preferred (an empty text is none). Today's output
    /// is looked for in the monitor detail, then in the day endpoints; not finding it is no error.
    QCoro::Task<Result<PowerReading>> fetchCurrentPower(SEMSSession session, std::optional<QString> preferredStationID);

    /// Today's power in time order, as many values as the service gives when it is asked for 288, one for every five
    /// minutes: what it leaves out is missing without a gap. None when it answers but has no curve.
    QCoro::Task<Result<std::optional<SEMSDaySeries>>> fetchTodayOutputSeries(SEMSSession session, QString stationID);

private:
    // SEMSAPIClient.cpp: what every call passes through.
    QCoro::Task<Result<void>> requestJSON(SEMSRequest request, ReplyReader read);
    QCoro::Task<AttemptOutcome> tryInOrder(std::vector<SEMSRequest> requests, AttemptRules rules);

    // SEMSAPIClientSignIn.cpp
    QCoro::Task<Result<SEMSSession>> signInOpenAPI(QString account, QString password);
    QCoro::Task<Result<SEMSSession>> signInLegacyPortal(QString account, QString password);

    // SEMSAPIClientStations.cpp
    QCoro::Task<Result<std::vector<PowerStation>>> fetchPowerStationsOpenAPI(const SEMSSession& session);
    QCoro::Task<Result<std::vector<PowerStation>>> fetchPowerStationsLegacy(const SEMSSession& session);
    QCoro::Task<Result<std::vector<PowerStation>>> stationsOfFirstReply(std::vector<SEMSRequest> requests);

    // SEMSAPIClientReading.cpp
    QCoro::Task<Result<QString>> settledStationID(SEMSSession session, std::optional<QString> preferredStationID);
    QCoro::Task<AttemptOutcome> fetchMonitorDetail(const SEMSSession& session, const QString& stationID,
                                                   AttemptRules rules);
    QCoro::Task<AttemptOutcome> fetchCurrentPowerOpenAPI(const SEMSSession& session, const QString& stationID,
                                                         AttemptRules rules);
    QCoro::Task<AttemptOutcome> fetchCurrentPowerLegacy(const SEMSSession& session, const QString& stationID,
                                                        AttemptRules rules);
    QCoro::Task<std::optional<double>> fetchTodayOutput(SEMSSession session, QString stationID);
    QCoro::Task<AttemptOutcome> fetchTodayDayEndpointResponse(const SEMSSession& session, const QString& stationID,
                                                              int sampleCount, AttemptRules rules);

    QUrl m_configuredBaseURL;
    QStringList m_credentials; ///< in every encoding; a server may echo them in the reply to any later call
    HTTPSession& m_session;
    const Clock& m_clock;
    SEMSEndpoints m_endpoints;
    bool m_isStopped = false;
};

} // namespace Varnel
