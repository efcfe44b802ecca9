#pragma once

#include <QByteArrayList>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <memory>

namespace Varnel::Testing {

/// A server on the loopback address that hands every whole request to a function, which writes to the socket what it
/// likes and closes it when it likes.
class LoopbackServer {
public:
    using Handler = std::function<void(QTcpSocket& socket, const QByteArray& request)>;

    explicit LoopbackServer(Handler handler, std::unique_ptr<QTcpServer> server = std::make_unique<QTcpServer>());

    QUrl url(const QString& path = QStringLiteral("/"), const QString& scheme = QStringLiteral("http")) const;

    QByteArrayList requests; ///< whole, in order

private:
    void serve(QTcpSocket* socket);

    Handler m_handler;
    std::unique_ptr<QTcpServer> m_server;
};

/// A whole reply, after which the connection stays open.
QByteArray httpReply(int status, const QByteArray& body, const QByteArray& headers = {});

} // namespace Varnel::Testing
