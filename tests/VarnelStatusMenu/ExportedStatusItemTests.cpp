#include <VarnelStatusMenu/Linux/ExportedStatusItem.h>

#include "../Support/EventLoop.h"
#include "../Support/PrivateBus.h"

#include <VarnelStatusMenu/Linux/DBusMenuEncoding.h>
#include <VarnelStatusMenu/Linux/ItemFace.h>

#include <QDBusMessage>
#include <QElapsedTimer>
#include <QStringList>

#include <gmock/gmock.h>

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
constexpr int showWindowId = 2;
constexpr int refreshId = 10;
constexpr int preferencesId = 11;
constexpr int signInId = 12;
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

/// A panel as GNOME's and Plasma's are at their worst: it takes the rows once, with what they are, keeps their order,
/// and changes of them only what it is sent.
class KeepingPanel {
public:
    void takeLayout(const DBusMenuLayoutItem& layout) {
        for (const DBusMenuLayoutItem& item : layout.children) {
            m_rows.push_back({item.id, {}});
            update(item.id, item.properties);
        }
    }
    void update(int id, const QVariantMap& properties) {
        const auto row =
            std::find_if(m_rows.begin(), m_rows.end(), [id](const auto& each) { return each.first == id; });
        ASSERT_NE(row, m_rows.end());
        row->second.insert(properties);
    }

    /// One word or line per row; a disabled one stands in parentheses.
    QStringList rows() const {
        QStringList shown;
        for (const auto& [id, properties] : m_rows) {
            const QString text = properties.value(QStringLiteral("label")).toString();
            const bool isEnabled = properties.value(QStringLiteral("enabled")).toBool();
            if (properties.value(QStringLiteral("visible")).toBool()) {
                shown << (properties.contains(QStringLiteral("type")) ? QStringLiteral("separator")
                          : isEnabled                                 ? text
                                                                      : QStringLiteral("(%1)").arg(text));
            }
        }
        return shown;
    }

private:
    std::vector<std::pair<int, QVariantMap>> m_rows;
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
    int windowsOpened = 0;
    std::vector<StatusMenuCommand> chosen;
    ExportedStatusItem item{program,
                            QStringLiteral("com.varnel.menubar"),
                            {[this](std::optional<QPoint>) { ++menusOpened; },
                             [this](StatusMenuCommand command) { chosen.push_back(command); },
                             [this] { ++windowsOpened; }}};
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

TEST_F(ExportedStatusItemTest, RepeatsTheLabelAsAChangeForPanelsThatMissedIt) {
    item.repeat();
    item.setPanel({TitleForm::square, KeyNames::xServer});
    item.repeat(); // nothing, as it has no label
    item.setPanel({TitleForm::label, KeyNames::xServer});
    item.setContent(content(QStringLiteral("2.00 kW")));
    item.repeat();
    ASSERT_TRUE(waitUntil([this] { return itemSpy.messages.size() >= 5; }));
    EXPECT_EQ(itemSpy.members(), "NewTitle NewToolTip XAyatanaNewLabel XAyatanaNewLabel XAyatanaNewLabel");
    EXPECT_EQ(itemSpy.messages[3].arguments().value(0), QString());
    EXPECT_EQ(itemSpy.messages[4].arguments().value(0), QStringLiteral("2.00 kW"));
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

TEST_F(ExportedStatusItemTest, AClickBringsThePanelsTokenForTheWindow) {
    item.setPanel({TitleForm::square, KeyNames::qt});
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    PrivateBus::ask(panel, itemObject, "ProvideXdgActivationToken", {QStringLiteral("token-1")});
    PrivateBus::ask(panel, itemObject, "Activate", {10, 10});
    settle();
    EXPECT_EQ(menusOpened, 1);
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-1");
    qunsetenv("XDG_ACTIVATION_TOKEN");
    qunsetenv("WAYLAND_DISPLAY");
}

TEST_F(ExportedStatusItemTest, ShowsRowsAndCommandsAsTextInOrder) {
    item.setContent(content(QStringLiteral("1_2 kW")));
    const auto layout = qdbus_cast<DBusMenuLayoutItem>(call("GetLayout", {0, -1, QStringList()}).arguments().value(1));
    QString rows;
    for (const DBusMenuLayoutItem& row : layout.children) {
        if (!row.properties.value(QStringLiteral("visible")).toBool()) {
            continue;
        }
        const QVariant type = row.properties.value(QStringLiteral("type"));
        const bool isEnabled = row.properties.value(QStringLiteral("enabled"), true).toBool();
        rows += row.properties.value(QStringLiteral("label"), type).toString() + (isEnabled ? u'\n' : u'-');
    }
    EXPECT_EQ(rows.toStdString(), "Show Chart\nShow Chart in a Window\nseparator\nCurrent Output: 1__2 kW-Daily "
                                  "Output: ---Last Updated: ---Error: Offline-"
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
    click(showWindowId);
    EXPECT_EQ(windowsOpened, 1);
    const QList<DBusMenuEvent> events{{signOutId, clicked, QDBusVariant(QString()), 0},
                                      {unknownId, clicked, QDBusVariant(QString()), 0}};
    const QDBusMessage reply = call("EventGroup", {QVariant::fromValue(events)});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{unknownId});
    EXPECT_THAT(chosen, ElementsAre(StatusMenuCommand::preferences, StatusMenuCommand::signOut));
}

TEST_F(ExportedStatusItemTest, TakesClicksThatNoPersonMakesForOne) {
    item.setContent(content(QStringLiteral("1 kW")));
    QElapsedTimer time;
    time.start();
    for (int count = 0; count < 1200; ++count) {
        QDBusMessage event = QDBusMessage::createMethodCall(menuObject.service, menuObject.path, menuObject.interface,
                                                            QStringLiteral("Event"));
        event.setArguments({preferencesId, clicked, noData, 0U});
        panel.send(event);
    }
    call("AboutToShow", {0}); // answered behind them
    EXPECT_LE(chosen.size(), 1 + static_cast<std::size_t>(time.elapsed()) / 300);
    EXPECT_GE(chosen.size(), 1U);
    const std::size_t before = chosen.size();
    click(signOutId);
    EXPECT_EQ(chosen.size(), before + 1) << "another row is another choice";
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

TEST_F(ExportedStatusItemTest, TellsTheLayoutOnceAndThenWhatChanges) {
    item.setContent(content(QStringLiteral("1 kW")));
    item.setContent(content(QStringLiteral("2 kW")));
    item.setContent(content(QStringLiteral("2 kW")));
    item.setContent(content(QStringLiteral("2 kW"), false));
    // The choice of a person who still sees the rows of before means the same.
    click(preferencesId);
    EXPECT_THAT(chosen, ElementsAre(StatusMenuCommand::preferences));
    ASSERT_EQ(menuSpy.members(), "LayoutUpdated ItemsPropertiesUpdated ItemsPropertiesUpdated");
    EXPECT_EQ(qdbus_cast<QList<DBusMenuItem>>(menuSpy.messages[1].arguments().value(0)).size(), 1);
}

TEST_F(ExportedStatusItemTest, IsRowForRowInAPanelThatCanOnlyChangeItsRows) {
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
    click(signInId); // of a menu that a person still sees
    EXPECT_TRUE(chosen.empty());
}

#include "ExportedStatusItemTests.moc"
