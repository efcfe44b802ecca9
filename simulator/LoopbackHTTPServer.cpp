#include <simulator/LoopbackHTTPServer.h>

#include <QHttpServerRequest>
#include <QMetaEnum>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace Varnel::Simulator {

namespace {
QByteArray nameOf(QHttpServerRequest::Method method) {
    return QByteArray(QMetaEnum::fromType<QHttpServerRequest::Method>().valueToKey(static_cast<int>(method))).toUpper();
}

using Connections = QList<QPointer<QTcpSocket>>;

#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
auto headersOf(const QHttpServerRequest& request) {
    return request.headers();
}

QTcpSocket* connectionOf(const QHttpServerRequest& /*request*/, QTcpSocket* socket, const Connections& /*all*/) {
    return socket;
}
#else
auto headersOf(const QHttpServerRequest& request) {
    return request.headers().toListOfPairs();
}

QTcpSocket* connectionOf(const QHttpServerRequest& request, const QHttpServerResponder& /*responder*/,
                         const Connections& all) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const auto& connection) {
        return connection && connection->peerPort() == request.remotePort();
    });
    return found != all.end() ? found->data() : nullptr;
}
#endif

ServiceRequest serviceRequest(const QHttpServerRequest& request) {
    ServiceRequest result;
    result.method = nameOf(request.method());
    result.target = request.url().toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment);
    for (const auto& [name, value] : headersOf(request)) {
        result.headers.emplace_back(name, value);
    }
    result.body = request.body();
    return result;
}

constexpr int drippingStepsPerSecond = 20;

QByteArray bytesOf(const Reply& reply) {
    QByteArray bytes = "HTTP/1.1 " + QByteArray::number(reply.status) + " Simulated\r\n";
    bytes += "Content-Type: " + reply.contentType + "\r\n";
    bytes += "Content-Length: " + QByteArray::number(reply.body.size()) + "\r\n";
    for (const auto& [name, value] : reply.headers) {
        bytes += name + ": " + value + "\r\n";
    }
    bytes += "\r\n";
    // A cut reply announces the whole body and ends in its middle.
    const bool isCut = reply.transmission.manner == Transmission::Manner::cutInHalf;
    return bytes + (isCut ? reply.body.first(reply.body.size() / 2) : reply.body);
}

/// Sends one reply and ends with its last byte or with the connection, whichever comes first.
class ReplyTransmission final : public QObject {
public:
    ReplyTransmission(QTcpSocket* socket, const Reply& reply, std::shared_ptr<void> inFlight);

private:
    void begin();
    void writePiece(qsizetype size);
    void onBytesWritten();

    QTcpSocket* m_socket; ///< the parent
    Transmission m_transmission;
    QByteArray m_unsent;
    QTimer m_timer;
    std::shared_ptr<void> m_inFlight;
};

ReplyTransmission::ReplyTransmission(QTcpSocket* socket, const Reply& reply, std::shared_ptr<void> inFlight)
    : QObject(socket)
    , m_socket(socket)
    , m_transmission(reply.transmission)
    , m_unsent(bytesOf(reply))
    , m_inFlight(std::move(inFlight)) {
    connect(socket, &QTcpSocket::bytesWritten, this, [this] { onBytesWritten(); });
    connect(socket, &QTcpSocket::disconnected, this, [this] { m_inFlight.reset(); });
    QTimer::singleShot(m_transmission.delay, this, [this] { begin(); });
}

void ReplyTransmission::begin() {
    switch (m_transmission.manner) {
    case Transmission::Manner::whole:
    case Transmission::Manner::cutInHalf:
        writePiece(m_unsent.size());
        return;
    case Transmission::Manner::dripped:
        connect(&m_timer, &QTimer::timeout, this,
                [this] { writePiece(std::max(1, m_transmission.bytesPerSecond / drippingStepsPerSecond)); });
        m_timer.start(1000 / drippingStepsPerSecond);
        return;
    case Transmission::Manner::closed:
        m_socket->abort();
        return;
    case Transmission::Manner::withheld:
        return;
    }
}

void ReplyTransmission::writePiece(qsizetype size) {
    const QByteArray piece = m_unsent.first(std::min(size, m_unsent.size()));
    m_unsent.remove(0, piece.size());
    m_socket->write(piece);
}

void ReplyTransmission::onBytesWritten() {
    if (!m_unsent.isEmpty() || m_socket->bytesToWrite() > 0) {
        return;
    }
    m_timer.stop();
    m_inFlight.reset();
    disconnect(m_socket, nullptr, this, nullptr);
    if (m_transmission.manner == Transmission::Manner::cutInHalf) {
        m_socket->disconnectFromHost();
    }
    deleteLater();
}
} // namespace

/// Knows its connections, since the HTTP server of Qt 6.8 gives none away.
class LoopbackTCPServer final : public QTcpServer {
public:
    const Connections& connections() const { return m_connections; }

protected:
    void incomingConnection(qintptr descriptor) override {
        auto* connection = new QTcpSocket(this);
        connection->setSocketDescriptor(descriptor);
        m_connections.removeAll(nullptr);
        m_connections += connection;
        addPendingConnection(connection);
    }

private:
    Connections m_connections;
};

LoopbackHTTPServer::LoopbackHTTPServer(Handler handler)
    : m_handler(std::move(handler)) {}

quint16 LoopbackHTTPServer::listen(quint16 port) {
    auto server = std::make_unique<LoopbackTCPServer>();
    if (!server->listen(QHostAddress(QHostAddress::LocalHost), port)) {
        return 0;
    }
    m_server = server.release();
    m_server->setParent(this);
    bind(m_server);
    return m_server->serverPort();
}

bool LoopbackHTTPServer::handleRequest(const QHttpServerRequest& request, RequestAnswerer answerer) {
    m_handler(serviceRequest(request), connectionOf(request, answerer, m_server->connections()));
    return true;
}

void LoopbackHTTPServer::missingHandler(const QHttpServerRequest& /*request*/, RequestAnswerer /*answerer*/) {
    // Never called: every request is handled.
}

void sendReply(QTcpSocket* socket, const Reply& reply, std::shared_ptr<void> inFlight) {
    new ReplyTransmission(socket, reply, std::move(inFlight));
}

} // namespace Varnel::Simulator
