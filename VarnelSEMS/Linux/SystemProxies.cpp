#include <VarnelSEMS/Linux/SystemProxies.h>

#include <VarnelSEMS/HTTPSession.h>

#include <QHostAddress>
#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>
#include <QPromise>

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

namespace Varnel {

namespace {
std::atomic<int> lookupsInFlight = 0;

/// Scheme, host and port alone: neither a path nor a user name is a proxy script's business.
QUrl originOf(const QUrl& url) {
    QUrl origin;
    origin.setScheme(url.scheme());
    origin.setHost(url.host());
    origin.setPort(portOf(url));
    return origin;
}

bool isUsable(const QNetworkProxy& proxy) {
    switch (proxy.type()) {
    case QNetworkProxy::NoProxy:
    case QNetworkProxy::HttpProxy:
    case QNetworkProxy::HttpCachingProxy:
    case QNetworkProxy::Socks5Proxy:
        return true;
    case QNetworkProxy::DefaultProxy:
    case QNetworkProxy::FtpCachingProxy:
        break;
    }
    return false;
}

QNetworkProxy firstUsable(const QList<QNetworkProxy>& proxies) {
    const auto found = std::find_if(proxies.begin(), proxies.end(), isUsable);
    return found == proxies.end() ? QNetworkProxy(QNetworkProxy::NoProxy) : *found;
}

/// The thread belongs to nobody: it ends with its lookup or with the process.
QFuture<QNetworkProxy> lookUpOnThread(const QUrl& origin) {
    QPromise<QNetworkProxy> promise;
    promise.start();
    QFuture<QNetworkProxy> answer = promise.future();
    ++lookupsInFlight;
    std::thread([promise = std::move(promise), origin]() mutable {
        promise.addResult(firstUsable(QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(origin))));
        --lookupsInFlight;
        promise.finish();
    }).detach();
    return answer;
}
} // namespace

QFuture<QNetworkProxy> SystemProxies::lookUp(const QUrl& url) {
    if (isLoopback(url.host())) {
        return QtFuture::makeReadyFuture(QNetworkProxy(QNetworkProxy::NoProxy));
    }
    const QUrl origin = originOf(url);
    Lookups& lookups = m_lookups[origin.toString()];
    if (!lookups.last.isRunning()) {
        lookups.known = known(url);
        lookups.last = lookUpOnThread(origin);
    }
    return lookups.last;
}

QNetworkProxy SystemProxies::known(const QUrl& url) const {
    const auto found = m_lookups.find(originOf(url).toString());
    if (found == m_lookups.end()) {
        return QNetworkProxy(QNetworkProxy::NoProxy);
    }
    const auto& [known, last] = found->second;
    return last.resultCount() > 0 ? last.result() : known;
}

bool SystemProxies::isLoopback(const QString& host) {
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

bool SystemProxies::isLookingUp() {
    return lookupsInFlight > 0;
}

} // namespace Varnel
