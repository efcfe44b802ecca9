#include <VarnelStatusMenu/Linux/ItemProtocolStatusItem.h>

#include <VarnelShared/Logging.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace Varnel {

namespace {

/// The name the protocol prescribes: one per process and item.
QString nextServiceName() {
    static int count = 0;
    return QStringLiteral("org.kde.StatusNotifierItem-%1-%2").arg(QCoreApplication::applicationPid()).arg(++count);
}

} // namespace

ItemProtocolStatusItem::ItemProtocolStatusItem(const QDBusConnection& connection, const QString& identifier,
                                               const StatusItemHandlers& handlers)
    : m_connection(connection)
    , m_watcher(connection)
    , m_exported(connection, identifier, handlers) {
    connect(&m_watcher, &ItemWatcher::changed, this, &ItemProtocolStatusItem::onWatcherChanged);
}

ItemProtocolStatusItem::~ItemProtocolStatusItem() = default;

StatusItemBackEnd::Availability ItemProtocolStatusItem::availability() const {
    const bool isRefused = !m_refusedBy.isEmpty() && m_refusedBy == m_watcher.owner();
    return isRefused ? Availability::unavailable : m_watcher.availability();
}

void ItemProtocolStatusItem::setAvailabilityHandler(std::function<void()> changed) {
    m_availabilityChanged = std::move(changed);
}

void ItemProtocolStatusItem::setContent(const StatusItemContent& content) {
    m_exported.setContent(content);
}

void ItemProtocolStatusItem::setShown(bool isShown) {
    m_isShown = isShown;
    registerWithWatcher();
}

void ItemProtocolStatusItem::onWatcherChanged() {
    registerWithWatcher();
    if (m_availabilityChanged) {
        m_availabilityChanged();
    }
}

void ItemProtocolStatusItem::registerWithWatcher() {
    if (!m_isShown || m_watcher.availability() != Availability::available || m_registeredWith == m_watcher.owner()) {
        return;
    }
    m_registeredWith = m_watcher.owner();
    m_exported.setForm(m_watcher.titleForm());
    if (m_service.isEmpty()) {
        requestName();
    } else {
        sendRegistration();
    }
}

void ItemProtocolStatusItem::requestName() {
    m_service = nextServiceName();
    const QDBusPendingCall request = m_connection.interface()->asyncCall(QStringLiteral("RequestName"), m_service, 0U);
    auto* pending = new QDBusPendingCallWatcher(request, this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        if (finished->isError()) {
            // A sandbox may forbid the name; the connection's own does as well.
            m_service = m_connection.baseService();
        }
        sendRegistration();
    });
}

void ItemProtocolStatusItem::sendRegistration() {
    auto* pending = new QDBusPendingCallWatcher(m_watcher.registerItem(m_service), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, owner = m_watcher.owner()](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                onRegistered(owner, finished->error());
            });
}

void ItemProtocolStatusItem::onRegistered(const QString& owner, const QDBusError& error) {
    if (!error.isValid()) {
        qCInfo(lcApp, "Status item registered with the panel");
        return;
    }
    if (error.type() == QDBusError::NoReply) {
        // A busy panel reads the registration later; one that died is replaced by the next.
        return;
    }
    qCWarning(lcApp, "The panel refused the status item: %s", qPrintable(error.message()));
    m_refusedBy = owner;
    if (owner == m_watcher.owner() && m_availabilityChanged) {
        m_availabilityChanged();
    }
}

} // namespace Varnel
