#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelShared/URLError.h>

#include <QNetworkProxy>

#include <optional>

namespace Varnel {

/// What curl told of a transfer.
struct CurlReport {
    int exitCode = 0; ///< as in the section "Exit codes" of its manual
    std::optional<int> status;
    int proxyStatus = 0; ///< of the proxy's answer to CONNECT; 0 when there was none
    QString message;     ///< of an error
    std::vector<std::pair<QByteArray, QByteArray>> headers;
};

/// What stands between the heads and the rest in the text of a report. "write-out" takes it as its format.
constexpr char curlReportFormat[] = "\nreport %{response_code} %{http_connect} %{errormsg}";

/// Reads a report: the heads as they came, the interim ones first, a trailer last, and behind them what curl made of
/// `curlReportFormat`, which is missing when it was ended by force.
CurlReport parsedCurlReport(const QByteArray& text, int exitCode);

/// Whether there is any network beyond the machine itself.
enum class NetworkState { available, absent };

/// As the desktop's network service tells when the application has loaded that, else as the interfaces do.
NetworkState currentNetworkState();

/// The platform's error for a transfer whose exit code is not 0, through that proxy or none.
URLError urlErrorFor(const CurlReport& report, const QNetworkProxy& proxy, NetworkState state);

} // namespace Varnel
