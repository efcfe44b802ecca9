#include "../Support/EventLoop.h"
#include "../Support/PrivateBus.h"

#include <Varnel/Linux/OutputBusObject.h>
#include <Varnel/Linux/SingleInstance.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusVariant>

#include <cmath>

using namespace Varnel;
using Varnel::Testing::BusObject;
using Varnel::Testing::PrivateBus;
using Varnel::Testing::settle;
using Varnel::Testing::waitUntil;
using Command = OutputBusObject::Command;
using testing::ElementsAre;

namespace {

PrivateBus& sessionBus() {
    static PrivateBus bus; // the process has one for its whole life
    bus.becomeSessionBus();
    return bus;
}

/// The names of the properties that were announced as changed, one entry per signal.
class ChangeSpy final : public QObject {
    Q_OBJECT

public:
    std::vector<std::string> changes;

public Q_SLOTS:
    void receive(const QString& interface, const QVariantMap& changed, const QStringList& /*invalidated*/) {
        EXPECT_EQ(interface, QLatin1String(OutputBusObject::interface));
        changes.push_back(QStringList(changed.keys()).join(u' ').toStdString());
    }
};

struct OutputBusObjectTest : testing::Test {
    OutputBusObjectTest() {
        object.setCommandHandler([this](Command command) { commands.push_back(command); });
        caller.connect(program.baseService(), path, properties.interface, QStringLiteral("PropertiesChanged"), &spy,
                       SLOT(receive(QString, QVariantMap, QStringList)));
    }

    QDBusMessage call(const char* method, const QVariantList& arguments = {}) {
        return PrivateBus::ask(caller, output, method, arguments);
    }
    QVariantMap read() {
        const QDBusMessage reply = PrivateBus::ask(caller, properties, "GetAll", {output.interface});
        return qdbus_cast<QVariantMap>(reply.arguments().value(0));
    }

    const QString path = QString::fromLatin1(OutputBusObject::path);
    QDBusConnection program = sessionBus().connect();
    QDBusConnection caller = sessionBus().connect();
    const BusObject output{program.baseService(), path, QString::fromLatin1(OutputBusObject::interface)};
    const BusObject properties{program.baseService(), path, QStringLiteral("org.freedesktop.DBus.Properties")};
    ChangeSpy spy;
    std::vector<Command> commands;
    OutputBusObject object{program};
};

} // namespace

TEST_F(OutputBusObjectTest, TellsTheReadingAndAnnouncesWhatHasBecomeAnother) {
    const QVariantMap unknown = read();
    EXPECT_TRUE(std::isnan(unknown[QStringLiteral("PowerKW")].toDouble()));
    EXPECT_EQ(unknown[QStringLiteral("UpdatedAt")], QVariant(0LL));
    EXPECT_EQ(unknown[QStringLiteral("Connected")], QVariant(false));
    PublishedOutput reading{3.42, {}, QStringLiteral("roof"), Timestamp{}, QStringLiteral("3.42 kW"), {}, true};
    object.publish(reading);
    object.publish(reading);
    reading.todayOutputKWh = 7.5;
    object.publish(reading);
    reading.powerKW = 0;
    reading.title = QStringLiteral("0 W");
    reading.errorMessage = QStringLiteral("Offline");
    object.publish(reading);
    ASSERT_TRUE(waitUntil([this] { return spy.changes.size() >= 3; }));
    EXPECT_THAT(spy.changes,
                ElementsAre("Connected PowerKW Station Title UpdatedAt", "EnergyTodayKWh", "LastError PowerKW Title"));
    const QVariantMap expected{{QStringLiteral("PowerKW"), 0.0},
                               {QStringLiteral("EnergyTodayKWh"), 7.5},
                               {QStringLiteral("Station"), QStringLiteral("roof")},
                               {QStringLiteral("UpdatedAt"), 978307200LL},
                               {QStringLiteral("Title"), QStringLiteral("0 W")},
                               {QStringLiteral("LastError"), QStringLiteral("Offline")},
                               {QStringLiteral("Connected"), true}};
    EXPECT_EQ(read(), expected);
}

TEST_F(OutputBusObjectTest, ObeysEachCommandOnceASecondAndNothingElse) {
    EXPECT_EQ(call("Refresh").type(), QDBusMessage::ReplyMessage);
    call("Refresh");
    call("ShowOutput");
    call("ShowSettings");
    EXPECT_THAT(commands, ElementsAre(Command::refresh, Command::showOutput, Command::showSettings));
    const QVariant value = QVariant::fromValue(QDBusVariant(99.0));
    for (const auto& [name, target, method, arguments] :
         {std::tuple<const char*, BusObject, const char*, QVariantList>{
              "a property is set", properties, "Set", {output.interface, QStringLiteral("PowerKW"), value}},
          {"arguments too many", output, "ShowOutput", {1, QStringLiteral("junk")}},
          {"no such command", output, "SignOut", {}},
          {"the handler is no method", output, "setCommandHandler", {}},
          {"no such property", properties, "Get", {output.interface, QStringLiteral("Password")}}}) {
        EXPECT_EQ(PrivateBus::ask(caller, target, method, arguments).type(), QDBusMessage::ErrorMessage) << name;
    }
    EXPECT_EQ(commands.size(), 3U);
    EXPECT_TRUE(std::isnan(read()[QStringLiteral("PowerKW")].toDouble()));
}

TEST(OutputBusObject, DoesWhatWasAskedBeforeTheProgramWasReady) {
    QDBusConnection program = sessionBus().connect();
    const BusObject output{program.baseService(), QString::fromLatin1(OutputBusObject::path),
                           QString::fromLatin1(OutputBusObject::interface)};
    OutputBusObject object(program);
    const QDBusConnection caller = sessionBus().connect();
    PrivateBus::ask(caller, output, "ShowOutput");
    PrivateBus::ask(caller, output, "ShowOutput");
    std::vector<Command> commands;
    object.setCommandHandler([&commands](Command command) { commands.push_back(command); });
    settle();
    EXPECT_THAT(commands, ElementsAre(Command::showOutput));
}

TEST(SingleInstance, ObeysTheActionsOfTheDesktopEntryAlsoBeforeItIsReady) {
    sessionBus();
    const BusObject application{QStringLiteral("com.varnel.test"), QStringLiteral("/com/varnel/test"),
                                QStringLiteral("org.freedesktop.Application")};
    SingleInstance instance(application.service);
    ASSERT_EQ(instance.claim(), SingleInstance::Role::first);
    const QDBusConnection caller = sessionBus().connect();
    const auto act = [&](const char* action) {
        const QVariantList arguments{QString::fromLatin1(action), QVariantList(), QVariantMap()};
        return PrivateBus::ask(caller, application, "ActivateAction", arguments).type();
    };
    std::vector<std::string> acted;
    EXPECT_EQ(act("show-output"), QDBusMessage::ReplyMessage);
    instance.setActionHandler([&acted](const QString& action) {
        acted.push_back(action.toStdString());
        return action == QLatin1String("show-output");
    });
    EXPECT_EQ(act("show-output"), QDBusMessage::ReplyMessage);
    EXPECT_EQ(act("rm -rf"), QDBusMessage::ErrorMessage);
    EXPECT_THAT(acted, ElementsAre("show-output", "show-output", "rm -rf"));
}

#include "OutputBusObjectTests.moc"
