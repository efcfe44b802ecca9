#pragma once

#include <QFuture>
#include <QNetworkProxy>
#include <QString>
#include <QUrl>

#include <map>

namespace Varnel {

/// The proxies that the system's settings name. They are looked up on a thread of their own, because a lookup may load
/// a script over the network and nothing bounds its time. Lives on the main thread.
class SystemProxies {
public:
    /// The proxy for the address, the first one that curl can use, or none; asked for anew each time, since settings
    /// change. A lookup for the same scheme, host and port that is still in flight is joined instead. Loopback
    /// addresses are reached directly, without a lookup.
    QFuture<QNetworkProxy> lookUp(const QUrl& url);

    /// What the last lookup that has ended for the address's scheme, host and port found; none before the first.
    QNetworkProxy known(const QUrl& url) const;

    static bool isLoopback(const QString& host);

    /// Whether a lookup of any object is in flight. It cannot be ended, and the library behind it waits for it when
    /// the process ends in the ordinary way.
    static bool isLookingUp();

private:
    struct Lookups {
        QNetworkProxy known = QNetworkProxy(QNetworkProxy::NoProxy); ///< before the last lookup
        QFuture<QNetworkProxy> last;
    };

    std::map<QString, Lookups> m_lookups; ///< by origin
};

} // namespace Varnel
