#include <Varnel/Linux/DesktopApplicationShell.h>
#include <Varnel/Linux/LinuxSystemEvents.h>
#include <Varnel/Linux/PortalAppearance.h>
#include <Varnel/Linux/TaskbarPresence.h>

#include "../Support/EventLoop.h"
#include "../Support/PrivateBus.h"

#include <VarnelShared/Linux/X11.h>

#include <QApplication>
#include <QDBusVariant>
#include <QNetworkInformation>
#include <QThread>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include <xcb/xcb.h>

// The adapters to the desktop against the other end of what they talk to: services of the test's own on a bus that it
// started, and the X server as a window manager sees it. The bus is the session's and the system's, and has to be there
// before either is first asked for.

using namespace Varnel;
using namespace Varnel::Testing;

namespace {

PrivateBus& bus() {
    static PrivateBus onlyOne;
    return onlyOne;
}

/// The settings of org.freedesktop.portal.Desktop.
class FakePortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(uint scheme)
        : colorScheme(scheme) {
        m_connection.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                                    QDBusConnection::ExportAllContents);
        m_connection.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~FakePortal() override { bus().disconnect(m_connection); }

    void change(uint scheme) {
        colorScheme = scheme;
        Q_EMIT SettingChanged(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
                              QDBusVariant(scheme));
    }

    uint colorScheme;

public Q_SLOTS:
    QDBusVariant Read(const QString& group, const QString& key) {
        const bool isKnown =
            group == QLatin1String("org.freedesktop.appearance") && key == QLatin1String("color-scheme");
        return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? colorScheme : 99U)));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    QDBusConnection m_connection = bus().connect();
};

/// logind, or somebody who only says to be.
void announceSleep(const QDBusConnection& sender, bool isGoingToSleep) {
    QDBusMessage signal =
        QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1"),
                                   QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"));
    signal << isGoingToSleep;
    sender.send(signal);
}

/// org.freedesktop.NetworkManager, on a thread of its own: who asks it waits for the answer. Lives as long as the
/// process, as what Qt loads at its first sight does.
class FakeNetworkManager final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.NetworkManager")
    Q_PROPERTY(uint State MEMBER state)
    Q_PROPERTY(uint Connectivity MEMBER connectivity)
    Q_PROPERTY(uint Metered MEMBER metered)

public:
    static constexpr uint disconnected = 20;
    static constexpr uint connectedSite = 60;
    static constexpr uint connectedGlobal = 70;

    FakeNetworkManager() {
        moveToThread(&m_thread);
        m_thread.start();
        onThread([this] {
            m_connection.registerObject(QStringLiteral("/org/freedesktop/NetworkManager"), this,
                                        QDBusConnection::ExportAllContents);
            m_connection.registerService(QStringLiteral("org.freedesktop.NetworkManager"));
        });
    }
    void change(uint newState) {
        onThread([this, newState] {
            state = newState;
            QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/NetworkManager"),
                                                             QStringLiteral("org.freedesktop.DBus.Properties"),
                                                             QStringLiteral("PropertiesChanged"));
            signal << QStringLiteral("org.freedesktop.NetworkManager")
                   << QVariantMap{{QStringLiteral("State"), newState}} << QStringList();
            m_connection.send(signal);
        });
    }

    uint state = disconnected;
    uint connectivity = 4;
    uint metered = 0;

private:
    void onThread(const std::function<void()>& call) {
        QMetaObject::invokeMethod(this, call, Qt::BlockingQueuedConnection);
    }

    QThread m_thread;
    QDBusConnection m_connection = bus().connect();
};

FakeNetworkManager& network() {
    static auto* onlyOne = new FakeNetworkManager; // NOLINT(cppcoreguidelines-owning-memory)
    return *onlyOne;
}

/// What a window manager is sent.
class FakeWindowManager {
public:
    FakeWindowManager() {
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        xcb_change_window_attributes(m_connection, root, XCB_CW_EVENT_MASK, &events);
        // The reply comes when the server has done what was asked before.
        std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }
    ~FakeWindowManager() { xcb_disconnect(m_connection); }
    FakeWindowManager(const FakeWindowManager&) = delete;
    FakeWindowManager& operator=(const FakeWindowManager&) = delete;

    /// The first three numbers of the next message of that type about the window.
    std::vector<std::uint32_t> nextMessage(const QWindow& window, std::string_view type) {
        std::vector<std::uint32_t> found;
        const std::uint32_t wanted = X11::atom(m_connection, type);
        waitUntil([&] {
            while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
                xcb_client_message_event_t message;
                std::memcpy(&message, event, sizeof message);
                const bool isMessage = (event->response_type & 0x7f) == XCB_CLIENT_MESSAGE;
                std::free(event);
                if (isMessage && message.type == wanted && message.window == window.winId()) {
                    found.assign(message.data.data32, message.data.data32 + 3);
                }
            }
            return !found.empty();
        });
        return found;
    }

    std::uint32_t atom(std::string_view name) const { return X11::atom(m_connection, name); }

private:
    xcb_connection_t* m_connection = xcb_connect(nullptr, nullptr);
};

} // namespace

TEST(PortalAppearance, FollowsThePortalAndFallsBackToThePaletteWithoutOne) {
    PortalAppearance unasked;
    const bool isPaletteDark = unasked.isDark();
    FakePortal portal(1);
    PortalAppearance appearance;
    int changes = 0;
    auto observation = appearance.observe([&changes] { ++changes; });
    EXPECT_TRUE(waitUntil([&] { return appearance.isDark(); }));
    portal.change(2);
    EXPECT_TRUE(waitUntil([&] { return !appearance.isDark(); }));
    portal.change(1);
    EXPECT_TRUE(waitUntil([&] { return appearance.isDark(); }));
    portal.change(0);
    EXPECT_TRUE(waitUntil([&] { return appearance.isDark() == isPaletteDark; }));
    EXPECT_EQ(changes, 4 - static_cast<int>(isPaletteDark) * 2);
    observation.reset();
    const int before = changes;
    portal.change(isPaletteDark ? 2 : 1);
    EXPECT_TRUE(waitUntil([&] { return appearance.isDark() != isPaletteDark; }));
    EXPECT_EQ(changes, before) << "nobody observes any more";
}

TEST(LinuxSystemEvents, TellsOfTheWakingThatLogindAnnouncesAndOfNobodyElses) {
    LinuxSystemEvents events;
    int resumed = 0;
    events.setResumeHandler([&resumed] { ++resumed; });
    waitUntil([] { return false; }, 1500); // until it listens
    const QDBusConnection logind = bus().connect();
    const QDBusConnection stranger = bus().connect();
    announceSleep(stranger, false); // there is no logind yet
    ASSERT_TRUE(QDBusConnection(logind).registerService(QStringLiteral("org.freedesktop.login1")));
    announceSleep(stranger, false);
    announceSleep(logind, true);
    announceSleep(logind, false);
    EXPECT_TRUE(waitUntil([&resumed] { return resumed > 0; }));
    waitUntil([] { return false; }, 200);
    EXPECT_EQ(resumed, 1);
}

TEST(LinuxSystemEvents, TellsOfANetworkThatComesAndOfOneThatLeadsFurther) {
    LinuxSystemEvents events;
    waitUntil([] { return false; }, 1500); // until it listens
    if (!QNetworkInformation::instance()) {
        GTEST_SKIP() << "Qt has no plug-in for the network service here";
    }
    int reached = 0;
    events.setNetworkReachableHandler([&reached] { ++reached; });
    network().change(FakeNetworkManager::disconnected);
    EXPECT_TRUE(waitUntil([&events] { return !events.isNetworkReachable(); }));
    network().change(FakeNetworkManager::connectedSite);
    EXPECT_TRUE(waitUntil([&reached] { return reached == 1; }));
    EXPECT_TRUE(events.isNetworkReachable());
    network().change(FakeNetworkManager::connectedGlobal);
    EXPECT_TRUE(waitUntil([&reached] { return reached == 2; }));
    network().change(FakeNetworkManager::connectedSite);
    network().change(FakeNetworkManager::disconnected);
    EXPECT_TRUE(waitUntil([&events] { return !events.isNetworkReachable(); }));
    EXPECT_EQ(reached, 2) << "less is no news";
}

TEST(TaskbarPresence, AsksTheWindowManagerToLeaveAWindowOutAndToTakeItIn) {
    ASSERT_TRUE(canControlTaskbar());
    FakeWindowManager manager;
    QWindow window;
    window.create();
    const std::uint32_t taskbar = manager.atom("_NET_WM_STATE_SKIP_TASKBAR");
    const std::uint32_t pager = manager.atom("_NET_WM_STATE_SKIP_PAGER");
    for (const std::uint32_t action : {1U, 0U}) { // to add the states, and to remove them
        setSkipsTaskbar(window, action == 1);
        EXPECT_EQ(manager.nextMessage(window, "_NET_WM_STATE"), (std::vector<std::uint32_t>{action, taskbar, pager}));
    }
}

TEST(DesktopApplicationShell, AsksTheWindowManagerForARaisedWindowAsThePersonWould) {
    FakeWindowManager manager;
    const DesktopApplicationShell shell;
    QWidget window;
    window.show();
    window.raise();
    constexpr std::uint32_t sourceIsTool = 2; // and no time of the last input
    ASSERT_NE(window.windowHandle(), nullptr);
    EXPECT_EQ(manager.nextMessage(*window.windowHandle(), "_NET_ACTIVE_WINDOW"),
              (std::vector<std::uint32_t>{sourceIsTool, XCB_CURRENT_TIME, 0}));
}

int main(int argc, char** argv) {
    // Each bus is asked for once in the life of a process, and Qt's X11 plug-in may be the first to do so.
    bus().becomeSessionBus();
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    network();
    return RUN_ALL_TESTS();
}

#include "LinuxAdapterTests.moc"
