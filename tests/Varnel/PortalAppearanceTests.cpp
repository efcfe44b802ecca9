#include <Varnel/Linux/PortalAppearance.h>

#include "../Support/EventLoop.h"
#include "../Support/PrivateBus.h"

#include <Varnel/Linux/SingleInstance.h>

#include <gtest/gtest.h>

#include <QDBusVariant>
#include <QLabel>

namespace Varnel {
namespace {

using Testing::BusObject;
using Testing::PrivateBus;
using Testing::waitUntil;

PrivateBus& sessionBus() {
    static PrivateBus bus; // the process has one for its whole life
    bus.becomeSessionBus();
    return bus;
}

/// The settings of a desktop, of which there is only one here.
class Portal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit Portal(uint scheme)
        : m_scheme(scheme) {
        qRegisterMetaType<QDBusVariant>(); // of the signal
        m_connection.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                    QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableSignals);
        m_connection.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    ~Portal() override { sessionBus().disconnect(m_connection); }

    void setColorScheme(uint scheme) {
        m_scheme = scheme;
        Q_EMIT SettingChanged(group, key, QDBusVariant(scheme));
    }

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString& /*group*/, const QString& /*key*/) const {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_scheme)));
    }

Q_SIGNALS:
    Q_SCRIPTABLE void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    const QString group = QStringLiteral("org.freedesktop.appearance");
    const QString key = QStringLiteral("color-scheme");
    QDBusConnection m_connection = sessionBus().connect();
    uint m_scheme;
};

TEST(PortalAppearance, OpenWindowsFollowTheDarkPreferenceAndComeBack) {
    Portal portal(0);
    PortalAppearance appearance;
    int changes = 0;
    const auto observation = appearance.observe([&changes] { ++changes; });
    QLabel window(QStringLiteral("Current Output"));
    window.show();
    const QColor usual = window.palette().color(QPalette::Window);
    constexpr uint noPreference = 0, dark = 1, light = 2;
    for (const uint scheme : {dark, light, dark, noPreference}) {
        const int changesBefore = changes;
        portal.setColorScheme(scheme);
        EXPECT_TRUE(waitUntil([&] { return changes > changesBefore; })) << scheme;
        EXPECT_EQ(appearance.isDark(), scheme == dark);
        const QPalette& palette = window.palette();
        EXPECT_EQ(palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness(),
                  scheme == dark);
        EXPECT_TRUE(scheme == dark || palette.color(QPalette::Window) == usual);
    }
}

TEST(PortalAppearance, APortalThatComesLateOrAnewIsAsked) {
    PortalAppearance appearance;
    for (const uint scheme : {1U, 2U, 1U}) {
        const Portal portal(scheme);
        EXPECT_TRUE(waitUntil([&] { return appearance.isDark() == (scheme == 1); })) << scheme;
    }
}

TEST(SingleInstance, ASecondStartBringsItsActivationTokenAlong) {
    const PrivateBus& bus = sessionBus();
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    SingleInstance instance(QStringLiteral("com.varnel.test"));
    ASSERT_EQ(instance.claim(), SingleInstance::Role::first);
    QByteArray token;
    instance.setActivationHandler([&token] { token = qgetenv("XDG_ACTIVATION_TOKEN"); });
    const BusObject object{QStringLiteral("com.varnel.test"), QStringLiteral("/com/varnel/test"),
                           QStringLiteral("org.freedesktop.Application")};
    bus.ask(sessionBus().connect(), object, "Activate",
            {QVariantMap{{QStringLiteral("activation-token"), QStringLiteral("token-1")}}});
    EXPECT_EQ(token, "token-1");
    bus.ask(sessionBus().connect(), object, "Activate", {QVariantMap()});
    EXPECT_EQ(token, "token-1") << "no token takes none away";
    qunsetenv("XDG_ACTIVATION_TOKEN");
    qunsetenv("WAYLAND_DISPLAY");
}

} // namespace
} // namespace Varnel

#include "PortalAppearanceTests.moc"
