#include <VarnelShared/URLError.h>

#include <QCoreApplication>

namespace Varnel {

namespace {
QString ownDescription(URLError::Code code) {
    switch (code) {
    case URLError::Code::notConnectedToInternet:
        return QCoreApplication::translate("URLError", "The Internet connection appears to be offline.");
    case URLError::Code::networkConnectionLost:
        return QCoreApplication::translate("URLError", "The network connection was lost.");
    case URLError::Code::cannotFindHost:
        return QCoreApplication::translate("URLError", "A server with the specified hostname could not be found.");
    case URLError::Code::cannotConnectToHost:
        return QCoreApplication::translate("URLError", "Could not connect to the server.");
    case URLError::Code::dnsLookupFailed:
        return QCoreApplication::translate("URLError", "The hostname could not be looked up.");
    case URLError::Code::timedOut:
        return QCoreApplication::translate("URLError", "The request timed out.");
    case URLError::Code::cancelled:
        return QCoreApplication::translate("URLError", "The request was cancelled.");
    case URLError::Code::secureConnectionFailed:
        return QCoreApplication::translate("URLError", "A secure connection to the server could not be made.");
    case URLError::Code::dataTooLarge:
        return QCoreApplication::translate("URLError", "The reply is too large.");
    case URLError::Code::badURL:
        return QCoreApplication::translate("URLError", "The address or a header of the request is not valid.");
    case URLError::Code::unknown:
        break;
    }
    return QCoreApplication::translate("URLError", "The network request failed.");
}
} // namespace

QString URLError::localizedDescription() const {
    return description.isEmpty() ? ownDescription(code) : description;
}

} // namespace Varnel
