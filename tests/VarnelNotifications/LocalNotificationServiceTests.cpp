#include <VarnelNotifications/LocalNotificationService.h>

#include "../Support/EventLoop.h"
#include "FakeNotificationCenter.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

namespace Varnel {
namespace {

using Event = ProductionNotificationEvent;
using State = NotificationAuthorizationState;
using Status = NotificationAuthorizationStatus;
using Testing::await;
using Testing::FakeNotificationCenter;

struct LocalNotificationServiceTest : testing::Test {
    std::shared_ptr<FakeNotificationCenter> center = std::make_shared<FakeNotificationCenter>();
};

TEST_F(LocalNotificationServiceTest, EachEventHasItsTextAndEachDeliveryItsIdentifier) {
    const struct {
        Event event;
        double kilowatts;
        const char* word;
        const char* text;
    } rows[] = {
        {Event::productionStarted, 1234.5, "started", "Production Started: Current output is 1.234,50 kW."},
        {Event::productionStarted, 0.5, "started", "Production Started: Current output is 0,50 kW."},
        {Event::productionEnded, 5.0, "ended",
         "Production Ended: Current output stayed below 0 W for 2 consecutive checks."},
        {Event::productionRiseAboveOneKilowatt, 1.004, "rise",
         "Production Above 1.00 kW: Current output reached 1,00 kW."},
    };
    LocalNotificationService service(center, {}, QLocale(QLocale::German));
    QSet<QString> identifiers;
    for (const auto& row : rows) {
        await(service.deliver(row.event, row.kilowatts));
        ASSERT_FALSE(center->added.empty()) << row.text;
        const NotificationRequest request = center->added.back();
        EXPECT_EQ(request.title.toStdString() + ": " + request.body.toStdString(), row.text);
        const QRegularExpression form(
            QStringLiteral("^varnel\\.%1\\.[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$").arg(QLatin1String(row.word)));
        EXPECT_TRUE(form.match(request.identifier).hasMatch()) << qPrintable(request.identifier);
        identifiers.insert(request.identifier);
    }
    EXPECT_EQ(identifiers.size(), std::size(rows));
}

TEST_F(LocalNotificationServiceTest, TheStateDecidesWhetherToAskAndToShow) {
    const struct {
        const char* name;
        Status status;
        Status afterRequest;
        State before;
        bool asks;
        State after;
    } rows[] = {
        {"undecided, then granted", Status::notDetermined, Status::authorized, State::notDetermined, true,
         State::authorized},
        {"undecided, then refused", Status::notDetermined, Status::denied, State::notDetermined, true, State::denied},
        {"undecided, no answer", Status::notDetermined, Status::notDetermined, State::notDetermined, true,
         State::notDetermined},
        {"denied", Status::denied, Status::authorized, State::denied, false, State::denied},
        {"authorized", Status::authorized, Status::denied, State::authorized, false, State::authorized},
        {"provisional", Status::provisional, Status::denied, State::authorized, false, State::authorized},
        {"ephemeral", Status::ephemeral, Status::denied, State::authorized, false, State::authorized},
        {"of a later platform", static_cast<Status>(99), Status::authorized, State::denied, false, State::denied},
    };
    for (const auto& row : rows) {
        center = std::make_shared<FakeNotificationCenter>();
        center->status = row.status;
        center->statusAfterRequest = row.afterRequest;
        LocalNotificationService service(center);
        EXPECT_EQ(await(service.authorizationStatus()), row.before) << row.name;
        await(service.deliver(Event::productionStarted, 1));
        EXPECT_EQ(center->added.size(), row.before == State::authorized ? 1 : 0) << row.name;
        EXPECT_EQ(await(service.requestAuthorizationIfNeeded()), row.after) << row.name;
        ASSERT_EQ(center->asked.size(), row.asks ? 1 : 0) << row.name;
        if (row.asks) {
            EXPECT_EQ(center->asked.front().toInt(), 7);
        }
    }
}

TEST_F(LocalNotificationServiceTest, LooksForACentreOnceAndOnlyWhenItIsNeeded) {
    int lookups = 0;
    LocalNotificationService::Center found;
    const auto lookup = [&] {
        ++lookups;
        return found;
    };
    LocalNotificationService unbundled(nullptr, lookup);
    EXPECT_EQ(lookups, 0);
    await(unbundled.deliver(Event::productionStarted, 1));
    found = center;
    EXPECT_EQ(await(unbundled.authorizationStatus()), State::notDetermined);
    EXPECT_EQ(await(unbundled.requestAuthorizationIfNeeded()), State::notDetermined);
    EXPECT_EQ(lookups, 1);
    LocalNotificationService bundled(nullptr, lookup);
    await(bundled.deliver(Event::productionStarted, 1));
    await(bundled.deliver(Event::productionStarted, 1));
    EXPECT_EQ(lookups, 2);
    await(LocalNotificationService(center, lookup).deliver(Event::productionStarted, 1));
    EXPECT_EQ(center->added.size(), 3);
    EXPECT_EQ(lookups, 2);
}

TEST_F(LocalNotificationServiceTest, MayGoWhileItDelivers) {
    auto service = std::make_unique<LocalNotificationService>(center);
    auto delivery = service->deliver(Event::productionEnded, -1);
    service.reset();
    await(std::move(delivery));
    EXPECT_EQ(center->added.size(), 1);
}

} // namespace
} // namespace Varnel
