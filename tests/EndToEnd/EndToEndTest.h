#pragma once

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"

#include <simulator/SEMSSimulator.h>

#include <VarnelSEMS/Linux/NetworkHTTPSession.h>
#include <VarnelSEMS/SEMSAPIClient.h>

#include <gmock/gmock.h>

namespace Varnel {

using Simulator::FaultKind;
using Testing::await;

/// The real session, watched: notes which hosts are asked and with which deadline, and may shorten that deadline so
/// that no test has to wait for it.
class WatchedHTTPSession final : public HTTPSession {
public:
    QCoro::Task<Result<HTTPResponse>> send(HTTPRequest request) override;

    std::function<void()> onSend = [] {};
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
    using Lines = std::vector<std::string>;

    void SetUp() override;
    void TearDown() override;

    /// A base of the simulator behind a folder of its own: a host of another region, as far as paths can tell.
    QUrl base(const QString& folder) const;

    Result<SEMSSession> signIn() { return await(client->signIn(account, password)); }

    /// A session of the family, signed in; the log begins behind the sign-in.
    SEMSSession signedIn(SEMSAuthMode mode);

    /// From now on this alone is wrong, with these paths.
    void disturb(FaultKind kind, const QString& paths = QStringLiteral("*"));

    /// Besides, every request with these paths ends in this status with this body. The first that is asked for counts.
    void answer(const QString& paths, int status, const QString& body = {}, const QString& contentType = {});

    Result<PowerReading> reading(const SEMSSession& session, const QString& station = stationID) {
        return await(client->fetchCurrentPower(session, station));
    }

    /// "METHOD target" of each request so far, in order.
    Lines asked();

    /// What a request says beside its target: an indented line for each header that matters to the
    /// service and one for the body.
    static std::string sent(const Simulator::ServiceRequest& request);

    static inline const QString stationID = QStringLiteral("6f1c2a34-58be-4d0e-9a57-2b8c41d7e001");
    const QString account = QStringLiteral("demo@example.com");
    const QString password = QStringLiteral("p&ss wörd\"1");
    Testing::HandTurnedTime time;
    Simulator::SEMSSimulator simulator{time};
    WatchedHTTPSession http;
    SEMSEndpoints endpoints;
    std::shared_ptr<SEMSAPIClient> client;
    bool mayOverlap = false; ///< the service notices that a client has gone only after the next request came
};

template <typename T>
std::string errorOf(const Result<T>& result) {
    return result ? "no error" : result.error().localizedDescription().toStdString();
}

} // namespace Varnel
