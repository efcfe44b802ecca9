#include <VarnelStatusMenu/Linux/ItemWatcher.h>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QFile>

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
    askForOwner();
}

QDBusPendingCall ItemWatcher::registerItem(const QString& service) const {
    QDBusMessage call =
        QDBusMessage::createMethodCall(m_owner, watcherPath, watcherName, QStringLiteral("RegisterStatusNotifierItem"));
    call << service;
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
              m_titleForm = isReply(reply) ? titleFormForHost(commandLineOf(reply.arguments().constFirst().toUInt()))
                                           : TitleForm::square;
              askForHost();
          });
}

void ItemWatcher::askForHost() {
    if (m_owner.isEmpty()) {
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        m_owner, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    await(m_connection.asyncCall(question, answerMilliseconds), [this](const QDBusMessage& reply) {
        const bool hasNoHost =
            isReply(reply) && !reply.arguments().constFirst().value<QDBusVariant>().variant().toBool();
        setAvailability(hasNoHost ? Availability::unavailable : Availability::available);
    });
}

void ItemWatcher::setAvailability(Availability availability) {
    m_availability = availability;
    Q_EMIT changed();
}

} // namespace Varnel
