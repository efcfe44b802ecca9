#include <VarnelStatusMenu/Linux/ItemWatcher.h>

#include <VarnelShared/Logging.h>

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QFile>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {

using Availability = StatusItemBackEnd::Availability;

/// Enough for a panel that is busy starting; what does not answer is taken to be as most panels are.
constexpr int answerMilliseconds = 3000;

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

bool isReply(const QDBusMessage& message) {
    return message.type() == QDBusMessage::ReplyMessage && !message.arguments().isEmpty();
}

/// What a reply to a question for a property holds.
QVariant valueOf(const QDBusMessage& reply) {
    return reply.arguments().constFirst().value<QDBusVariant>().variant();
}

QStringList commandLineOf(uint processIdentifier) {
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(processIdentifier));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromLocal8Bit(file.readAll()).split(QChar(0), Qt::SkipEmptyParts);
}

} // namespace

ItemWatcher::ItemWatcher(const QDBusConnection& connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection) {
    if (!m_connection.isConnected()) {
        m_availability = Availability::unavailable;
        return;
    }
    auto* service = new QDBusServiceWatcher(watcherName, m_connection, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(service, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) { setOwner(newOwner); });
    // Any sender: naming one would have QtDBus ask the bus for it and wait. The signal only makes us ask again.
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        m_connection.connect({}, watcherPath, watcherName, QString::fromLatin1(signal), this, SLOT(askForHost()));
    }
    m_connection.connect({}, watcherPath, watcherName, QStringLiteral("StatusNotifierItemUnregistered"), this,
                         SLOT(onItemUnregistered(QString, QDBusMessage)));
    // The bus itself ends only by accident, and is not made anew: QtDBus tells of it in this one way.
    m_connection.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                         QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                         SLOT(onDisconnected()));
    askForOwner();
}

void ItemWatcher::onDisconnected() {
    qCWarning(lcApp, "The session bus has gone");
    m_owner.clear();
    setAvailability(Availability::unavailable);
}

QDBusPendingCall ItemWatcher::registerItem() const {
    QDBusMessage call =
        QDBusMessage::createMethodCall(m_owner, watcherPath, watcherName, QStringLiteral("RegisterStatusNotifierItem"));
    call << m_connection.baseService();
    return m_connection.asyncCall(call);
}

void ItemWatcher::await(const QDBusPendingCall& call, Handler handle) {
    auto* pending = new QDBusPendingCallWatcher(call, this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, owner = m_owner, handle = std::move(handle)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (owner == m_owner) {
                    handle(finished->reply());
                }
            });
}

void ItemWatcher::askForOwner() {
    await(m_connection.interface()->asyncCall(QStringLiteral("GetNameOwner"), watcherName),
          [this](const QDBusMessage& reply) {
              if (isReply(reply)) {
                  setOwner(reply.arguments().constFirst().toString());
              } else {
                  setAvailability(Availability::unavailable);
              }
          });
}

void ItemWatcher::setOwner(const QString& owner) {
    if (owner == m_owner) {
        return;
    }
    m_owner = owner;
    if (owner.isEmpty()) {
        setAvailability(Availability::unavailable);
    } else {
        m_availability = Availability::unknown;
        askForProcess();
    }
}

void ItemWatcher::askForProcess() {
    await(m_connection.interface()->asyncCall(QStringLiteral("GetConnectionUnixProcessID"), m_owner),
          [this](const QDBusMessage& reply) {
              m_panel =
                  isReply(reply) ? panelKind(commandLineOf(reply.arguments().constFirst().toUInt())) : PanelKind();
              askForHost();
          });
}

void ItemWatcher::askForHost() {
    if (m_owner.isEmpty()) {
        return;
    }
    askForProperty(QStringLiteral("IsStatusNotifierHostRegistered"), [this](const QDBusMessage& reply) {
        const bool hasNoHost = isReply(reply) && !valueOf(reply).toBool();
        setAvailability(hasNoHost ? Availability::unavailable : Availability::available);
    });
}

void ItemWatcher::askWhetherListed(std::function<void(std::optional<bool> isListed)> handle) {
    askForProperty(QStringLiteral("RegisteredStatusNotifierItems"), [this, handle = std::move(handle)](
                                                                        const QDBusMessage& reply) {
        std::optional<bool> isListed;
        if (isReply(reply)) {
            const QStringList items = valueOf(reply).toStringList();
            isListed = std::any_of(items.begin(), items.end(), [this](const QString& item) { return isOwnItem(item); });
        }
        handle(isListed);
    });
}

void ItemWatcher::askForProperty(const QString& name, Handler handle) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        m_owner, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << watcherName << name;
    await(m_connection.asyncCall(question, answerMilliseconds), std::move(handle));
}

void ItemWatcher::onItemUnregistered(const QString& service, const QDBusMessage& message) {
    if (message.service() == m_owner && isOwnItem(service)) {
        Q_EMIT itemLost();
    }
}

/// Watchers name an item by its service and path, with or without a sign between them.
bool ItemWatcher::isOwnItem(const QString& service) const {
    const QString own = m_connection.baseService();
    return service.startsWith(own) && (service.size() == own.size() || !service[own.size()].isDigit());
}

void ItemWatcher::setAvailability(Availability availability) {
    m_availability = availability;
    Q_EMIT changed();
}

} // namespace Varnel
