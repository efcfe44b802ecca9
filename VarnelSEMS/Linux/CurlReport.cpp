#include <VarnelSEMS/Linux/CurlReport.h>

#include <QCoreApplication>
#include <QNetworkInformation>
#include <QNetworkInterface>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace Varnel {

namespace {
using Code = URLError::Code;

/// The exit codes that say what a user could act on. What is not here is `unknown`, in curl's own words.
constexpr struct {
    int exitCode;
    Code code;
} codes[] = {
    {1, Code::networkConnectionLost}, // the reply is of no protocol, or of one that is not asked for
    {3, Code::badURL},
    {6, Code::cannotFindHost},
    {7, Code::cannotConnectToHost},
    {8, Code::networkConnectionLost},  // the reply makes no sense
    {18, Code::networkConnectionLost}, // cut short
    {27, Code::dataTooLarge},          // out of memory, or a line of a head is too long
    {28, Code::timedOut},
    {35, Code::secureConnectionFailed}, // the handshake
    {52, Code::networkConnectionLost},  // no reply
    {55, Code::networkConnectionLost},  // sending failed
    {56, Code::networkConnectionLost},  // receiving failed
    {60, Code::secureConnectionFailed}, // the certificate
    {77, Code::secureConnectionFailed}, // the certificates of the system
    {100, Code::dataTooLarge},          // a head, since curl 8.6
};

Code codeOf(const CurlReport& report) {
    const auto* const found =
        std::find_if(std::begin(codes), std::end(codes), [&](auto& each) { return each.exitCode == report.exitCode; });
    const Code code = found == std::end(codes) ? Code::unknown : found->code;
    // A handshake in which the connection just ends is told apart from one that fails in the text alone.
    const bool isClosed = report.message.contains(QLatin1String("SSL_ERROR_SYSCALL")) ||
                          report.message.contains(QLatin1String("Connection reset"));
    return code == Code::secureConnectionFailed && isClosed ? Code::networkConnectionLost : code;
}

/// None when the proxy has nothing to do with it.
std::optional<QString> proxyFault(const CurlReport& report) {
    if (report.proxyStatus >= 300) {
        return QCoreApplication::translate("URLError", "The proxy refuses to connect to the server (HTTP %1).")
            .arg(report.proxyStatus);
    }
    const int noConnection[] = {5, 7, 97}; // its name, its address, its own protocol
    if (std::find(std::begin(noConnection), std::end(noConnection), report.exitCode) != std::end(noConnection)) {
        return QCoreApplication::translate("URLError", "Could not connect to the proxy.");
    }
    return std::nullopt;
}

bool leadsOutside(const QNetworkInterface& interface) {
    const auto flags = interface.flags();
    return flags.testFlag(QNetworkInterface::IsUp) && flags.testFlag(QNetworkInterface::IsRunning) &&
           !flags.testFlag(QNetworkInterface::IsLoopBack) && !interface.addressEntries().isEmpty();
}

/// Of the last head in the text.
std::vector<std::pair<QByteArray, QByteArray>> headersIn(const QByteArray& heads) {
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    bool isInHead = false;
    for (const QByteArray& line : heads.split('\n')) {
        const QByteArray text = line.trimmed();
        const qsizetype colon = text.indexOf(':');
        if (text.startsWith("HTTP/")) {
            headers.clear();
            isInHead = true;
        } else if (text.isEmpty()) {
            isInHead = false;
        } else if (isInHead && colon > 0) {
            headers.emplace_back(text.left(colon), text.mid(colon + 1).trimmed());
        }
    }
    return headers;
}
} // namespace

CurlReport parsedCurlReport(const QByteArray& text, int exitCode) {
    constexpr std::string_view format = curlReportFormat;
    constexpr auto markSize = static_cast<qsizetype>(format.find('%'));
    CurlReport report;
    report.exitCode = exitCode;
    const qsizetype mark = text.lastIndexOf(QByteArrayView(curlReportFormat, markSize));
    if (mark >= 0) {
        const QByteArray result = text.mid(mark + markSize);
        const QList<QByteArray> fields = result.split(' ');
        const int status = fields.value(0).toInt();
        report.status = status != 0 ? std::optional(status) : std::nullopt;
        report.proxyStatus = fields.value(1).toInt();
        report.message = QString::fromUtf8(fields.mid(2).join(' ').trimmed());
        report.headers = headersIn(text.left(mark));
    }
    return report;
}

NetworkState currentNetworkState() {
    bool isAvailable = false;
    if (const auto* information = QNetworkInformation::instance()) {
        using Reachability = QNetworkInformation::Reachability;
        isAvailable = information->reachability() != Reachability::Disconnected &&
                      information->reachability() != Reachability::Local; // a link without any route
    } else {
        const auto interfaces = QNetworkInterface::allInterfaces();
        isAvailable = std::any_of(interfaces.begin(), interfaces.end(), leadsOutside);
    }
    return isAvailable ? NetworkState::available : NetworkState::absent;
}

URLError urlErrorFor(const CurlReport& report, const QNetworkProxy& proxy, NetworkState state) {
    constexpr int badEncoding = 61;
    if (report.exitCode == badEncoding) {
        return {Code::unknown, QCoreApplication::translate("URLError", "The reply could not be decompressed.")};
    }
    const Code code = codeOf(report);
    const bool isUnreachable = code == Code::cannotFindHost || code == Code::cannotConnectToHost;
    if (state == NetworkState::absent && isUnreachable) {
        return {Code::notConnectedToInternet, {}};
    }
    if (const auto fault = proxy.type() == QNetworkProxy::NoProxy ? std::nullopt : proxyFault(report)) {
        return {Code::unknown, *fault};
    }
    // These two need words of their own: what is wrong with the certificate, say. The others have one sentence each.
    const bool keepsMessage = code == Code::unknown || code == Code::secureConnectionFailed;
    return {code, keepsMessage ? report.message : QString()};
}

} // namespace Varnel
