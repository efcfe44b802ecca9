#include <VarnelNotifications/Linux/FreedesktopNotificationCenter.h>

#include <VarnelShared/ActivationToken.h>

#include <QCoroDBusPendingCall>
#include <QCoroDBusPendingReply>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>

#include <utility>

namespace Varnel {

namespace {

/// A server that hangs would hold a call for 25 s otherwise. One that is slow to start still shows what it was sent.
constexpr int callTimeoutMilliseconds = 3000;

const QString serverName = QStringLiteral("org.freedesktop.Notifications");
const QString serverPath = QStringLiteral("/org/freedesktop/Notifications");

QDBusMessage serverCall(const char* method) {
    return QDBusMessage::createMethodCall(serverName, serverPath, serverName, QLatin1String(method));
}

/// The reply, or an error message after the time-out.
QCoro::Task<QDBusMessage> send(QDBusMessage call) {
    const QDBusPendingCall pending = QDBusConnection::sessionBus().asyncCall(call, callTimeoutMilliseconds);
    QDBusMessage reply = co_await pending;
    co_return reply;
}

/// The bus's own name of the server; empty where there is none. Of a reply Qt 6.8 does not tell who sent it.
QCoro::Task<QString> serverOnBus() {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage question = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                                           QStringLiteral("GetNameOwner"));
    question << serverName;
    const QDBusMessage owner = co_await send(question);
    co_return owner.type() == QDBusMessage::ReplyMessage ? owner.arguments().value(0).toString() : QString();
}

QCoro::Task<bool> isServerThere() {
    QDBusConnectionInterface* const bus = QDBusConnection::sessionBus().interface();
    if (!bus) {
        co_return false;
    }
    const QDBusPendingReply<bool> ownerQuestion = bus->asyncCall(QStringLiteral("NameHasOwner"), serverName);
    const QDBusPendingReply<bool> hasOwner = co_await ownerQuestion;
    if (hasOwner.isValid() && hasOwner.value()) {
        co_return true;
    }
    const QDBusPendingReply<QStringList> namesQuestion = bus->asyncCall(QStringLiteral("ListActivatableNames"));
    const QDBusPendingReply<QStringList> names = co_await namesQuestion;
    co_return names.isValid() && names.value().contains(serverName);
}

/// `Notify` for a server with these capabilities.
QDBusMessage notifyCall(const NotificationSender& sender, const NotificationRequest& request,
                        const QStringList& capabilities) {
    constexpr uint replacesNothing = 0;
    constexpr int serverDecidesWhenItExpires = -1;
    const bool readsMarkup = capabilities.contains(QStringLiteral("body-markup"));
    // Some servers without actions show a dialog in place of a notification that has any.
    const QStringList actions = capabilities.contains(QStringLiteral("actions"))
                                    ? QStringList{QStringLiteral("default"), QStringLiteral("Show")}
                                    : QStringList();
    const QVariantMap hints = {{QStringLiteral("desktop-entry"), sender.desktopEntry},
                               {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")}};
    QDBusMessage call = serverCall("Notify");
    call << sender.applicationName << replacesNothing << sender.icon << request.title
         << (readsMarkup ? request.body.toHtmlEscaped() : request.body) << actions << hints
         << serverDecidesWhenItExpires;
    return call;
}

} // namespace

FreedesktopNotificationCenter::FreedesktopNotificationCenter(NotificationSender sender)
    : m_sender(std::move(sender)) {
    // Without a service name: to follow its owner, QtDBus would ask the bus for it and wait.
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect({}, serverPath, serverName, QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(QDBusMessage)));
    bus.connect({}, serverPath, serverName, QStringLiteral("ActivationToken"), this,
                SLOT(onActivationToken(QDBusMessage)));
    bus.connect({}, serverPath, serverName, QStringLiteral("NotificationClosed"), this,
                SLOT(onNotificationClosed(QDBusMessage)));
}

QCoro::Task<NotificationAuthorizationStatus> FreedesktopNotificationCenter::authorizationStatus() {
    const bool isThere = co_await isServerThere();
    co_return isThere ? NotificationAuthorizationStatus::authorized : NotificationAuthorizationStatus::notDetermined;
}

QCoro::Task<Result<bool>> FreedesktopNotificationCenter::requestAuthorization(NotificationAuthorizationOptions) {
    const bool isThere = co_await isServerThere();
    co_return Result<bool>(isThere);
}

QCoro::Task<Result<void>> FreedesktopNotificationCenter::add(NotificationRequest request) {
    // Asked each time, because another server may have taken over. One that does not say reads no markup.
    const QDBusMessage capabilities = co_await send(serverCall("GetCapabilities"));
    const QDBusMessage call = notifyCall(m_sender, request, capabilities.arguments().value(0).toStringList());
    const QDBusMessage reply = co_await send(call);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QStringLiteral("u")) {
        co_return failure(NotificationServerError{reply.errorMessage()});
    }
    const QString server = co_await serverOnBus();
    noteShown(server, reply.arguments().constFirst().toUInt());
    co_return Result<void>();
}

void FreedesktopNotificationCenter::setActivationHandler(std::function<void()> activated) {
    m_activated = std::move(activated);
}

/// A later click on this notification of that server is ours.
void FreedesktopNotificationCenter::noteShown(const QString& server, uint notification) {
    if (m_server != server) {
        m_server = server;
        m_shown.clear();
    }
    m_shown.insert(notification);
}

void FreedesktopNotificationCenter::onActionInvoked(const QDBusMessage& signal) {
    if (isOurs(signal) && signal.arguments().value(1).toString() == QStringLiteral("default") && m_activated) {
        m_activated();
    }
}

/// Comes before the action that it is for.
void FreedesktopNotificationCenter::onActivationToken(const QDBusMessage& signal) {
    if (isOurs(signal)) {
        takeActivationToken(signal.arguments().value(1).toString());
    }
}

void FreedesktopNotificationCenter::onNotificationClosed(const QDBusMessage& signal) {
    if (isOurs(signal)) {
        m_shown.remove(signal.arguments().constFirst().toUInt());
    }
}

bool FreedesktopNotificationCenter::isOurs(const QDBusMessage& signal) const {
    return signal.service() == m_server && m_shown.contains(signal.arguments().value(0).toUInt());
}

} // namespace Varnel
