#include <VarnelNotifications/Linux/FreedesktopNotificationCenter.h>

#include "../Support/EventLoop.h"
#include "ScriptedNotificationServer.h"

#include <VarnelNotifications/LocalNotificationService.h>

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>

namespace Varnel {
namespace {

using Testing::await;
using Testing::ScriptedNotificationServer;
using Testing::waitUntil;

const QString serverName = QStringLiteral("org.freedesktop.Notifications");
const QString serverPath = QStringLiteral("/org/freedesktop/Notifications");

/// A real notification server on the X display and the bus of the test.
class Dunst {
public:
    Dunst() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_configuration.path());
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral("dunst"), {QStringLiteral("-print")});
        const QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
        if (!waitUntil([bus] { return bus->isServiceRegistered(serverName).value(); })) {
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
    void click() {
        call("NotificationAction", {0U});
        call("NotificationCloseAll", {});
    }

private:
    static void call(const char* method, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            serverName, serverPath, QStringLiteral("org.dunstproject.cmd0"), QLatin1String(method));
        message.setArguments(arguments);
        QDBusConnection::sessionBus().call(message);
    }

    QTemporaryDir m_configuration;
    QProcess m_process;
    QString m_printed;
};

QString field(const QString& block, const char* name) {
    return QRegularExpression(QStringLiteral("^\t%1: '?(.*?)'?$").arg(QLatin1String(name)),
                              QRegularExpression::MultilineOption)
        .match(block)
        .captured(1);
}

/// Each test ends with nothing logged as a warning or worse.
class FreedesktopNotificationCenterTest : public testing::Test {
protected:
    void SetUp() override {
        s_logged.clear();
        m_previous = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& message) {
            if (type != QtDebugMsg && type != QtInfoMsg) {
                s_logged += message;
            }
        });
    }
    void TearDown() override {
        qInstallMessageHandler(m_previous);
        EXPECT_EQ(s_logged, QString());
    }

    std::shared_ptr<FreedesktopNotificationCenter> center = std::make_shared<FreedesktopNotificationCenter>(
        NotificationSender{QStringLiteral("Varnel"), QStringLiteral("com.varnel.menubar"), QStringLiteral("sun")});
    const NotificationRequest request{QStringLiteral("id"), QStringLiteral("A & <b>"),
                                      QStringLiteral("1 < 2 & <b>3</b>")};

private:
    static inline QString s_logged;
    QtMessageHandler m_previous = nullptr;
};

TEST_F(FreedesktopNotificationCenterTest, ARealServerShowsEachDeliveryOfEachKind) {
    Dunst dunst;
    LocalNotificationService service(center, {}, QLocale(QLocale::English));
    await(service.deliver(ProductionNotificationEvent::productionStarted, 0.5));
    await(service.deliver(ProductionNotificationEvent::productionStarted, 0.5));
    await(service.deliver(ProductionNotificationEvent::productionEnded, -0.1));
    await(service.deliver(ProductionNotificationEvent::productionRiseAboveOneKilowatt, 1234.5));
    ASSERT_TRUE(await(center->add(request)).has_value());

    const struct {
        const char* summary;
        const char* body;
    } expected[] = {
        {"Production Started", "Current output is 0.50 kW."},
        {"Production Started", "Current output is 0.50 kW."},
        {"Production Ended", "Current output stayed below 0 W for 2 consecutive checks."},
        {"Production Above 1.00 kW", "Current output reached 1,234.50 kW."},
        {"A & <b>", "1 &lt; 2 &amp; &lt;b&gt;3&lt;/b&gt;"},
    };
    const QStringList shown = dunst.shown(std::size(expected));
    ASSERT_EQ(shown.size(), std::size(expected));
    QSet<QString> numbers;
    for (int i = 0; i < shown.size(); ++i) {
        EXPECT_EQ(field(shown[i], "summary"), QString::fromLatin1(expected[i].summary));
        EXPECT_EQ(field(shown[i], "body"), QString::fromLatin1(expected[i].body));
        EXPECT_EQ(field(shown[i], "appname"), QStringLiteral("Varnel"));
        EXPECT_EQ(field(shown[i], "desktop_entry"), QStringLiteral("com.varnel.menubar"));
        EXPECT_EQ(field(shown[i], "icon"), QStringLiteral("sun"));
        numbers.insert(field(shown[i], "id"));
    }
    EXPECT_EQ(numbers.size(), shown.size()) << "no notification replaces another";
}

TEST_F(FreedesktopNotificationCenterTest, OnlyAClickOnOneOfOurOwnIsReported) {
    int clicks = 0;
    center->setActivationHandler([&clicks] { ++clicks; });
    Dunst dunst;
    ASSERT_TRUE(await(center->add(request)).has_value());
    dunst.shown(1);
    dunst.click();
    EXPECT_TRUE(waitUntil([&clicks] { return clicks == 1; }));

    // A click on another program's notification, and a peer that pretends to be the server.
    QDBusMessage foreign = QDBusMessage::createMethodCall(serverName, serverPath, serverName, QStringLiteral("Notify"));
    foreign << QStringLiteral("Other") << 0U << QString() << QStringLiteral("t") << QString()
            << QStringList{QStringLiteral("default"), QStringLiteral("Open")} << QVariantMap() << -1;
    QDBusConnection::sessionBus().call(foreign);
    dunst.shown(2);
    dunst.click();
    ASSERT_TRUE(await(center->add(request)).has_value());
    const uint own = field(dunst.shown(3).constLast(), "id").toUInt();
    QDBusMessage forged = QDBusMessage::createSignal(serverPath, serverName, QStringLiteral("ActionInvoked"));
    QDBusConnection::sessionBus().send(forged << own << QStringLiteral("default"));
    waitUntil([] { return false; }, 200);
    EXPECT_EQ(clicks, 1);
    dunst.click();
    EXPECT_TRUE(waitUntil([&clicks] { return clicks == 2; }));
}

TEST_F(FreedesktopNotificationCenterTest, TheCallFollowsTheCapabilitiesOfTheServer) {
    const struct {
        QStringList capabilities;
        QString body;
        QStringList actions;
    } rows[] = {
        {{}, request.body, {}},
        {{QStringLiteral("body-markup"), QStringLiteral("actions")},
         QStringLiteral("1 &lt; 2 &amp; &lt;b&gt;3&lt;/b&gt;"),
         {QStringLiteral("default"), QStringLiteral("Show")}},
    };
    for (const auto& row : rows) {
        const ScriptedNotificationServer server(row.capabilities);
        ASSERT_TRUE(await(center->add(request)).has_value());
        const QDBusMessage& call = server.notified.at(0);
        EXPECT_EQ(call.signature(), QStringLiteral("susssasa{sv}i"));
        EXPECT_EQ(call.arguments().at(1), QVariant(0U)) << "replaces nothing";
        EXPECT_EQ(call.arguments().at(3), QVariant(request.title));
        EXPECT_EQ(call.arguments().at(4), QVariant(row.body));
        EXPECT_EQ(call.arguments().at(5), QVariant(row.actions));
        const auto hints = qdbus_cast<QVariantMap>(call.arguments().at(6));
        EXPECT_EQ(hints.value(QStringLiteral("sound-name")), QVariant(QStringLiteral("message-new-instant")));
        EXPECT_EQ(hints.value(QStringLiteral("desktop-entry")), QVariant(QStringLiteral("com.varnel.menubar")));
    }
}

TEST_F(FreedesktopNotificationCenterTest, WithoutAServerNothingIsShownUntilOneCanBeStarted) {
    EXPECT_EQ(await(center->authorizationStatus()), NotificationAuthorizationStatus::notDetermined);
    const Result<void> added = await(center->add(request));
    ASSERT_FALSE(added.has_value());
    EXPECT_NE(added.error().as<NotificationServerError>(), nullptr);
    EXPECT_FALSE(added.error().localizedDescription().isEmpty());

    const auto reload = [] {
        const QString bus = QStringLiteral("org.freedesktop.DBus");
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"),
                                                                          bus, QStringLiteral("ReloadConfig")));
    };
    QFile service(QStringLiteral(SERVICE_FOLDER "/org.freedesktop.Notifications.service"));
    ASSERT_TRUE(service.open(QFile::WriteOnly));
    service.write("[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=/bin/false\n");
    service.close();
    reload();
    EXPECT_EQ(await(center->authorizationStatus()), NotificationAuthorizationStatus::authorized);
    service.remove();
    reload();
}

TEST_F(FreedesktopNotificationCenterTest, AServerThatNeverAnswersHoldsNothingUp) {
    const ScriptedNotificationServer server(std::nullopt);
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&turns] { ++turns; });
    timer.start(100);
    EXPECT_EQ(await(center->authorizationStatus()), NotificationAuthorizationStatus::authorized);
    EXPECT_EQ(turns, 0);
    EXPECT_FALSE(await(center->add(request)).has_value());
    EXPECT_GT(turns, 20) << "the event loop went on while the call was pending";
    EXPECT_EQ(server.notified.size(), 1);
}

} // namespace
} // namespace Varnel
