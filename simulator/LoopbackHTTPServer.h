#pragma once

#include <simulator/Reply.h>
#include <simulator/ServiceRequest.h>

#include <QAbstractHttpServer>

#include <functional>
#include <memory>

class QTcpSocket;

namespace Varnel::Simulator {

class LoopbackTCPServer;

// With a request comes its connection in Qt 6.4, what answers in its place in Qt 6.8.
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
using RequestAnswerer = QTcpSocket*;
#else
using RequestAnswerer = QHttpServerResponder&;
#endif

/// Takes HTTP requests on the loopback address, never beyond it, and leaves the answering to its handler, which gets
/// the bare connection, so that replies can go wrong below HTTP too.
class LoopbackHTTPServer final : public QAbstractHttpServer {
public:
    /// `socket` lives until the connection ends. Nothing may be sent before the handler has returned.
    using Handler = std::function<void(ServiceRequest request, QTcpSocket* socket)>;

    explicit LoopbackHTTPServer(Handler handler);

    /// Listens on a port, 0 chooses a free one. Gives the port, or 0 when it is taken or not allowed.
    quint16 listen(quint16 port);

private:
    bool handleRequest(const QHttpServerRequest& request, RequestAnswerer answerer) override;
    void missingHandler(const QHttpServerRequest& request, RequestAnswerer answerer) override;

    Handler m_handler;
    LoopbackTCPServer* m_server = nullptr; ///< a child
};

/// Sends a reply over a connection in the manner it asks for, from the event loop, as long as the connection lasts.
/// `inFlight` is let go with the reply's last byte or with the connection, whichever comes first.
void sendReply(QTcpSocket* socket, const Reply& reply, std::shared_ptr<void> inFlight);

} // namespace Varnel::Simulator
