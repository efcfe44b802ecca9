#include <VarnelSEMS/Linux/NetworkErrorMapping.h>

#include <QCoreApplication>
#include <QNetworkInformation>
#include <QNetworkInterface>

#include <algorithm>

namespace Varnel {

namespace {
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

} // namespace Varnel
