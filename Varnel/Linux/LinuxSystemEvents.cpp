#include <Varnel/Linux/LinuxSystemEvents.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QNetworkInformation>
#include <QTimer>

#include <chrono>
#include <utility>

namespace Varnel {

namespace {
/// How far the network leads: 0 is nowhere, also with a link that has neither a route nor a name server yet.
int reachOf(QNetworkInformation::Reachability reachability) {
    switch (reachability) {
    case QNetworkInformation::Reachability::Disconnected:
    case QNetworkInformation::Reachability::Local:
        return 0;
    case QNetworkInformation::Reachability::Site:
        return 1;
    case QNetworkInformation::Reachability::Online:
    case QNetworkInformation::Reachability::Unknown:
        break;
    }
    return 2;
}

int currentReach() {
    const QNetworkInformation* network = QNetworkInformation::instance();
    return reachOf(network ? network->reachability() : QNetworkInformation::Reachability::Unknown);
}
} // namespace

LinuxSystemEvents::LinuxSystemEvents() {
    // The plug-ins of the network service, with the libraries that they bring, and the system's bus are a good part of
    // a start, and nothing that a person waits for.
    QTimer::singleShot(std::chrono::seconds(1), this, &LinuxSystemEvents::begin);
}

void LinuxSystemEvents::begin() {
    // Loading fails where no backend for the network service is installed; the network then counts as reachable.
    if (QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability)) {
        connect(QNetworkInformation::instance(), &QNetworkInformation::reachabilityChanged, this,
                &LinuxSystemEvents::onReachabilityChanged);
        m_reach = currentReach();
    }
    // Any sender: naming one would have QtDBus ask the bus for it and wait.
    QDBusConnection::systemBus().connect(
        {}, QStringLiteral("/org/freedesktop/login1"), QStringLiteral("org.freedesktop.login1.Manager"),
        QStringLiteral("PrepareForSleep"), this, SLOT(onPrepareForSleep(QDBusMessage)));
}

LinuxSystemEvents::~LinuxSystemEvents() = default;

bool LinuxSystemEvents::isNetworkReachable() const {
    return currentReach() > 0;
}

void LinuxSystemEvents::setNetworkReachableHandler(std::function<void()> handler) {
    m_networkReachable = std::move(handler);
}

void LinuxSystemEvents::setResumeHandler(std::function<void()> handler) {
    m_resume = std::move(handler);
}

void LinuxSystemEvents::onPrepareForSleep(const QDBusMessage& signal) {
    const bool isGoingToSleep = signal.arguments().value(0).toBool();
    if (isGoingToSleep) {
        return;
    }
    // Every user of the machine may send such a signal: whether this one is logind's is asked of the bus.
    const QDBusPendingCall owner = QDBusConnection::systemBus().interface()->asyncCall(
        QStringLiteral("GetNameOwner"), QStringLiteral("org.freedesktop.login1"));
    auto* watcher = new QDBusPendingCallWatcher(owner, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, sender = signal.service()] {
        watcher->deleteLater();
        const QDBusPendingReply<QString> logind = *watcher;
        if (logind.isValid() && logind.value() == sender && m_resume) {
            m_resume();
        }
    });
}

void LinuxSystemEvents::onReachabilityChanged() {
    // A network comes up in steps; what fails at the first one may succeed at the next.
    const int reach = currentReach();
    if (reach > std::exchange(m_reach, reach) && m_networkReachable) {
        m_networkReachable();
    }
}

} // namespace Varnel
