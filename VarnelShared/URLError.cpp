#include <VarnelShared/URLError.h>

namespace Varnel {

namespace {
QString ownDescription(URLError::Code code) {
    switch (code) {
    case URLError::Code::notConnectedToInternet:
        return QStringLiteral("The Internet connection appears to be offline.");
    case URLError::Code::networkConnectionLost:
        return QStringLiteral("The network connection was lost.");
    case URLError::Code::cannotFindHost:
        return QStringLiteral("A server with the specified hostname could not be found.");
    case URLError::Code::cannotConnectToHost:
        return QStringLiteral("Could not connect to the server.");
    case URLError::Code::dnsLookupFailed:
        return QStringLiteral("The hostname could not be looked up.");
    case URLError::Code::timedOut:
        return QStringLiteral("The request timed out.");
    case URLError::Code::cancelled:
        return QStringLiteral("The request was cancelled.");
    case URLError::Code::secureConnectionFailed:
        return QStringLiteral("A secure connection to the server could not be made.");
    case URLError::Code::dataTooLarge:
        return QStringLiteral("The reply is too large.");
    case URLError::Code::badURL:
        return QStringLiteral("The address or a header of the request is not valid.");
    case URLError::Code::unknown:
        break;
    }
    return QStringLiteral("The network request failed.");
}
} // namespace

QString URLError::localizedDescription() const {
    return description.isEmpty() ? ownDescription(code) : description;
}

} // namespace Varnel
