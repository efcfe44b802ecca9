#include <VarnelStatusMenu/Linux/ItemProtocolStatusItem.h>

#include "../Support/EventLoop.h"
#include "../Support/PrivateBus.h"

#include <QCoreApplication>
#include <QDBusContext>

#include <gtest/gtest.h>

using namespace Varnel;
using namespace Varnel::Testing;
using Availability = StatusItemBackEnd::Availability;

namespace {

/// A panel's org.kde.StatusNotifierWatcher on a bus, from its construction to its destruction.
class FakeItemWatcher final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hasHost)

public:
    explicit FakeItemWatcher(PrivateBus& bus, bool withHost = true)
        : hasHost(withHost)
        , m_bus(bus) {
        m_connection.registerObject(QStringLiteral("/StatusNotifierWatcher"), this, QDBusConnection::ExportAllContents);
        m_connection.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }
    ~FakeItemWatcher() override { m_bus.disconnect(m_connection); }

    bool waitForItem() {
        return waitUntil([this] { return !registered.empty(); });
    }

    bool hasHost;
    bool isRefusing = false;
    QStringList registered;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) {
        if (isRefusing) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("no items here"));
        } else {
            registered << service;
        }
    }

Q_SIGNALS:
    void StatusNotifierHostRegistered();

private:
    PrivateBus& m_bus;
    QDBusConnection m_connection = m_bus.connect();
};

struct ItemProtocolStatusItemTest : testing::Test {
    bool becomes(Availability availability) {
        return waitUntil([this, availability] { return item.availability() == availability; });
    }

    PrivateBus bus;
    int menusOpened = 0;
    ItemProtocolStatusItem item{
        bus.connect(), QStringLiteral("com.varnel.menubar"), {[this] { ++menusOpened; }, [](StatusMenuCommand) {}}};
};

} // namespace

TEST_F(ItemProtocolStatusItemTest, RegistersOnceWithEachWatcherAndOpensTheMenuOnceWhenActivated) {
    item.setShown(true);
    EXPECT_TRUE(becomes(Availability::unavailable));
    const QString name = QStringLiteral("org.kde.StatusNotifierItem-%1-").arg(QCoreApplication::applicationPid());
    for (int restart = 1; restart <= 3; ++restart) {
        FakeItemWatcher watcher(bus);
        ASSERT_TRUE(watcher.waitForItem()) << restart;
        EXPECT_EQ(item.availability(), Availability::available);
        const BusObject shown{watcher.registered.first(), QStringLiteral("/StatusNotifierItem"),
                              QStringLiteral("org.kde.StatusNotifierItem")};
        EXPECT_TRUE(shown.service.startsWith(name));
        EXPECT_EQ(PrivateBus::ask(bus.connect(), shown, "Activate", {0, 28}).type(), QDBusMessage::ReplyMessage);
        settle();
        EXPECT_EQ(menusOpened, restart);
        EXPECT_EQ(watcher.registered.size(), 1);
    }
    EXPECT_TRUE(becomes(Availability::unavailable));
}

TEST_F(ItemProtocolStatusItemTest, RegistersOnlyWhatIsToBeShownWhereThereIsAPanel) {
    FakeItemWatcher watcher(bus, false);
    EXPECT_TRUE(becomes(Availability::unavailable));
    watcher.hasHost = true;
    Q_EMIT watcher.StatusNotifierHostRegistered();
    EXPECT_TRUE(becomes(Availability::available));
    settle();
    EXPECT_TRUE(watcher.registered.empty());
    item.setShown(true);
    EXPECT_TRUE(watcher.waitForItem());
}

TEST_F(ItemProtocolStatusItemTest, IsNotAvailableWhereItWasRefused) {
    FakeItemWatcher watcher(bus);
    watcher.isRefusing = true;
    EXPECT_TRUE(becomes(Availability::available));
    int changes = 0;
    item.setAvailabilityHandler([&changes] { ++changes; });
    item.setShown(true);
    EXPECT_TRUE(becomes(Availability::unavailable));
    EXPECT_EQ(changes, 1);
}

TEST(ItemProtocolStatusItem, IsUnavailableAtOnceWithoutABus) {
    const QDBusConnection none(QStringLiteral("no such connection"));
    ItemProtocolStatusItem item(none, QStringLiteral("com.varnel.menubar"), {});
    EXPECT_EQ(item.availability(), Availability::unavailable);
    item.setContent({});
    item.setShown(true);
}

#include "ItemProtocolStatusItemTests.moc"
