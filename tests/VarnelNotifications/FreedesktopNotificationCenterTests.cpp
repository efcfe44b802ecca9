#include <VarnelNotifications/Linux/FreedesktopNotificationCenter.h>

#include "../Support/EventLoop.h"
#include "../Support/PrivateBus.h"

#include <VarnelNotifications/LocalNotificationService.h>

#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusVirtualObject>
#include <QRegularExpression>
#include <QTimer>

namespace Varnel {
namespace {

using Testing::await;
using Testing::BusObject;
using Testing::PrivateBus;
using Testing::waitUntil;

const BusObject server{QStringLiteral("org.freedesktop.Notifications"),
                       QStringLiteral("/org/freedesktop/Notifications"),
                       QStringLiteral("org.freedesktop.Notifications")};
const NotificationRequest request{QStringLiteral("id"), QStringLiteral("A & <b>"), QStringLiteral("1 < 2 & <b>3</b>")};

PrivateBus& sessionBus() {
    static PrivateBus bus; // the process has one for its whole life
    bus.becomeSessionBus();
    return bus;
}

/// A real notification server on the X display and the bus of the test.
class Dunst {
public:
    Dunst() {
        const QString packaged = QStringLiteral("/etc/xdg/dunst/dunstrc"); // it has markup on
        m_process.start(QStringLiteral("dunst"), {QStringLiteral("-conf"), packaged, QStringLiteral("-print")});
        if (!sessionBus().waitForOwner(server.service)) {
            qFatal("dunst did not take its name on the bus");
        }
    }
    ~Dunst() {
        m_process.terminate();
        m_process.waitForFinished();
    }

    /// What it printed of each notification, once it has printed `count` of them.
    QStringList shown(int count) {
        QStringList blocks;
        waitUntil([&] {
            m_printed += QString::fromUtf8(m_process.readAllStandardOutput());
            blocks = m_printed.split(QStringLiteral("\n}\n"), Qt::SkipEmptyParts);
            return blocks.size() >= count;
        });
        return blocks;
    }

    /// Invokes the default action of the oldest notification on the screen, as a click does, and closes all.
    static void click() {
        const BusObject control{server.service, server.path, QStringLiteral("org.dunstproject.cmd0")};
        PrivateBus::ask(QDBusConnection::sessionBus(), control, "NotificationAction", {0U});
        PrivateBus::ask(QDBusConnection::sessionBus(), control, "NotificationCloseAll");
    }

private:
    QProcess m_process;
    QString m_printed;
};

QString field(const QString& block, const char* name) {
    return QRegularExpression(QStringLiteral("^\t%1: '?(.*?)'?$").arg(QLatin1String(name)),
                              QRegularExpression::MultilineOption)
        .match(block)
        .captured(1);
}

/// Takes every call; without `capabilities` it answers none.
class ScriptedServer final : public QDBusVirtualObject {
public:
    explicit ScriptedServer(std::optional<QStringList> capabilities)
        : m_capabilities(std::move(capabilities)) {
        m_connection.registerVirtualObject(server.path, this);
        m_connection.registerService(server.service);
    }
    ~ScriptedServer() override { sessionBus().disconnect(m_connection); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        const bool isNotify = call.member() == QStringLiteral("Notify");
        if (isNotify) {
            notified.push_back(call);
        }
        if (m_capabilities) {
            connection.send(call.createReply(isNotify ? QVariant(1U) : QVariant(*m_capabilities)));
        }
        return true;
    }

    void send(const char* signal, const QString& argument) const {
        QDBusMessage message = QDBusMessage::createSignal(server.path, server.interface, QLatin1String(signal));
        m_connection.send(message << 1U << argument);
    }

    std::vector<QDBusMessage> notified;

private:
    std::optional<QStringList> m_capabilities;
    QDBusConnection m_connection = sessionBus().connect();
};

struct FreedesktopNotificationCenterTest : testing::Test {
    PrivateBus& bus = sessionBus(); ///< before the centre, which connects to it
    std::shared_ptr<FreedesktopNotificationCenter> center = std::make_shared<FreedesktopNotificationCenter>(
        NotificationSender{QStringLiteral("Varnel"), QStringLiteral("com.varnel.menubar"), QStringLiteral("sun")});
};

TEST_F(FreedesktopNotificationCenterTest, ARealServerShowsEachDeliveryAsItsOwnText) {
    Dunst dunst;
    LocalNotificationService service(center, {}, QLocale(QLocale::English));
    await(service.deliver(ProductionNotificationEvent::productionStarted, 0.5));
    await(service.deliver(ProductionNotificationEvent::productionStarted, 0.5));
    ASSERT_TRUE(await(center->add(request)).has_value());

    QString texts;
    QSet<QString> numbers;
    for (const QString& block : dunst.shown(3)) {
        texts += field(block, "summary") + QStringLiteral(": ") + field(block, "body") + u'\n';
        numbers << field(block, "id");
        EXPECT_EQ(field(block, "appname") + field(block, "icon"), QStringLiteral("Varnelsun"));
    }
    EXPECT_EQ(texts.toStdString(), "Production Started: Current output is 0.50 kW.\n"
                                   "Production Started: Current output is 0.50 kW.\n"
                                   "A & <b>: 1 &lt; 2 &amp; &lt;b&gt;3&lt;/b&gt;\n");
    EXPECT_EQ(numbers.size(), 3) << "no notification replaces another";
}

TEST_F(FreedesktopNotificationCenterTest, OnlyAClickOnOneOfOurOwnIsReported) {
    int clicks = 0;
    center->setActivationHandler([&clicks] { ++clicks; });
    Dunst dunst;
    ASSERT_TRUE(await(center->add(request)).has_value());
    dunst.shown(1);
    Dunst::click();
    EXPECT_TRUE(waitUntil([&clicks] { return clicks == 1; }));

    // A click on another program's notification, and a peer that pretends to be the server.
    PrivateBus::ask(QDBusConnection::sessionBus(), server, "Notify",
                    {QStringLiteral("Other"), 0U, QString(), QStringLiteral("t"), QString(),
                     QStringList{QStringLiteral("default"), QStringLiteral("Open")}, QVariantMap(), -1});
    dunst.shown(2);
    Dunst::click();
    ASSERT_TRUE(await(center->add(request)).has_value());
    const uint own = field(dunst.shown(3).constLast(), "id").toUInt();
    QDBusMessage forged = QDBusMessage::createSignal(server.path, server.interface, QStringLiteral("ActionInvoked"));
    QDBusConnection::sessionBus().send(forged << own << QStringLiteral("default"));
    waitUntil([] { return false; }, 200);
    EXPECT_EQ(clicks, 1);
    Dunst::click();
    EXPECT_TRUE(waitUntil([&clicks] { return clicks == 2; }));
}

TEST_F(FreedesktopNotificationCenterTest, TheServersTokenIsThereWhenItsClickIsReported) {
    const ScriptedServer tokens(QStringList{QStringLiteral("actions")});
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    QByteArray token;
    center->setActivationHandler([&token] { token = qgetenv("XDG_ACTIVATION_TOKEN"); });
    ASSERT_TRUE(await(center->add(request)).has_value());
    tokens.send("ActivationToken", QStringLiteral("token-1"));
    tokens.send("ActionInvoked", QStringLiteral("default"));
    EXPECT_TRUE(waitUntil([&token] { return token == "token-1"; }));
    qunsetenv("XDG_ACTIVATION_TOKEN");
    qunsetenv("WAYLAND_DISPLAY");
}

TEST_F(FreedesktopNotificationCenterTest, AServerWithoutMarkupAndActionsGetsPlainTextAndNoAction) {
    const ScriptedServer plain(QStringList{QStringLiteral("body")});
    ASSERT_TRUE(await(center->add(request)).has_value());
    const QVariantList arguments = plain.notified.at(0).arguments();
    EXPECT_EQ(arguments.at(4), QVariant(request.body));
    EXPECT_EQ(arguments.at(5), QVariant(QStringList()));
    const QVariantMap expected{{QStringLiteral("sound-name"), QStringLiteral("message-new-instant")},
                               {QStringLiteral("desktop-entry"), QStringLiteral("com.varnel.menubar")}};
    EXPECT_EQ(qdbus_cast<QVariantMap>(arguments.at(6)), expected);
}

TEST_F(FreedesktopNotificationCenterTest, WithoutAServerNothingIsShownUntilOneCanBeStarted) {
    EXPECT_EQ(await(center->authorizationStatus()), NotificationAuthorizationStatus::notDetermined);
    const Result<void> added = await(center->add(request));
    ASSERT_FALSE(added.has_value());
    EXPECT_FALSE(added.error().as<NotificationServerError>()->description.isEmpty());

    bus.setStartable(server.service, QStringLiteral("/bin/false"));
    EXPECT_EQ(await(center->authorizationStatus()), NotificationAuthorizationStatus::authorized);
    bus.setStartable(server.service, {});
}

TEST_F(FreedesktopNotificationCenterTest, AServerThatNeverAnswersHoldsNothingUp) {
    const ScriptedServer silent(std::nullopt);
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&turns] { ++turns; });
    timer.start(100);
    EXPECT_EQ(await(center->authorizationStatus()), NotificationAuthorizationStatus::authorized);
    EXPECT_EQ(turns, 0);
    EXPECT_FALSE(await(center->add(request)).has_value());
    EXPECT_GT(turns, 20) << "the event loop went on while the call was pending";
}

} // namespace
} // namespace Varnel
