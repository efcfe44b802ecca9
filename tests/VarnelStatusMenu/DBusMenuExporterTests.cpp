#include "../Support/EventLoop.h"
#include "ItemRows.h"
#include "PrivateBus.h"
#include "SignalSpy.h"

#include <VarnelStatusMenu/Linux/DBusMenuExporter.h>

#include <gmock/gmock.h>

using namespace Varnel;
using namespace Varnel::Testing;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int refreshId = 10;
constexpr int showChartId = 1;

/// What a panel sees and does: each call goes over the bus.
class DBusMenuExporterTest : public testing::Test {
protected:
    void SetUp() override {
        m_program.registerObject(QStringLiteral("/MenuBar"), &m_object);
        for (const char* signal : {"LayoutUpdated", "ItemsPropertiesUpdated"}) {
            m_panel.connect(m_program.baseService(), QStringLiteral("/MenuBar"),
                            QStringLiteral("com.canonical.dbusmenu"), QString::fromLatin1(signal), &signalSpy,
                            SLOT(receive(QDBusMessage)));
        }
    }

    template <typename... Arguments>
    QDBusMessage call(const QString& method, const Arguments&... arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(m_program.baseService(), QStringLiteral("/MenuBar"),
                                                              QStringLiteral("com.canonical.dbusmenu"), method);
        message.setArguments({QVariant::fromValue(arguments)...});
        const QDBusMessage reply = PrivateBus::ask(m_panel, message);
        settle();
        return reply;
    }

    DBusMenuLayoutItem layout() {
        return qdbus_cast<DBusMenuLayoutItem>(
            call(QStringLiteral("GetLayout"), 0, -1, QStringList()).arguments().value(1));
    }

    QDBusMessage click(int id) {
        return call(QStringLiteral("Event"), id, QStringLiteral("clicked"), QDBusVariant(QString()), 0U);
    }

    PrivateBus m_bus;
    QDBusConnection m_program = m_bus.connect();
    QDBusConnection m_panel = m_bus.connect();
    SignalSpy signalSpy;
    int menusOpened = 0;
    std::vector<StatusMenuCommand> chosen;
    QObject m_object;
    DBusMenuExporter* exporter = new DBusMenuExporter(
        &m_object, m_program,
        {[this] { ++menusOpened; }, [this](StatusMenuCommand command) { chosen.push_back(command); }});
};

} // namespace

TEST_F(DBusMenuExporterTest, ShowsRowsAndCommandsInOrder) {
    exporter->setMenu(textMenu(QStringLiteral("3.42 kW")));
    QStringList rows;
    for (const DBusMenuLayoutItem& row : layout().children) {
        const QVariantMap& properties = row.properties;
        const QString text =
            properties.value(QStringLiteral("label"), properties.value(QStringLiteral("type"))).toString();
        rows << text +
                    (properties.value(QStringLiteral("enabled"), true).toBool() ? QString() : QStringLiteral(" (off)"));
    }
    EXPECT_EQ(rows,
              QStringList({QStringLiteral("Show Chart"), QStringLiteral("separator"),
                           QStringLiteral("Current Output: 3.42 kW (off)"), QStringLiteral("Daily Output: -- (off)"),
                           QStringLiteral("Last Updated: -- (off)"), QStringLiteral("separator"),
                           QStringLiteral("Refresh (off)"), QStringLiteral("Settings…"), QStringLiteral("separator"),
                           QStringLiteral("Disconnect")}));
    const auto shortcut =
        qdbus_cast<QList<QStringList>>(layout().children.at(7).properties.value(QStringLiteral("shortcut")));
    EXPECT_EQ(shortcut, QList<QStringList>{QStringList({QStringLiteral("Control"), QStringLiteral("comma")})});
}

TEST_F(DBusMenuExporterTest, CallsTheHandlerOncePerChoiceOfAnEnabledRow) {
    ExportedMenu menu = textMenu(QStringLiteral("1 kW"));
    exporter->setMenu(menu);
    click(refreshId); // not enabled
    click(102);       // a row of text
    call(QStringLiteral("Event"), 11, QStringLiteral("hovered"), QDBusVariant(QString()), 0U);
    EXPECT_THAT(chosen, IsEmpty());
    click(11);
    EXPECT_THAT(chosen, ElementsAre(StatusMenuCommand::preferences));
    click(showChartId);
    EXPECT_EQ(menusOpened, 1);
}

TEST_F(DBusMenuExporterTest, AnswersTheGroupCalls) {
    exporter->setMenu(textMenu(QStringLiteral("1_2 kW")));
    const QDBusMessage properties =
        call(QStringLiteral("GetGroupProperties"), QList<int>{102, 999}, QStringList{QStringLiteral("label")});
    EXPECT_EQ(qdbus_cast<QList<DBusMenuItem>>(properties.arguments().value(0)),
              (QList<DBusMenuItem>{{102, {{QStringLiteral("label"), QStringLiteral("Current Output: 1__2 kW")}}}}));

    const QString clicked = QStringLiteral("clicked");
    const QDBusVariant none{QString()};
    const QList<DBusMenuEvent> events{{13, clicked, none, 0}, {999, clicked, none, 0}};
    const QDBusMessage unknown = call(QStringLiteral("EventGroup"), events);
    EXPECT_EQ(qdbus_cast<QList<int>>(unknown.arguments().value(0)), QList<int>{999});
    EXPECT_THAT(chosen, ElementsAre(StatusMenuCommand::signOut));

    const QDBusMessage aboutToShow = call(QStringLiteral("AboutToShowGroup"), QList<int>{0, 999});
    EXPECT_EQ(qdbus_cast<QList<int>>(aboutToShow.arguments().value(0)), QList<int>());
    EXPECT_EQ(qdbus_cast<QList<int>>(aboutToShow.arguments().value(1)), QList<int>{999});
    EXPECT_EQ(call(QStringLiteral("AboutToShow"), 0).arguments().value(0), QVariant(false));
}

TEST_F(DBusMenuExporterTest, RefusesWhatItDoesNotHave) {
    exporter->setMenu(textMenu(QStringLiteral("1 kW")));
    const QString label = QStringLiteral("label");
    EXPECT_EQ(call(QStringLiteral("GetLayout"), 999, -1, QStringList()).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(QStringLiteral("GetProperty"), 999, label).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(click(999).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(QStringLiteral("GetProperty"), 11, label).arguments().value(0).value<QDBusVariant>().variant(),
              QVariant(QStringLiteral("Settings…")));
}

TEST_F(DBusMenuExporterTest, AnnouncesTextsWhenTheRowsAreTheSameAndTheLayoutOtherwise) {
    exporter->setMenu(textMenu(QStringLiteral("1 kW")));
    exporter->setMenu(textMenu(QStringLiteral("2 kW")));
    exporter->setMenu(textMenu(QStringLiteral("2 kW")));
    exporter->setMenu(textMenu(QStringLiteral("2 kW"), false));
    ASSERT_TRUE(waitUntil([this] { return signalSpy.messages.size() >= 3; }));
    settle();
    QStringList members;
    for (const QDBusMessage& message : signalSpy.messages) {
        members << message.member();
    }
    EXPECT_EQ(members, QStringList({QStringLiteral("LayoutUpdated"), QStringLiteral("ItemsPropertiesUpdated"),
                                    QStringLiteral("LayoutUpdated")}));
    EXPECT_EQ(qdbus_cast<QList<DBusMenuItem>>(signalSpy.messages[1].arguments().value(0)).size(), 1);
    // The choice of a person who still sees the rows of before means the same.
    click(11);
    EXPECT_THAT(chosen, ElementsAre(StatusMenuCommand::preferences));
}
