#include <Varnel/Linux/SingleInstance.h>

#include <VarnelShared/ActivationToken.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <utility>

namespace Varnel {

namespace {
constexpr int askTimeoutMilliseconds = 3000;
constexpr qsizetype mostPendingActions = 8;

/// A member of the platform data, by the Desktop Entry Specification.
const QString activationToken = QStringLiteral("activation-token");
} // namespace

SingleInstance::SingleInstance(const QString& busName)
    : m_busName(busName) {}

SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::claim() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return Role::first;
    }
    // The object stands before the name is taken: whoever sees the name can call it.
    bus.registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    if (bus.registerService(m_busName) || !bus.interface()->isServiceRegistered(m_busName)) {
        return Role::first;
    }
    if (askOtherInstance()) {
        return Role::later;
    }
    // It was about to end, or does not answer.
    return bus.registerService(m_busName) ? Role::first : Role::later;
}

void SingleInstance::setActivationHandler(std::function<void()> handler) {
    m_activate = std::move(handler);
}

void SingleInstance::setActionHandler(std::function<bool(const QString& action)> handler) {
    m_act = std::move(handler);
    for (const QString& action : std::exchange(m_pendingActions, {})) {
        m_act(action);
    }
}

void SingleInstance::Activate(const QVariantMap& platformData) {
    takeActivationToken(platformData.value(activationToken).toString());
    // Without a handler yet, this is the start itself: the bus has started the program for it, as launchers ask it to.
    if (m_activate) {
        m_activate();
    }
}

void SingleInstance::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void SingleInstance::ActivateAction(const QString& action, const QVariantList& /*parameters*/,
                                    const QVariantMap& /*platformData*/) {
    if (!m_act) {
        if (!m_pendingActions.contains(action) && m_pendingActions.size() < mostPendingActions) {
            m_pendingActions << action;
        }
    } else if (!m_act(action)) {
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no action \"%1\"").arg(action));
    }
}

QString SingleInstance::objectPath() const {
    return QLatin1Char('/') + QString(m_busName).replace(QLatin1Char('.'), QLatin1Char('/'));
}

bool SingleInstance::askOtherInstance() const {
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_busName, objectPath(), QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    call << QVariantMap{{activationToken, startActivationToken()}};
    // This process does nothing but this call and ends: waiting for the answer is its work.
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, askTimeoutMilliseconds);
    return reply.type() == QDBusMessage::ReplyMessage;
}

} // namespace Varnel
