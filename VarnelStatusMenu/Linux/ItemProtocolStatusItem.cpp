#include <VarnelStatusMenu/Linux/ItemProtocolStatusItem.h>

#include <VarnelShared/Logging.h>
#include <VarnelStatusMenu/Linux/ExportedStatusItem.h>
#include <VarnelStatusMenu/Linux/ItemWatcher.h>

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

/// Registers what is exported with the watcher of the moment.
class ItemProtocolStatusItem::Registration final : public QObject {
public:
    Registration(const QDBusConnection& connection, QString identifier, StatusItemHandlers handlers)
        : m_connection(connection)
        , m_watcher(connection)
        , m_exported(connection, std::move(identifier), std::move(handlers)) {
        connect(&m_watcher, &ItemWatcher::changed, this, &Registration::onWatcherChanged);
    }

    Availability availability() const {
        const bool isRefused = !m_refusedBy.isEmpty() && m_refusedBy == m_watcher.owner();
        return isRefused ? Availability::unavailable : m_watcher.availability();
    }

    void setContent(const StatusItemContent& content) { m_exported.setContent(content); }

    void setShown(bool isShown) {
        m_isShown = isShown;
        registerWithWatcher();
    }

    std::function<void()> availabilityChanged;

private:
    void onWatcherChanged() {
        registerWithWatcher();
        if (availabilityChanged) {
            availabilityChanged();
        }
    }

    void registerWithWatcher() {
        if (!m_isShown || m_watcher.availability() != Availability::available ||
            m_registeredWith == m_watcher.owner()) {
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

    void requestName() {
        m_service = nextServiceName();
        const QDBusPendingCall request =
            m_connection.interface()->asyncCall(QStringLiteral("RequestName"), m_service, 0U);
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

    void sendRegistration() {
        auto* pending = new QDBusPendingCallWatcher(m_watcher.registerItem(m_service), this);
        connect(pending, &QDBusPendingCallWatcher::finished, this,
                [this, owner = m_watcher.owner()](QDBusPendingCallWatcher* finished) {
                    finished->deleteLater();
                    onRegistered(owner, finished->error());
                });
    }

    void onRegistered(const QString& owner, const QDBusError& error) {
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
        if (owner == m_watcher.owner() && availabilityChanged) {
            availabilityChanged();
        }
    }

    QDBusConnection m_connection;
    ItemWatcher m_watcher;
    ExportedStatusItem m_exported;
    bool m_isShown = false;
    QString m_service; ///< our own name on the bus; empty until the first registration
    QString m_registeredWith;
    QString m_refusedBy;
};

ItemProtocolStatusItem::ItemProtocolStatusItem(const QDBusConnection& connection, const QString& identifier,
                                               StatusItemHandlers handlers)
    : m_registration(std::make_unique<Registration>(connection, identifier, std::move(handlers))) {}

ItemProtocolStatusItem::~ItemProtocolStatusItem() = default;

StatusItemBackEnd::Availability ItemProtocolStatusItem::availability() const {
    return m_registration->availability();
}

void ItemProtocolStatusItem::setAvailabilityHandler(std::function<void()> changed) {
    m_registration->availabilityChanged = std::move(changed);
}

void ItemProtocolStatusItem::setContent(const StatusItemContent& content) {
    m_registration->setContent(content);
}

void ItemProtocolStatusItem::setShown(bool isShown) {
    m_registration->setShown(isShown);
}

} // namespace Varnel
