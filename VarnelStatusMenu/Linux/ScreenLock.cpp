#include <VarnelStatusMenu/Linux/ScreenLock.h>

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace Varnel {

namespace {

constexpr int lockAnswerMilliseconds = 3000;

} // namespace

ScreenLock::ScreenLock(const QDBusConnection& connection, QObject* parent)
    : QObject(parent)
    , m_connection(connection) {}

void ScreenLock::ask(std::function<void(bool isLocked)> handle) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.gnome.ScreenSaver"), QStringLiteral("/org/gnome/ScreenSaver"),
        QStringLiteral("org.gnome.ScreenSaver"), QStringLiteral("GetActive"));
    question.setAutoStartService(false); // where GNOME does not run, its service is not to be started either
    auto* pending = new QDBusPendingCallWatcher(m_connection.asyncCall(question, lockAnswerMilliseconds), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [handle = std::move(handle)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<bool> reply = *finished;
                handle(reply.isValid() && reply.value());
            });
}

} // namespace Varnel
