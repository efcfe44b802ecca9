#pragma once

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"

#include <simulator/SEMSSimulator.h>

#include <VarnelSEMS/Linux/NetworkHTTPSession.h>
#include <VarnelSEMS/SEMSAPIClient.h>
#include <VarnelSEMS/SEMSAPIError.h>

#include <gmock/gmock.h>

namespace Varnel {

using Simulator::Fault;
using Simulator::FaultKind;

/// The real session, watched: notes which hosts are asked and with which deadline, and may shorten that deadline so
/// that no test has to wait for it.
class WatchedHTTPSession final : public HTTPSession {
public:
    QCoro::Task<Result<HTTPResponse>> send(HTTPRequest request) override;
    void reset() override { m_session.reset(); }

    std::optional<std::chrono::milliseconds> shorterTimeout;
    std::vector<QString> hosts;
    std::vector<std::chrono::milliseconds> timeouts;

private:
    NetworkHTTPSession m_session;
};

/// The real client over real HTTP against the simulated service. Every test ends with the check that the loopback
/// alone was asked and, unless it says otherwise, that no two requests were in flight at once.
class EndToEndTest : public testing::Test {
protected:
    static constexpr const char* stationID = "6f1c2a34-58be-4d0e-9a57-2b8c41d7e001";

    void SetUp() override;
    void TearDown() override;

    /// A base of the simulator behind a folder of its own: a host of another region, as far as paths can tell.
    QUrl base(const QString& folder) const;

    /// A session of the family, signed in; the log begins behind the sign-in.
    SEMSSession signedIn(SEMSAuthMode mode);

    /// Every request with these paths ends in HTTP 500.
    void breakPaths(const QString& pattern, const QString& contentType = {});

    Result<PowerReading> reading(const SEMSSession& session);

    /// "METHOD target" of each request so far, in order.
    std::vector<std::string> asked();
    const Simulator::ServiceRequest& request(std::size_t index) { return simulator.log().requests().at(index); }

    static const SEMSAPIError* semsError(const Error& error) { return error.as<SEMSAPIError>(); }

    const QString account = QStringLiteral("demo@example.com");
    const QString password = QStringLiteral("p&ss wörd+1");
    Testing::HandTurnedTime time;
    Simulator::SEMSSimulator simulator{time};
    WatchedHTTPSession http;
    SEMSEndpoints endpoints;
    std::shared_ptr<SEMSAPIClient> client;
    bool mayOverlap = false; ///< the service notices that a client has gone only after the next request came
};

} // namespace Varnel
