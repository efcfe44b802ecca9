#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/Linux/SystemProxies.h>

#include <QDeadlineTimer>
#include <QFutureWatcher>

#include <memory>
#include <vector>

namespace Varnel {

class CurlTransfer;

/// HTTP and HTTPS, each request in a process of its own (`CurlTransfer`). Beside the contract of its port:
/// - Follows redirects within the same scheme, host and port, at most five of them, with the same headers; 303 turns
///   into a GET, every other one repeats method and body. Any other redirect is handed back with its 3xx status.
/// - A compressed body that is broken is `unknown`. What it unpacks to has the size limit.
/// - Goes through the proxies of the system's settings. Finding them counts towards the request's total time; what has
///   not been found after a third of it is the last answer, or none. A proxy that refuses to connect to an https server
///   is an error; its 407 in answer to an http request is a reply, like the server's own.
/// - Certificates that do not verify are `secureConnectionFailed`, always.
/// - Destroying it ends the requests in flight with `cancelled`, before it returns.
class NetworkHTTPSession final : public HTTPSession {
public:
    NetworkHTTPSession();
    ~NetworkHTTPSession() override;

    QCoro::Task<Result<HTTPResponse>> send(HTTPRequest request) override;

private:
    QCoro::Task<Result<HTTPResponse>> exchange(HTTPRequest request, QDeadlineTimer deadline);
    QCoro::Task<void> settleProxies(QUrl url, QDeadlineTimer deadline);

    SystemProxies m_proxies;
    std::vector<QFutureWatcherBase*> m_lookups; // what requests in flight wait for
    std::vector<CurlTransfer*> m_transfers;     // and then for
    bool m_isEnding = false;
};

} // namespace Varnel
