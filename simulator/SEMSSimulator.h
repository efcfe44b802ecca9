#pragma once

#include <simulator/LoopbackHTTPServer.h>
#include <simulator/RequestLog.h>
#include <simulator/SEMSService.h>

#include <QUrl>

#include <memory>

namespace Varnel::Simulator {

/// The simulated service on a loopback port. Changes of its behaviour hold from the next request on.
///
/// Beside the service it answers /_control: GET tells how it stands with all settings, GET /_control/log gives the
/// requests as JSON lines, POST changes settings by a JSON object. These requests are neither logged nor disturbed.
class SEMSSimulator {
public:
    /// `clock` must outlive this object.
    explicit SEMSSimulator(const Clock& clock);

    /// Starts to answer; port 0 chooses a free one. Fails with `SimulatorError` when the port cannot be had.
    Result<void> listen(quint16 port);

    /// "http://127.0.0.1:<port>/api/", the base to sign in at.
    QUrl baseURL() const;

    /// Takes no connections, and ends those there are, while a fault of the kind `refuse` holds; takes them again
    /// after it. To be called whenever the clock has moved on. Fails with `SimulatorError` when somebody else has
    /// taken the port meanwhile.
    Result<void> followClock();

    Behaviour& behaviour() { return m_service.behaviour(); }
    RequestLog& log() { return m_log; }
    SignInHistory& signIns() { return m_service.signIns(); }

    /// Every session handed out so far is unknown from now on.
    void expireSessions() { m_service.sessions().expireAll(); }

    /// Applies an object of settings as a whole or, when one of them is wrong, not at all.
    Result<void> change(const JSON& settings);

private:
    void handle(ServiceRequest request, QTcpSocket* socket);
    Reply answerControl(const ServiceRequest& request);
    Reply state() const;
    JSON signInCounts(Family family) const;

    SEMSService m_service;
    RequestLog m_log;
    std::unique_ptr<LoopbackHTTPServer> m_server; ///< after the log: its connections let their requests go
    quint16 m_port = 0;
};

} // namespace Varnel::Simulator
