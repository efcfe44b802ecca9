#include <Varnel/Linux/LinuxSystemEvents.h>

#include <QDBusConnection>
#include <QNetworkInformation>

#include <utility>

namespace Varnel {

LinuxSystemEvents::LinuxSystemEvents() {
    // Loading fails where no backend for the network service is installed; the network then counts as reachable.
    if (QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability)) {
        connect(QNetworkInformation::instance(), &QNetworkInformation::reachabilityChanged, this,
                &LinuxSystemEvents::onReachabilityChanged);
        m_wasReachable = isNetworkReachable();
    }
    QDBusConnection::systemBus().connect(QStringLiteral("org.freedesktop.login1"),
                                         QStringLiteral("/org/freedesktop/login1"),
                                         QStringLiteral("org.freedesktop.login1.Manager"),
                                         QStringLiteral("PrepareForSleep"), this, SLOT(onPrepareForSleep(bool)));
}

LinuxSystemEvents::~LinuxSystemEvents() = default;

bool LinuxSystemEvents::isNetworkReachable() const {
    const QNetworkInformation* network = QNetworkInformation::instance();
    return !network || network->reachability() != QNetworkInformation::Reachability::Disconnected;
}

void LinuxSystemEvents::setNetworkReachableHandler(std::function<void()> handler) {
    m_networkReachable = std::move(handler);
}

void LinuxSystemEvents::setResumeHandler(std::function<void()> handler) {
    m_resume = std::move(handler);
}

void LinuxSystemEvents::onPrepareForSleep(bool goingToSleep) {
    if (!goingToSleep && m_resume) {
        m_resume();
    }
}

void LinuxSystemEvents::onReachabilityChanged() {
    const bool isReachable = isNetworkReachable();
    const bool wasReachable = std::exchange(m_wasReachable, isReachable);
    if (isReachable && !wasReachable && m_networkReachable) {
        m_networkReachable();
    }
}

} // namespace Varnel
