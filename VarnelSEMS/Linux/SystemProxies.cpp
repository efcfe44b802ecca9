#include <VarnelSEMS/Linux/SystemProxies.h>

#include <VarnelSEMS/HTTPSession.h>

#include <QHostAddress>
#include <QNetworkProxyQuery>
#include <QPromise>

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

bool isLoopback(const QString& host) {
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

QList<QNetworkProxy> directly() {
    return {QNetworkProxy(QNetworkProxy::NoProxy)};
}

/// The thread belongs to nobody: it ends with its lookup or with the process.
QFuture<QList<QNetworkProxy>> lookUpOnThread(const QUrl& origin) {
    QPromise<QList<QNetworkProxy>> promise;
    promise.start();
    QFuture<QList<QNetworkProxy>> answer = promise.future();
    ++lookupsInFlight;
    std::thread([promise = std::move(promise), origin]() mutable {
        promise.addResult(QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(origin)));
        --lookupsInFlight;
        promise.finish();
    }).detach();
    return answer;
}
} // namespace

QFuture<QList<QNetworkProxy>> SystemProxies::lookUp(const QUrl& url) {
    if (isLoopback(url.host())) {
        return QtFuture::makeReadyFuture(directly());
    }
    const QUrl origin = originOf(url);
    QFuture<QList<QNetworkProxy>>& last = m_lookups[origin.toString()];
    if (!last.isRunning()) {
        last = lookUpOnThread(origin);
    }
    return last;
}

void SystemProxies::use(const QUrl& url, const QList<QNetworkProxy>& proxies) {
    (*m_inUse)[originOf(url).toString()] = proxies;
}

std::unique_ptr<QNetworkProxyFactory> SystemProxies::factory() const {
    class Factory final : public QNetworkProxyFactory {
    public:
        explicit Factory(std::shared_ptr<const Proxies> inUse)
            : m_inUse(std::move(inUse)) {}

        QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
            const auto found = m_inUse->find(originOf(query.url()).toString());
            return found == m_inUse->end() ? directly() : found->second;
        }

    private:
        const std::shared_ptr<const Proxies> m_inUse;
    };
    return std::make_unique<Factory>(m_inUse);
}

bool SystemProxies::isLookingUp() {
    return lookupsInFlight > 0;
}

} // namespace Varnel
