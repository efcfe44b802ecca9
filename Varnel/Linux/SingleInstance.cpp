#include <Varnel/Linux/SingleInstance.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include <utility>

namespace Varnel {

namespace {
constexpr int askTimeoutMilliseconds = 3000;
}

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
    askOtherInstance();
    return Role::later;
}

void SingleInstance::setActivationHandler(std::function<void()> handler) {
    m_activate = std::move(handler);
    if (m_activate && std::exchange(m_activationPending, false)) {
        m_activate();
    }
}

void SingleInstance::Activate(const QVariantMap& /*platformData*/) {
    if (m_activate) {
        m_activate();
    } else {
        m_activationPending = true;
    }
}

void SingleInstance::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void SingleInstance::ActivateAction(const QString& /*action*/, const QVariantList& /*parameters*/,
                                    const QVariantMap& platformData) {
    Activate(platformData);
}

QString SingleInstance::objectPath() const {
    return QLatin1Char('/') + QString(m_busName).replace(QLatin1Char('.'), QLatin1Char('/'));
}

void SingleInstance::askOtherInstance() const {
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_busName, objectPath(), QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    call << QVariantMap();
    // This process does nothing but this call and ends: waiting for the answer is its work.
    QDBusConnection::sessionBus().call(call, QDBus::Block, askTimeoutMilliseconds);
}

} // namespace Varnel
