#pragma once

#include <QByteArrayList>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <memory>
#include <utility>

namespace Varnel::Testing {

/// A server on the loopback address that hands every whole request to a function, which writes to the socket what it
/// likes and closes it when it likes.
class LoopbackServer {
public:
    using Handler = std::function<void(QTcpSocket& socket, const QByteArray& request)>;

    explicit LoopbackServer(Handler handler, std::unique_ptr<QTcpServer> server = std::make_unique<QTcpServer>())
        : m_handler(std::move(handler))
        , m_server(std::move(server)) {
        QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, m_server.get(),
                         [this] { serve(m_server->nextPendingConnection()); });
        m_server->listen(QHostAddress::LocalHost);
    }

    QUrl url(const QString& path = QStringLiteral("/"), const QString& scheme = QStringLiteral("http")) const {
        return QUrl(scheme + QStringLiteral("://127.0.0.1:%1").arg(m_server->serverPort()) + path);
    }

    QByteArrayList requests; ///< whole, in order

private:
    static bool isWhole(const QByteArray& request) {
        const qsizetype end = request.indexOf("\r\n\r\n");
        const qsizetype length = request.toLower().indexOf("content-length: ");
        const qsizetype body = length < 0 ? 0 : request.mid(length + 16).split('\r').first().toInt();
        return end >= 0 && request.size() >= end + 4 + body;
    }

    void serve(QTcpSocket* socket) {
        auto received = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, received] {
            *received += socket->readAll();
            if (isWhole(*received)) {
                requests += std::exchange(*received, {});
                m_handler(*socket, requests.last());
            }
        });
    }

    Handler m_handler;
    std::unique_ptr<QTcpServer> m_server;
};

/// A whole reply, after which the connection stays open.
inline QByteArray httpReply(int status, const QByteArray& body, const QByteArray& headers = {}) {
    return "HTTP/1.1 " + QByteArray::number(status) + " X\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\n" + headers + "\r\n" + body;
}

} // namespace Varnel::Testing
