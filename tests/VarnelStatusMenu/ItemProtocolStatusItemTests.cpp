#include "../Support/EventLoop.h"
#include "FakeItemWatcher.h"
#include "ItemRows.h"
#include "SignalSpy.h"

#include <VarnelStatusMenu/Linux/ExportedStatusItem.h>
#include <VarnelStatusMenu/Linux/ItemProtocolStatusItem.h>
#include <VarnelStatusMenu/Linux/ItemProtocolTypes.h>

#include <gmock/gmock.h>

#include <QCoreApplication>

using namespace Varnel;
using namespace Varnel::Testing;
using Availability = StatusItemBackEnd::Availability;
using Manner = FakeItemWatcher::Manner;

namespace {

const QString identifier = QStringLiteral("com.varnel.menubar");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");

StatusItemContent content(const QString& title) {
    return {title, QStringLiteral("Current Output: ") + title, textMenu(title)};
}

QVariantMap propertiesOf(const QDBusConnection& panel, const QString& service) {
    QDBusMessage question = QDBusMessage::createMethodCall(
        service, itemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
    question << itemInterface;
    return qdbus_cast<QVariantMap>(PrivateBus::ask(panel, question).arguments().value(0));
}

struct ItemProtocolStatusItemTest : testing::Test {
    bool becomes(Availability availability) {
        return waitUntil([this, availability] { return item.availability() == availability; });
    }
    static bool isRegisteredWith(const FakeItemWatcher& watcher) {
        return waitUntil([&watcher] { return !watcher.registeredServices.empty(); });
    }

    PrivateBus bus;
    int menusOpened = 0;
    ItemProtocolStatusItem item{bus.connect(), identifier, {[this] { ++menusOpened; }, [](StatusMenuCommand) {}}};
};

struct ExportedStatusItemTest : testing::Test {
    void SetUp() override {
        panel.connect(program.baseService(), itemPath, itemInterface, {}, &signalSpy, SLOT(receive(QDBusMessage)));
    }

    PrivateBus bus;
    QDBusConnection program = bus.connect();
    QDBusConnection panel = bus.connect();
    SignalSpy signalSpy;
    ExportedStatusItem item{program, identifier, {[] {}, [](StatusMenuCommand) {}}};
};

} // namespace

TEST_F(ItemProtocolStatusItemTest, RegistersAnewWithEachWatcher) {
    item.setContent(content(QStringLiteral("1.00 kW")));
    item.setShown(true);
    EXPECT_TRUE(becomes(Availability::unavailable));
    for (int restart = 0; restart < 3; ++restart) {
        FakeItemWatcher watcher(bus);
        ASSERT_TRUE(isRegisteredWith(watcher)) << restart;
        EXPECT_EQ(item.availability(), Availability::available);
        settle();
        const QString service =
            QStringLiteral("org.kde.StatusNotifierItem-%1-").arg(QCoreApplication::applicationPid());
        EXPECT_EQ(watcher.registeredServices.size(), 1);
        EXPECT_TRUE(watcher.registeredServices.first().startsWith(service));
    }
    EXPECT_TRUE(becomes(Availability::unavailable));
}

TEST_F(ItemProtocolStatusItemTest, RegistersOnlyWhatIsToBeShown) {
    FakeItemWatcher watcher(bus);
    EXPECT_TRUE(becomes(Availability::available));
    settle();
    EXPECT_TRUE(watcher.registeredServices.empty());
    item.setShown(true);
    EXPECT_TRUE(isRegisteredWith(watcher));
}

TEST_F(ItemProtocolStatusItemTest, CountsAWatcherOnlyWithAPanelBehindIt) {
    FakeItemWatcher watcher(bus, Manner::withoutHost);
    EXPECT_TRUE(becomes(Availability::unavailable));
    watcher.bringHost();
    EXPECT_TRUE(becomes(Availability::available));
}

TEST_F(ItemProtocolStatusItemTest, IsNotAvailableWhereItWasRefused) {
    FakeItemWatcher refusing(bus, Manner::refusing);
    EXPECT_TRUE(becomes(Availability::available));
    int changes = 0;
    item.setAvailabilityHandler([&changes] { ++changes; });
    item.setShown(true);
    EXPECT_TRUE(becomes(Availability::unavailable));
    EXPECT_EQ(changes, 1);
}

TEST_F(ItemProtocolStatusItemTest, OpensTheMenuOnceWhenActivated) {
    item.setShown(true);
    FakeItemWatcher watcher(bus);
    ASSERT_TRUE(isRegisteredWith(watcher));
    QDBusMessage click = QDBusMessage::createMethodCall(watcher.registeredServices.first(), itemPath, itemInterface,
                                                        QStringLiteral("Activate"));
    click << 0 << 28;
    EXPECT_EQ(PrivateBus::ask(bus.connect(), click).type(), QDBusMessage::ReplyMessage);
    settle();
    EXPECT_EQ(menusOpened, 1);
}

TEST(ItemProtocolStatusItem, IsUnavailableAtOnceWithoutABus) {
    const QDBusConnection none(QStringLiteral("no such connection"));
    ItemProtocolStatusItem item(none, identifier, {[] {}, [](StatusMenuCommand) {}});
    EXPECT_EQ(item.availability(), Availability::unavailable);
    item.setContent(content(QStringLiteral("1.00 kW")));
    item.setShown(true);
}

TEST_F(ExportedStatusItemTest, HasTheProtocolsProperties) {
    item.setContent(content(QStringLiteral("3.42 kW")));
    item.setForm(TitleForm::square);
    const QVariantMap properties = propertiesOf(panel, program.baseService());
    EXPECT_EQ(properties.value(QStringLiteral("Id")), identifier);
    EXPECT_EQ(properties.value(QStringLiteral("Title")), QStringLiteral("3.42 kW"));
    EXPECT_EQ(properties.value(QStringLiteral("Category")), QStringLiteral("SystemServices"));
    EXPECT_EQ(properties.value(QStringLiteral("Status")), QStringLiteral("Active"));
    EXPECT_EQ(properties.value(QStringLiteral("ItemIsMenu")), QVariant(false));
    EXPECT_EQ(properties.value(QStringLiteral("Menu")).value<QDBusObjectPath>().path(), QStringLiteral("/MenuBar"));
    EXPECT_EQ(qdbus_cast<ItemToolTip>(properties.value(QStringLiteral("ToolTip"))).title,
              QStringLiteral("Current Output: 3.42 kW"));
    EXPECT_FALSE(qdbus_cast<QList<ItemPixmap>>(properties.value(QStringLiteral("IconPixmap"))).isEmpty());
}

TEST_F(ExportedStatusItemTest, HasALabelOnlyInTheFormOfALabel) {
    const QString label = QStringLiteral("XAyatanaLabel");
    item.setForm(TitleForm::square);
    EXPECT_FALSE(propertiesOf(panel, program.baseService()).contains(label));
    item.setForm(TitleForm::label);
    item.setContent(content(QStringLiteral("2.00 kW")));
    const QVariantMap properties = propertiesOf(panel, program.baseService());
    EXPECT_EQ(properties.value(label), QStringLiteral("2.00 kW"));
    EXPECT_EQ(properties.value(QStringLiteral("Title")), QStringLiteral("2.00 kW"));
    EXPECT_EQ(signalSpy.count(QStringLiteral("XAyatanaNewLabel")), 1);
    EXPECT_EQ(signalSpy.count(QStringLiteral("NewIcon")), 0);
    item.setForm(TitleForm::square);
    EXPECT_FALSE(propertiesOf(panel, program.baseService()).contains(label));
}

TEST_F(ExportedStatusItemTest, TellsOnlyWhatChanged) {
    item.setContent(content(QStringLiteral("1.00 kW")));
    item.setForm(TitleForm::square);
    StatusItemContent next = content(QStringLiteral("1.00 kW"));
    item.setContent(next);
    next.toolTip = QStringLiteral("another");
    item.setContent(next);
    next.title = QStringLiteral("1.00  kW"); // the picture is the same
    item.setContent(next);
    item.setContent(content(QStringLiteral("2.00 kW")));
    propertiesOf(panel, program.baseService()); // the signals come before this reply
    settle();
    EXPECT_EQ(signalSpy.count(QStringLiteral("NewToolTip")), 2);
    EXPECT_EQ(signalSpy.count(QStringLiteral("NewTitle")), 2);
    EXPECT_EQ(signalSpy.count(QStringLiteral("NewIcon")), 1);
}
