#include <simulator/LoopbackHTTPServer.h>

#include <QHttpServerRequest>
#include <QMetaEnum>
#include <QTcpSocket>

namespace Varnel::Simulator {

namespace {
QByteArray nameOf(QHttpServerRequest::Method method) {
    return QByteArray(QMetaEnum::fromType<QHttpServerRequest::Method>().valueToKey(static_cast<int>(method))).toUpper();
}

ServiceRequest serviceRequest(const QHttpServerRequest& request) {
    ServiceRequest result;
    result.method = nameOf(request.method());
    result.target = request.url().toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment);
    for (const auto& [name, value] : request.headers()) {
        result.headers.emplace_back(name, value);
    }
    result.body = request.body();
    return result;
}
} // namespace

LoopbackHTTPServer::LoopbackHTTPServer(Handler handler)
    : m_handler(std::move(handler)) {}

quint16 LoopbackHTTPServer::listen(quint16 port) {
    return QAbstractHttpServer::listen(QHostAddress(QHostAddress::LocalHost), port);
}

bool LoopbackHTTPServer::handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) {
    m_handler(serviceRequest(request), socket);
    return true;
}

void LoopbackHTTPServer::missingHandler(const QHttpServerRequest&, QTcpSocket*) {
    // Never called: every request is handled.
}

} // namespace Varnel::Simulator
