#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"
#include "../Support/PrivateBus.h"

#include <VarnelStatusMenu/Linux/ScreenLock.h>
#include <VarnelStatusMenu/Linux/SessionStatusItem.h>
#include <VarnelStatusMenu/Window/OutputWindow.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>

#include <utility>

using namespace Varnel;
using namespace Varnel::Testing;
using Availability = StatusItemBackEnd::Availability;

namespace {

/// A kind of panel that comes and goes as the test says.
class FakeBackEnd final : public StatusItemBackEnd {
public:
    explicit FakeBackEnd(Availability availability)
        : m_availability(availability) {}

    Availability availability() const override { return m_availability; }
    void setAvailabilityHandler(std::function<void()> changed) override { m_changed = std::move(changed); }
    void setContent(const StatusItemContent& given) override { content = given; }
    void setShown(bool shown) override { isShown = shown; }

    void become(Availability availability) {
        m_availability = availability;
        m_changed();
    }

    StatusItemContent content;
    bool isShown = false;

private:
    Availability m_availability;
    std::function<void()> m_changed;
};

/// GNOME's service that tells of the lock.
class FakeScreenSaver final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.ScreenSaver")

public:
    bool isActive = false;

public Q_SLOTS:
    bool GetActive() const { return isActive; }
};

struct SessionStatusItemTest : testing::Test {
    void start(Availability ofProtocol, Availability ofLegacy) {
        item = std::make_unique<SessionStatusItem>(
            [&](const StatusItemHandlers& given) {
                handlers = given;
                SessionStatusItem::BackEnds backEnds;
                backEnds.push_back(std::make_unique<FakeBackEnd>(ofProtocol));
                backEnds.push_back(std::make_unique<FakeBackEnd>(ofLegacy));
                protocol = static_cast<FakeBackEnd*>(backEnds[0].get());
                legacy = static_cast<FakeBackEnd*>(backEnds[1].get());
                return backEnds;
            },
            [this](const auto& handle) { handle(isLocked); }, time);
        item->show({QStringLiteral("1.00 kW"), {}, {}, {}});
    }

    static OutputWindow* window() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->windowTitle() == QStringLiteral("1.00 kW")) {
                return qobject_cast<OutputWindow*>(widget);
            }
        }
        return nullptr;
    }

    /// In brackets where the item is shown: p in the panel of the protocol, l in the legacy tray, w in a window; W in
    /// one that has to stay in reach.
    QString whereShown() const {
        const bool isToStay = window() && window()->standsForItem();
        return u'[' + QStringLiteral("p").repeated(protocol->isShown) + QStringLiteral("l").repeated(legacy->isShown) +
               QString(isToStay ? u'W' : u'w').repeated(window() != nullptr) + u']';
    }

    /// "p+" the panel of the protocol comes, "l-" the legacy tray goes, "show" the window is asked for, "lock" and
    /// "unlock" the screen is, a number of seconds passes; brackets are what `whereShown` must give then.
    void play(const QString& script) {
        for (const QString& step : script.split(u' ')) {
            if (step.startsWith(u'[')) {
                EXPECT_EQ(whereShown(), step);
            } else if (step == QLatin1String("show")) {
                item->showWindow();
            } else if (step.endsWith(QLatin1String("lock"))) {
                isLocked = step == QLatin1String("lock");
            } else if (step.endsWith(u'+') || step.endsWith(u'-')) {
                FakeBackEnd* changing = step.startsWith(u'p') ? protocol : legacy;
                changing->become(step.endsWith(u'+') ? Availability::available : Availability::unavailable);
            } else {
                time.advance(Seconds(step.toDouble()));
            }
        }
    }

    HandTurnedTime time;
    StatusItemHandlers handlers;
    FakeBackEnd* protocol = nullptr;
    FakeBackEnd* legacy = nullptr;
    bool isLocked = false;
    std::unique_ptr<SessionStatusItem> item;
};

} // namespace

TEST_F(SessionStatusItemTest, IsShownInTheBestPanelThatIsThereElseInAWindow) {
    const struct {
        const char* name;
        Availability ofProtocol;
        Availability ofLegacy;
        const char* script;
    } rows[] = {
        {"waits for the better panel", Availability::unknown, Availability::available, "[] p+ [p] 60 [p]"},
        {"legacy tray at once at the start", Availability::unknown, Availability::available, "p- [l] p+ [p]"},
        {"lets a starting panel settle", Availability::available, Availability::available,
         "[p] p- [] 0.5 [] p+ 5 [p] p- 1.5 [l]"},
        {"window after ten seconds", Availability::unavailable, Availability::unavailable,
         "9.5 [] 1 [W] p+ [p] p- 9.5 [] 1 [W] l+ 2 [l]"},
        {"no window while panels restart", Availability::available, Availability::unavailable,
         "p- 8 p+ [p] p- 8 p+ [p] p- 8 p+ 60 [p]"},
        {"window that was asked for", Availability::unavailable, Availability::unavailable,
         "show 20 [W] p+ [pw] p- [W]"},
        {"no window behind a locked screen", Availability::available, Availability::unavailable,
         "lock p- 600 [] unlock p+ [p] 600 [p] lock p- 600 [] unlock 61 [W]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        start(row.ofProtocol, row.ofLegacy);
        play(QString::fromLatin1(row.script));
    }
}

TEST_F(SessionStatusItemTest, AWindowClosedByHandStaysInTheTaskbarUntilAPanelComes) {
    start(Availability::unavailable, Availability::unavailable);
    play(QStringLiteral("10 [W]"));
    window()->close();
    settle();
    ASSERT_TRUE(window());
    EXPECT_TRUE(window()->isMinimized());
    protocol->become(Availability::available);
    settle();
    EXPECT_FALSE(window());
}

TEST_F(SessionStatusItemTest, EveryPanelHasTheContentAndTheHandlerOfTheMoment) {
    start(Availability::available, Availability::unavailable);
    const StatusItemContent content{
        QStringLiteral("1.00 kW"), QStringLiteral("tip"), statusMenu(StatusPresentation::initial()), {}};
    item->show(content);
    EXPECT_EQ(legacy->content, content);
    EXPECT_EQ(protocol->content, content);
    handlers.choose(StatusMenuCommand::refresh); // nobody to tell yet
    std::vector<StatusMenuCommand> chosen;
    item->setCommandHandler([&chosen](StatusMenuCommand command) { chosen.push_back(command); });
    handlers.choose(StatusMenuCommand::signOut);
    EXPECT_EQ(chosen, std::vector{StatusMenuCommand::signOut});
}

TEST(ScreenLock, IsWhatGnomeTellsAndOpenWhereNobodyDoes) {
    PrivateBus bus;
    ScreenLock lock(bus.connect());
    const auto isLocked = [&lock] {
        std::optional<bool> answer;
        lock.ask([&answer](bool given) { answer = given; });
        EXPECT_FALSE(answer) << "the answer comes later";
        EXPECT_TRUE(waitUntil([&answer] { return answer.has_value(); }));
        return answer.value_or(false);
    };
    EXPECT_FALSE(isLocked());
    FakeScreenSaver screenSaver;
    QDBusConnection shell = bus.connect();
    shell.registerObject(QStringLiteral("/org/gnome/ScreenSaver"), &screenSaver, QDBusConnection::ExportAllSlots);
    shell.registerService(QStringLiteral("org.gnome.ScreenSaver"));
    EXPECT_FALSE(isLocked());
    screenSaver.isActive = true;
    EXPECT_TRUE(isLocked());
    {
        ScreenLock gone(bus.connect());
        gone.ask([](bool) { ADD_FAILURE() << "answered after its end"; });
    }
    settle();
}

#include "SessionStatusItemTests.moc"
