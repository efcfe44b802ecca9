#include <VarnelStatusMenu/Linux/ExportedStatusItem.h>

#include "../Support/EventLoop.h"
#include "../Support/PrivateBus.h"

#include <VarnelStatusMenu/Linux/DBusMenuEncoding.h>
#include <VarnelStatusMenu/Linux/ItemFace.h>

#include <QDBusMessage>
#include <QStringList>

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

using namespace Varnel;
using namespace Varnel::Testing;
using testing::ElementsAre;

namespace {

StatusItemContent content(const QString& title, bool hasChart = true) {
    StatusPresentation presentation;
    presentation.outputValue = title;
    presentation.showOutputChart = hasChart;
    presentation.isSignedIn = true;
    presentation.errorLine = QStringLiteral("Offline");
    return {title, QStringLiteral("Current Output: ") + title, statusMenu(presentation), {}};
}

const QString clicked = QStringLiteral("clicked");
const QVariant noData = QVariant::fromValue(QDBusVariant(QString()));
constexpr int showChartId = 1;
constexpr int refreshId = 10;
constexpr int preferencesId = 11;
constexpr int signOutId = 13;
constexpr int outputRowId = 100;
constexpr int unknownId = 999;

/// Records the signals of the bus it is connected to.
class SignalSpy final : public QObject {
    Q_OBJECT

public:
    std::vector<QDBusMessage> messages;

    /// The names of what was received, in order.
    std::string members() const {
        QStringList names;
        for (const QDBusMessage& message : messages) {
            names << message.member();
        }
        return names.join(u' ').toStdString();
    }

public Q_SLOTS:
    void receive(const QDBusMessage& message) { messages.push_back(message); }
};

/// A panel that keeps for good what it made for an id, separator or not, and changes of it only what it is sent; ids
/// that a layout does not name are forgotten.
class KeepingPanel {
public:
    void takeLayout(const DBusMenuLayoutItem& layout) {
        std::map<int, Row> kept;
        m_order.clear();
        for (const DBusMenuLayoutItem& item : layout.children) {
            const auto known = m_rows.find(item.id);
            kept[item.id] = known != m_rows.end() ? known->second : Row{isSeparator(item.properties), {}, true};
            m_order.push_back(item.id);
        }
        m_rows = kept;
        for (const DBusMenuLayoutItem& item : layout.children) {
            update(item.id, item.properties);
        }
    }
    void update(int id, const QVariantMap& properties) {
        Row& row = m_rows.at(id);
        row.label = properties.value(QStringLiteral("label"), row.label).toString();
        row.isEnabled = properties.value(QStringLiteral("enabled"), row.isEnabled).toBool();
    }

    /// One word or line per row; a disabled one stands in parentheses.
    QStringList rows() const {
        QStringList shown;
        for (const int id : m_order) {
            const Row& row = m_rows.at(id);
            const QString text = row.isEnabled ? row.label : QStringLiteral("(%1)").arg(row.label);
            shown << (row.isSeparator ? QStringLiteral("separator") : text);
        }
        return shown;
    }

private:
    struct Row {
        bool isSeparator;
        QString label;
        bool isEnabled;
    };
    static bool isSeparator(const QVariantMap& properties) {
        return properties.value(QStringLiteral("type")) == QStringLiteral("separator");
    }

    std::map<int, Row> m_rows;
    std::vector<int> m_order;
};

QStringList rowsOf(const ExportedMenu& menu) {
    QStringList rows;
    for (const ExportedMenuItem& row : menu) {
        const bool isSeparator = row.kind == ExportedMenuItem::Kind::separator;
        rows << (isSeparator     ? QStringLiteral("separator")
                 : row.isEnabled ? row.title
                                 : QStringLiteral("(%1)").arg(row.title));
    }
    return rows;
}

/// What a panel sees and does: each call goes over the bus.
struct ExportedStatusItemTest : testing::Test {
    ExportedStatusItemTest() {
        for (const auto& [object, spy] : {std::pair(&itemObject, &itemSpy), {&menuObject, &menuSpy}}) {
            panel.connect(object->service, object->path, object->interface, {}, spy, SLOT(receive(QDBusMessage)));
        }
    }

    QVariantMap itemProperties() {
        const BusObject properties{itemObject.service, itemObject.path,
                                   QStringLiteral("org.freedesktop.DBus.Properties")};
        const QDBusMessage reply = PrivateBus::ask(panel, properties, "GetAll", {itemObject.interface});
        return qdbus_cast<QVariantMap>(reply.arguments().value(0));
    }
    QDBusMessage call(const char* method, const QVariantList& arguments) {
        const QDBusMessage reply = PrivateBus::ask(panel, menuObject, method, arguments);
        settle();
        return reply;
    }
    QDBusMessage click(int id) { return call("Event", {id, clicked, noData, 0U}); }

    PrivateBus bus;
    QDBusConnection program = bus.connect();
    QDBusConnection panel = bus.connect();
    const BusObject itemObject{program.baseService(), QStringLiteral("/StatusNotifierItem"),
                               QStringLiteral("org.kde.StatusNotifierItem")};
    const BusObject menuObject{program.baseService(), QStringLiteral("/MenuBar"),
                               QStringLiteral("com.canonical.dbusmenu")};
    SignalSpy itemSpy;
    SignalSpy menuSpy;
    int menusOpened = 0;
    std::vector<StatusMenuCommand> chosen;
    ExportedStatusItem item{program,
                            QStringLiteral("com.varnel.menubar"),
                            {[this](std::optional<QPoint>) { ++menusOpened; },
                             [this](StatusMenuCommand command) { chosen.push_back(command); }}};
};

} // namespace

TEST_F(ExportedStatusItemTest, HasTheProtocolsPropertiesAndALabelOnlyInTheFormOfALabel) {
    item.setPanel({TitleForm::square, KeyNames::xServer});
    EXPECT_FALSE(itemProperties().contains(QStringLiteral("XAyatanaLabel")));
    EXPECT_FALSE(qdbus_cast<QList<ItemPixmap>>(itemProperties().value(QStringLiteral("IconPixmap"))).isEmpty());
    item.setPanel({TitleForm::label, KeyNames::xServer});
    item.setContent(content(QStringLiteral("2.00 kW")));
    const QVariantMap properties = itemProperties();
    EXPECT_EQ(properties.value(QStringLiteral("XAyatanaLabel")), QStringLiteral("2.00 kW"));
    EXPECT_EQ(properties.value(QStringLiteral("Title")), QStringLiteral("2.00 kW"));
    EXPECT_EQ(properties.value(QStringLiteral("Status")), QStringLiteral("Active"));
    EXPECT_EQ(properties.value(QStringLiteral("Menu")).value<QDBusObjectPath>().path(), menuObject.path);
    EXPECT_EQ(qdbus_cast<ItemToolTip>(properties.value(QStringLiteral("ToolTip"))).title,
              QStringLiteral("Current Output: 2.00 kW"));
    EXPECT_EQ(itemSpy.members(), "NewTitle NewToolTip XAyatanaNewLabel");
}

TEST_F(ExportedStatusItemTest, TellsOnlyWhatChanged) {
    item.setContent(content(QStringLiteral("1.00 kW")));
    item.setPanel({TitleForm::square, KeyNames::xServer});
    StatusItemContent next = content(QStringLiteral("1.00 kW"));
    item.setContent(next);
    next.toolTip = QStringLiteral("another");
    item.setContent(next);
    next.title = QStringLiteral("1.00  kW"); // the picture is the same
    item.setContent(next);
    item.setContent(content(QStringLiteral("2.00 kW")));
    next = content(QStringLiteral("2.00 kW"));
    next.outdatedLine = QStringLiteral("Last reading at 16:05");
    next.toolTip += QLatin1Char('\n') + *next.outdatedLine;
    item.setContent(next);
    EXPECT_EQ(qdbus_cast<ItemToolTip>(itemProperties().value(QStringLiteral("ToolTip"))).text, *next.outdatedLine);
    EXPECT_EQ(itemProperties().value(QStringLiteral("IconAccessibleDesc")),
              QStringLiteral("2.00 kW. Last reading at 16:05"));
    itemProperties(); // the signals come before this reply
    settle();
    EXPECT_EQ(itemSpy.members(), "NewToolTip NewTitle NewTitle NewIcon NewToolTip NewIcon NewToolTip");
}

TEST_F(ExportedStatusItemTest, ShowsRowsAndCommandsAsTextInOrder) {
    item.setContent(content(QStringLiteral("1_2 kW")));
    const auto layout = qdbus_cast<DBusMenuLayoutItem>(call("GetLayout", {0, -1, QStringList()}).arguments().value(1));
    QString rows;
    for (const DBusMenuLayoutItem& row : layout.children) {
        const QVariant type = row.properties.value(QStringLiteral("type"));
        const bool isEnabled = row.properties.value(QStringLiteral("enabled"), true).toBool();
        rows += row.properties.value(QStringLiteral("label"), type).toString() + (isEnabled ? u'\n' : u'-');
    }
    EXPECT_EQ(rows.toStdString(),
              "Show Chart\nseparator\nCurrent Output: 1__2 kW-Daily Output: ---Last Updated: ---Error: Offline-"
              "separator\nRefresh-Settings…\nseparator\nDisconnect\n");
}

TEST_F(ExportedStatusItemTest, NamesTheKeysOfShortcutsAsThePanelDoes) {
    item.setContent(content(QStringLiteral("1 kW")));
    for (const auto& [keyNames, comma] : {std::pair(KeyNames::xServer, "comma"), {KeyNames::qt, ","}}) {
        item.setPanel({TitleForm::square, keyNames});
        const QDBusMessage reply = call("GetProperty", {preferencesId, QStringLiteral("shortcut")});
        const QVariant shortcut = reply.arguments().value(0).value<QDBusVariant>().variant();
        EXPECT_EQ(qdbus_cast<QList<QStringList>>(shortcut),
                  QList<QStringList>{QStringList({QStringLiteral("Control"), QString::fromLatin1(comma)})});
    }
}

TEST_F(ExportedStatusItemTest, CallsTheHandlerOncePerChoiceOfAnEnabledRow) {
    item.setContent(content(QStringLiteral("1 kW")));
    click(refreshId); // not enabled
    click(outputRowId);
    call("Event", {preferencesId, QStringLiteral("hovered"), noData, 0U});
    EXPECT_TRUE(chosen.empty());
    click(preferencesId);
    click(showChartId);
    EXPECT_EQ(menusOpened, 1);
    const QList<DBusMenuEvent> events{{signOutId, clicked, QDBusVariant(QString()), 0},
                                      {unknownId, clicked, QDBusVariant(QString()), 0}};
    const QDBusMessage reply = call("EventGroup", {QVariant::fromValue(events)});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{unknownId});
    EXPECT_THAT(chosen, ElementsAre(StatusMenuCommand::preferences, StatusMenuCommand::signOut));
}

TEST_F(ExportedStatusItemTest, AnswersForTheRowsItHasAndRefusesOthers) {
    item.setContent(content(QStringLiteral("1 kW")));
    const QString label = QStringLiteral("label");
    const auto ids = QVariant::fromValue(QList<int>{preferencesId, unknownId});
    const QDBusMessage properties = call("GetGroupProperties", {ids, QStringList(label)});
    EXPECT_EQ(qdbus_cast<QList<DBusMenuItem>>(properties.arguments().value(0)),
              (QList<DBusMenuItem>{{preferencesId, {{label, QStringLiteral("Settings…")}}}}));
    const QVariantList aboutToShow = call("AboutToShowGroup", {ids}).arguments();
    EXPECT_EQ(qdbus_cast<QList<int>>(aboutToShow.value(0)), QList<int>());
    EXPECT_EQ(qdbus_cast<QList<int>>(aboutToShow.value(1)), QList<int>{unknownId});
    EXPECT_EQ(call("AboutToShow", {0}).arguments().value(0), QVariant(false));
    EXPECT_EQ(call("GetProperty", {preferencesId, label}).arguments().value(0).value<QDBusVariant>().variant(),
              QVariant(QStringLiteral("Settings…")));
    EXPECT_EQ(call("GetProperty", {unknownId, label}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call("GetLayout", {unknownId, -1, QStringList()}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(click(unknownId).type(), QDBusMessage::ErrorMessage);
}

TEST_F(ExportedStatusItemTest, AnnouncesTextsWhenTheRowsAreTheSameAndTheLayoutOtherwise) {
    item.setContent(content(QStringLiteral("1 kW")));
    item.setContent(content(QStringLiteral("2 kW")));
    item.setContent(content(QStringLiteral("2 kW")));
    item.setContent(content(QStringLiteral("2 kW"), false));
    // The choice of a person who still sees the rows of before means the same.
    click(preferencesId);
    EXPECT_THAT(chosen, ElementsAre(StatusMenuCommand::preferences));
    ASSERT_EQ(menuSpy.members(), "LayoutUpdated ItemsPropertiesUpdated LayoutUpdated");
    EXPECT_EQ(qdbus_cast<QList<DBusMenuItem>>(menuSpy.messages[1].arguments().value(0)).size(), 1);
}

TEST_F(ExportedStatusItemTest, IsRowForRowInAPanelThatKeepsWhatItMadeForAnId) {
    KeepingPanel keeping;
    StatusPresentation presentation;
    std::size_t read = 0;
    const auto show = [&](const char* change) {
        const StatusMenu menu = statusMenu(presentation);
        item.setContent({QStringLiteral("1 kW"), {}, menu, {}});
        const QDBusMessage layout = call("GetLayout", {0, -1, QStringList()}); // the signals come before this reply
        for (; read < menuSpy.messages.size(); ++read) {
            if (menuSpy.messages[read].member() == QStringLiteral("LayoutUpdated")) {
                keeping.takeLayout(qdbus_cast<DBusMenuLayoutItem>(layout.arguments().value(1)));
                continue;
            }
            for (const DBusMenuItem& row :
                 qdbus_cast<QList<DBusMenuItem>>(menuSpy.messages[read].arguments().value(0))) {
                keeping.update(row.id, row.properties);
            }
        }
        EXPECT_EQ(keeping.rows(), rowsOf(exportedMenu(menu))) << change;
    };
    show("signed out");
    presentation.isSignedIn = presentation.canRefresh = true;
    show("signed in");
    presentation.showOutputChart = true;
    presentation.outputValue = QStringLiteral("1.00 kW");
    show("first reading");
    presentation.errorLine = QStringLiteral("Offline");
    show("error");
    presentation.outputValue = QStringLiteral("2.00 kW");
    presentation.errorLine.reset();
    show("recovery");
    presentation.canRefresh = false;
    show("refresh disabled");
    presentation = {};
    show("signed out again");
    presentation.errorLine = QStringLiteral("Offline");
    presentation.isSignedIn = presentation.canRefresh = true;
    show("error without a chart");
}

#include "ExportedStatusItemTests.moc"
