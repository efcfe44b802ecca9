#pragma once

#include <QFuture>
#include <QList>
#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QString>
#include <QUrl>

#include <map>
#include <memory>

namespace Varnel {

/// The proxies that the system's settings name. They are looked up on a thread of their own, because a lookup may load
/// a script over the network and nothing bounds its time; answers are handed to the network access by a factory, so
/// that it never looks up anything itself. Lives on the main thread.
class SystemProxies {
public:
    /// The proxies for the address in the order to try them, asked for anew each time, since settings change. A
    /// lookup for the same scheme, host and port that is still in flight is joined instead. Loopback addresses are
    /// reached directly, without a lookup.
    QFuture<QList<QNetworkProxy>> lookUp(const QUrl& url);

    /// What requests to the address's scheme, host and port use from now on.
    void use(const QUrl& url, const QList<QNetworkProxy>& proxies);

    /// Answers with what is in use; what nothing was settled for goes directly. May outlive this object.
    std::unique_ptr<QNetworkProxyFactory> factory() const;

    /// Whether a lookup of any object is in flight. It cannot be ended, and the library behind it waits for it when
    /// the process ends in the ordinary way.
    static bool isLookingUp();

private:
    using Proxies = std::map<QString, QList<QNetworkProxy>>; ///< by origin

    std::map<QString, QFuture<QList<QNetworkProxy>>> m_lookups; ///< the last of each origin
    std::shared_ptr<Proxies> m_inUse = std::make_shared<Proxies>();
};

} // namespace Varnel
