#include <Varnel/Linux/PortalAppearance.h>

#include <Varnel/Linux/DarkPalette.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include <limits>
#include <utility>

namespace Varnel {

namespace {
// The settings portal of the freedesktop desktop portals; color-scheme is 0 no preference, 1 dark, 2 light.
const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto portalInterface = QStringLiteral("org.freedesktop.portal.Settings");
const auto appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const auto colorSchemeKey = QStringLiteral("color-scheme");
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;
/// None: the bus starts the portal for the question, which takes its time at a login, and nothing waits for the answer.
constexpr int noTimeout = std::numeric_limits<int>::max();

class ConnectedObservation final : public Appearance::Observation {
public:
    explicit ConnectedObservation(QMetaObject::Connection connection)
        : m_connection(std::move(connection)) {}
    ~ConnectedObservation() override { QObject::disconnect(m_connection); }

private:
    QMetaObject::Connection m_connection;
};
} // namespace

PortalAppearance::PortalAppearance() {
    m_announcedIsDark = isDark();
    qApp->installEventFilter(this);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        // Any sender: naming one would have QtDBus ask the bus for it and wait. The signal only makes us ask again.
        bus.connect({}, portalPath, portalInterface, QStringLiteral("SettingChanged"),
                    {appearanceGroup, colorSchemeKey}, {}, this, SLOT(askPortal()));
        // One that is started anew has told nobody of what changed meanwhile.
        auto* portal = new QDBusServiceWatcher(portalService, bus, QDBusServiceWatcher::WatchForRegistration, this);
        connect(portal, &QDBusServiceWatcher::serviceRegistered, this, &PortalAppearance::askPortal);
        askPortal();
    }
}

PortalAppearance::~PortalAppearance() = default;

bool PortalAppearance::isDark() const {
    const QPalette palette = QGuiApplication::palette();
    return m_portalIsDark.value_or(palette.color(QPalette::Window).lightness() <
                                   palette.color(QPalette::WindowText).lightness());
}

std::unique_ptr<Appearance::Observation> PortalAppearance::observe(std::function<void()> onChange) {
    return std::make_unique<ConnectedObservation>(connect(this, &PortalAppearance::changed, this, std::move(onChange)));
}

bool PortalAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        QMetaObject::invokeMethod(this, &PortalAppearance::announceIfChanged, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void PortalAppearance::askPortal() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, QStringLiteral("Read"));
    call << appearanceGroup << colorSchemeKey;
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, noTimeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid()) {
            // "Read" wraps its variant in another one.
            takeColorScheme(reply.value().variant().value<QDBusVariant>().variant().toUInt());
        }
    });
}

void PortalAppearance::takeColorScheme(uint scheme) {
    m_portalIsDark.reset();
    if (scheme == preferDark || scheme == preferLight) {
        m_portalIsDark = scheme == preferDark;
    }
    if (const bool prefersDark = scheme == preferDark; std::exchange(m_followsDark, prefersDark) != prefersDark) {
        followDarkPreference(prefersDark);
    }
    announceIfChanged();
}

void PortalAppearance::announceIfChanged() {
    if (m_announcedIsDark != isDark()) {
        m_announcedIsDark = isDark();
        Q_EMIT changed();
    }
}

} // namespace Varnel
