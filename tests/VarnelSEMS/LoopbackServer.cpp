#include "LoopbackServer.h"

#include <utility>

namespace Varnel::Testing {

namespace {
bool isWhole(const QByteArray& request) {
    const qsizetype end = request.indexOf("\r\n\r\n");
    const qsizetype length = request.toLower().indexOf("content-length: ");
    const qsizetype body = length < 0 ? 0 : request.mid(length + 16).split('\r').first().toInt();
    return end >= 0 && request.size() >= end + 4 + body;
}
} // namespace

LoopbackServer::LoopbackServer(Handler handler, std::unique_ptr<QTcpServer> server)
    : m_handler(std::move(handler))
    , m_server(std::move(server)) {
    QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(),
                     [this] { serve(m_server->nextPendingConnection()); });
    m_server->listen(QHostAddress::LocalHost);
}

void LoopbackServer::serve(QTcpSocket* socket) {
    auto received = std::make_shared<QByteArray>();
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, received] {
        *received += socket->readAll();
        if (isWhole(*received)) {
            requests += std::exchange(*received, {});
            m_handler(*socket, requests.last());
        }
    });
}

QUrl LoopbackServer::url(const QString& path, const QString& scheme) const {
    return QUrl(scheme + QStringLiteral("://127.0.0.1:%1").arg(m_server->serverPort()) + path);
}

QByteArray httpReply(int status, const QByteArray& body, const QByteArray& headers) {
    return "HTTP/1.1 " + QByteArray::number(status) + " X\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\n" + headers + "\r\n" + body;
}

} // namespace Varnel::Testing
