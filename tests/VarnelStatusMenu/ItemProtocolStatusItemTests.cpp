#include <VarnelStatusMenu/Linux/ItemProtocolStatusItem.h>

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"
#include "../Support/PrivateBus.h"

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
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems MEMBER listed)

public:
    explicit FakeItemWatcher(PrivateBus& bus, bool withHost = true)
        : hasHost(withHost)
        , m_bus(bus) {
        come();
    }
    ~FakeItemWatcher() override { m_bus.disconnect(m_connection); }

    bool waitForItem() {
        return waitUntil([this] { return !registered.empty(); });
    }

    bool hasHost;
    bool isRefusing = false;
    bool isListing = true; ///< whether what registers from now on is kept
    QStringList registered;
    QStringList listed;

    /// Is the watcher no longer, and again, all the while as the same process.
    void leave() {
        m_connection.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        setAnswering(false);
        registered.clear();
    }
    void come() {
        setAnswering(true);
        m_connection.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }

    void setAnswering(bool isAnswering) {
        if (isAnswering) {
            m_connection.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                        QDBusConnection::ExportAllContents);
        } else {
            m_connection.unregisterObject(QStringLiteral("/StatusNotifierWatcher"));
        }
    }

    /// Lets the item go that another program would have on the connection with this name.
    void letGo(const QString& service) {
        Q_EMIT StatusNotifierItemUnregistered(service + QStringLiteral("/StatusNotifierItem"));
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) {
        if (isRefusing) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("no items here"));
        } else {
            registered << service;
            listed = isListing ? QStringList(service + QStringLiteral("/StatusNotifierItem")) : QStringList();
        }
    }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierItemUnregistered(const QString& service);

private:
    PrivateBus& m_bus;
    QDBusConnection m_connection = m_bus.connect();
};

struct ItemProtocolStatusItemTest : testing::Test {
    /// Waits until every message that is under way has been read and answered, in both directions.
    void exchange() {
        for (int turn = 0; turn < 3; ++turn) {
            PrivateBus::ask(program, {QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("/"), {}},
                            "none");
            settle();
        }
    }

    QString play(FakeItemWatcher& watcher, const QString& script) {
        exchange();
        for (const QString& step : script.split(QLatin1Char(' '))) {
            if (step == QStringLiteral("drop")) {
                watcher.letGo(program.baseService());
            } else if (step == QStringLiteral("other")) {
                watcher.letGo(program.baseService() + QLatin1Char('0'));
            } else if (step == QStringLiteral("busy") || step == QStringLiteral("ready")) {
                watcher.setAnswering(step == QStringLiteral("ready"));
            } else if (step == QStringLiteral("3s")) {
                time.advance(Seconds(3));
            } else {
                watcher.isListing = step == QStringLiteral("+");
            }
            exchange();
        }
        const QString mark = item.availability() == Availability::unavailable ? QStringLiteral("!") : QString();
        return QString::number(watcher.registered.size()) + mark;
    }

    bool becomes(Availability availability) {
        return waitUntil([this, availability] { return item.availability() == availability; });
    }

    PrivateBus bus;
    HandTurnedTime time;
    int menusOpened = 0;
    std::optional<QPoint> clickedAt;
    QDBusConnection program = bus.connect();
    ItemProtocolStatusItem item{program,
                                QStringLiteral("com.varnel.menubar"),
                                time,
                                {[this](std::optional<QPoint> at) {
                                     ++menusOpened;
                                     clickedAt = at;
                                 },
                                 [](StatusMenuCommand) {}, [] {}}};
};

} // namespace

TEST_F(ItemProtocolStatusItemTest, RegistersOnceWithEachWatcherAndOpensTheMenuOnceWhenActivated) {
    item.setShown(true);
    EXPECT_TRUE(becomes(Availability::unavailable));
    for (int restart = 1; restart <= 3; ++restart) {
        FakeItemWatcher watcher(bus);
        ASSERT_TRUE(watcher.waitForItem()) << restart;
        EXPECT_EQ(item.availability(), Availability::available);
        const BusObject shown{watcher.registered.first(), QStringLiteral("/StatusNotifierItem"),
                              QStringLiteral("org.kde.StatusNotifierItem")};
        EXPECT_EQ(shown.service, program.baseService()) << "a well-known name is lost by some panels";
        EXPECT_EQ(PrivateBus::ask(bus.connect(), shown, "Activate", {0, 28}).type(), QDBusMessage::ReplyMessage);
        settle();
        EXPECT_EQ(menusOpened, restart);
        EXPECT_EQ(clickedAt, QPoint(0, 28));
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

TEST_F(ItemProtocolStatusItemTest, ComesBackWithTheSameWatcherEachTimeTheScreenWasLocked) {
    FakeItemWatcher watcher(bus);
    item.setShown(true);
    for (int lock = 1; lock <= 3; ++lock) {
        ASSERT_TRUE(watcher.waitForItem()) << lock;
        exchange();
        watcher.letGo(program.baseService()); // the item registers again, and nobody is there any more
        watcher.leave();
        EXPECT_TRUE(becomes(Availability::unavailable)) << lock;
        exchange();
        watcher.come();
        EXPECT_TRUE(becomes(Availability::available)) << lock;
    }
    EXPECT_TRUE(watcher.waitForItem());
    EXPECT_EQ(play(watcher, QStringLiteral("3s 3s")).toStdString(), "1");
}

TEST_F(ItemProtocolStatusItemTest, RegistersOnceMoreWithAPanelThatDoesNotKeepItAndThenGivesUp) {
    item.setShown(true);
    // "drop" the watcher lets the item go, "other" another's whose name begins like ours; "+" and "-" it lists what
    // registers or not; "busy" and "ready" it answers or not; "3s" that time passes. Expected: how often the item was
    // registered, and "!" when it is given up.
    const std::pair<const char*, const char*> rows[] = {
        // clang-format off
        {"3s 3s", "1"},
        {"other 3s", "1"},
        {"drop 3s", "2"},
        {"drop drop", "2!"},
        {"drop 3s drop 3s", "3"},
        {"drop busy 3s ready 3s drop 3s", "3"},
        {"- drop 3s", "2!"},
        {"drop drop drop 3s", "2!"},
        // clang-format on
    };
    for (const auto& [script, expected] : rows) {
        FakeItemWatcher watcher(bus);
        ASSERT_TRUE(watcher.waitForItem()) << script;
        QString outcome = play(watcher, QString::fromLatin1(script));
        EXPECT_EQ(outcome.toStdString(), expected) << script;
    }
}

TEST_F(ItemProtocolStatusItemTest, GivesUpAPanelThatNeverListsIt) {
    item.setShown(true);
    FakeItemWatcher watcher(bus);
    watcher.isListing = false;
    ASSERT_TRUE(watcher.waitForItem());
    EXPECT_EQ(play(watcher, QStringLiteral("3s")).toStdString(), "2");
    EXPECT_EQ(play(watcher, QStringLiteral("3s")).toStdString(), "2!");
}

TEST_F(ItemProtocolStatusItemTest, IsUnavailableOnceTheBusHasDied) {
    FakeItemWatcher watcher(bus);
    item.setShown(true);
    ASSERT_TRUE(watcher.waitForItem());
    int changes = 0;
    item.setAvailabilityHandler([&changes] { ++changes; });
    bus.end();
    EXPECT_TRUE(becomes(Availability::unavailable));
    EXPECT_GE(changes, 1);
}

TEST(ItemProtocolStatusItem, IsUnavailableAtOnceWithoutABus) {
    const QDBusConnection none(QStringLiteral("no such connection"));
    HandTurnedTime time;
    ItemProtocolStatusItem item(none, QStringLiteral("com.varnel.menubar"), time, {});
    EXPECT_EQ(item.availability(), Availability::unavailable);
    item.setContent({});
    item.setShown(true);
}

#include "ItemProtocolStatusItemTests.moc"
