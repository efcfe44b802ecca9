#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"

#include <VarnelStatusMenu/Linux/SessionStatusItem.h>

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
            time);
        item->setTitle(QStringLiteral("1.00 kW"));
    }

    static QWidget* window() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->windowTitle() == QStringLiteral("1.00 kW")) {
                return widget;
            }
        }
        return nullptr;
    }
    static bool isWindowOpen() { return window() != nullptr; }

    HandTurnedTime time;
    StatusItemHandlers handlers;
    FakeBackEnd* protocol = nullptr;
    FakeBackEnd* legacy = nullptr;
    std::unique_ptr<SessionStatusItem> item;
};

} // namespace

TEST_F(SessionStatusItemTest, WaitsForTheBetterPanelToAnswer) {
    start(Availability::unknown, Availability::available);
    EXPECT_FALSE(legacy->isShown);
    protocol->become(Availability::available);
    EXPECT_TRUE(protocol->isShown);
    EXPECT_FALSE(legacy->isShown);
    time.advance(Seconds(60));
    EXPECT_FALSE(isWindowOpen());
}

TEST_F(SessionStatusItemTest, TakesTheLegacyTrayAtOnceAtTheStart) {
    start(Availability::unknown, Availability::available);
    protocol->become(Availability::unavailable);
    EXPECT_TRUE(legacy->isShown);
    protocol->become(Availability::available);
    EXPECT_TRUE(protocol->isShown);
    EXPECT_FALSE(legacy->isShown);
}

TEST_F(SessionStatusItemTest, LetsAStartingPanelSettle) {
    start(Availability::available, Availability::available);
    protocol->become(Availability::unavailable);
    EXPECT_FALSE(protocol->isShown);
    time.advance(Seconds(0.5));
    EXPECT_FALSE(legacy->isShown);
    protocol->become(Availability::available);
    time.advance(Seconds(5));
    EXPECT_TRUE(protocol->isShown);
    EXPECT_FALSE(legacy->isShown);
    protocol->become(Availability::unavailable);
    time.advance(Seconds(1.5));
    EXPECT_TRUE(legacy->isShown);
}

TEST_F(SessionStatusItemTest, OpensAWindowAfterTenSecondsWithoutAPanel) {
    start(Availability::unavailable, Availability::unavailable);
    time.advance(Seconds(9.5));
    EXPECT_FALSE(isWindowOpen());
    time.advance(Seconds(1));
    EXPECT_TRUE(isWindowOpen());
    protocol->become(Availability::available);
    EXPECT_TRUE(protocol->isShown);
    EXPECT_FALSE(isWindowOpen());

    protocol->become(Availability::unavailable);
    time.advance(Seconds(9.5));
    EXPECT_FALSE(isWindowOpen());
    time.advance(Seconds(1));
    EXPECT_TRUE(isWindowOpen());
}

TEST_F(SessionStatusItemTest, AWindowClosedByHandStaysInTheTaskbarUntilAPanelComes) {
    start(Availability::unavailable, Availability::unavailable);
    time.advance(Seconds(10));
    ASSERT_TRUE(isWindowOpen());
    window()->close();
    settle();
    ASSERT_TRUE(isWindowOpen());
    EXPECT_TRUE(window()->isMinimized());
    protocol->become(Availability::available);
    settle();
    EXPECT_FALSE(isWindowOpen());
}

TEST_F(SessionStatusItemTest, OpensNoWindowForAPanelThatRestarts) {
    start(Availability::available, Availability::unavailable);
    for (int restart = 0; restart < 5; ++restart) {
        protocol->become(Availability::unavailable);
        time.advance(Seconds(8));
        protocol->become(Availability::available);
        EXPECT_TRUE(protocol->isShown);
    }
    time.advance(Seconds(60));
    EXPECT_FALSE(isWindowOpen());
}

TEST_F(SessionStatusItemTest, LeavesAWindowOpenThatWasAskedFor) {
    start(Availability::unavailable, Availability::unavailable);
    item->showWindow();
    time.advance(Seconds(20));
    protocol->become(Availability::available);
    EXPECT_TRUE(isWindowOpen());
}

TEST_F(SessionStatusItemTest, KeepsTheContentForThePanelThatComes) {
    start(Availability::unavailable, Availability::unavailable);
    const StatusMenu menu = statusMenu(StatusPresentation::initial());
    item->setToolTip(QStringLiteral("tip"));
    item->setMenu(menu);
    legacy->become(Availability::available);
    time.advance(Seconds(2));
    ASSERT_TRUE(legacy->isShown);
    const StatusItemContent expected{QStringLiteral("1.00 kW"), QStringLiteral("tip"), exportedMenu(menu)};
    EXPECT_EQ(legacy->content, expected);
    EXPECT_EQ(protocol->content, expected);
}

TEST_F(SessionStatusItemTest, HandsEachChoiceToTheHandlerOfTheMoment) {
    start(Availability::available, Availability::unavailable);
    handlers.choose(StatusMenuCommand::refresh); // nobody to tell yet
    std::vector<StatusMenuCommand> chosen;
    item->setCommandHandler([&chosen](StatusMenuCommand command) { chosen.push_back(command); });
    handlers.choose(StatusMenuCommand::signOut);
    EXPECT_EQ(chosen, std::vector{StatusMenuCommand::signOut});
}
