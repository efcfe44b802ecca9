#include <VarnelSEMS/Linux/NetworkTransfer.h>

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkInformation>
#include <QNetworkInterface>
#include <QNetworkRequest>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {
constexpr qint64 readBufferSize = qint64(64) * 1024;

QNetworkReply* sent(QNetworkAccessManager& manager, const HTTPRequest& request) {
    QNetworkRequest network(request.url);
    // HTTP/2 gains nothing for one request at a time, and its faults show differently.
    network.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    network.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // Qt unpacks a whole piece of the body at once: a small body that unpacks to gigabytes must end in Qt, before the
    // size limit here sees a byte of it.
    network.setDecompressedSafetyCheckThreshold(NetworkTransfer::maximumBodySize);
    for (const auto& [name, value] : request.headers) {
        network.setRawHeader(name, value);
    }
    return manager.sendCustomRequest(network, request.method, request.body.value_or(QByteArray()));
}

/// A status of 400 and more is an error to Qt though the reply is whole. Everything else that Qt calls an error left
/// the reply incomplete or undecodable, also where a status had arrived. A proxy that refuses to connect to the server
/// leaves no status.
bool isWholeReply(QNetworkReply::NetworkError error, std::optional<int> status) {
    const bool isMadeOfStatus =
        error == QNetworkReply::ProxyAuthenticationRequiredError ||
        (error >= QNetworkReply::ContentAccessDenied && error != QNetworkReply::ProtocolFailure);
    return error == QNetworkReply::NoError || (isMadeOfStatus && status.value_or(0) >= 400);
}

std::optional<int> statusOf(const QNetworkReply& reply) {
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    return status.isValid() ? std::optional(status.toInt()) : std::nullopt;
}

bool leadsOutside(const QNetworkInterface& interface) {
    const auto flags = interface.flags();
    return flags.testFlag(QNetworkInterface::IsUp) && flags.testFlag(QNetworkInterface::IsRunning) &&
           !flags.testFlag(QNetworkInterface::IsLoopBack) && !interface.addressEntries().isEmpty();
}

/// No route to a network or a host has no error code of its own; the texts are compared as Qt translates them.
URLError::Code codeOfText(const QString& text) {
    const auto isSocketText = [&text](const char* source) {
        return text == QCoreApplication::translate("QNativeSocketEngine", source);
    };
    if (isSocketText("Network unreachable")) {
        return URLError::Code::notConnectedToInternet;
    }
    return isSocketText("Host unreachable") ? URLError::Code::cannotConnectToHost : URLError::Code::unknown;
}

URLError::Code codeFor(QNetworkReply::NetworkError error, const QString& text, NetworkState state) {
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
        return URLError::Code::cannotConnectToHost;
    case QNetworkReply::RemoteHostClosedError:
        return URLError::Code::networkConnectionLost;
    case QNetworkReply::HostNotFoundError:
        return state == NetworkState::absent ? URLError::Code::notConnectedToInternet : URLError::Code::cannotFindHost;
    case QNetworkReply::TimeoutError:
        return URLError::Code::timedOut;
    case QNetworkReply::OperationCanceledError:
        return URLError::Code::cancelled;
    case QNetworkReply::SslHandshakeFailedError:
        return URLError::Code::secureConnectionFailed;
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return URLError::Code::notConnectedToInternet;
    default: // Qt's enumeration: what is left tells nothing that the user could act on.
        return codeOfText(text);
    }
}
} // namespace

NetworkState currentNetworkState() {
    bool isAvailable = false;
    if (const auto* information = QNetworkInformation::instance()) {
        isAvailable = information->reachability() != QNetworkInformation::Reachability::Disconnected;
    } else {
        const auto interfaces = QNetworkInterface::allInterfaces();
        isAvailable = std::any_of(interfaces.begin(), interfaces.end(), leadsOutside);
    }
    return isAvailable ? NetworkState::available : NetworkState::absent;
}

URLError urlErrorFor(QNetworkReply::NetworkError error, const QString& text, NetworkState state) {
    // Qt reports a broken encoding and one that unpacks out of all proportion alike, and gives no reason for either.
    if (error == QNetworkReply::UnknownContentError) {
        return {URLError::Code::unknown, QStringLiteral("The reply could not be decompressed.")};
    }
    const URLError::Code code = codeFor(error, text, state);
    // These two say in Qt's words what is wrong (the certificate, the proxy); every other code has its own sentence.
    const bool keepsText = code == URLError::Code::unknown || code == URLError::Code::secureConnectionFailed;
    return {code, keepsText ? text : QString()};
}

NetworkTransfer::NetworkTransfer(QNetworkAccessManager& manager, const HTTPRequest& request,
                                 std::chrono::milliseconds timeout)
    : m_reply(sent(manager, request)) {
    m_reply->setReadBufferSize(readBufferSize);
    QObject::connect(m_reply.get(), &QNetworkReply::readyRead, &m_context, [this] { readAvailable(); });
    // Qt's own transfer timeout counts idle time only: a server that drips would keep the request alive for ever.
    QTimer::singleShot(timeout, Qt::PreciseTimer, &m_context, [this] { stop(End::byDeadline); });
}

void NetworkTransfer::Release::operator()(QNetworkReply* reply) const {
    reply->abort();
    reply->deleteLater();
}

void NetworkTransfer::readAvailable() {
    m_body += m_reply->readAll();
    if (m_body.size() > maximumBodySize) {
        stop(End::bySize);
    }
}

/// Aborting finishes the reply on the spot, and whoever awaits it may destroy this transfer: nothing follows it.
void NetworkTransfer::stop(End reason) {
    m_end = reason;
    m_reply->abort();
}

Result<HTTPResponse> NetworkTransfer::outcome() {
    if (m_end == End::byItself && m_reply->isOpen()) {
        m_body += m_reply->readAll();
    }
    if (m_end == End::byDeadline) {
        return failure(URLError{URLError::Code::timedOut, {}});
    }
    if (m_end == End::bySize || m_body.size() > maximumBodySize) {
        return failure(URLError{URLError::Code::dataTooLarge, {}});
    }
    const auto status = statusOf(*m_reply);
    if (!isWholeReply(m_reply->error(), status)) {
        return failure(urlErrorFor(m_reply->error(), m_reply->errorString(), currentNetworkState()));
    }
    HTTPResponse response{status, {}, std::move(m_body)};
    for (const auto& [name, value] : m_reply->rawHeaderPairs()) {
        response.headers.emplace_back(name, value);
    }
    return response;
}

} // namespace Varnel
