#pragma once

#include <VarnelNotifications/NotificationCenter.h>
#include <VarnelShared/URLError.h>

#include <QCoroTimer>

#include <chrono>
#include <vector>

namespace Varnel::Testing {

/// Answers from the event loop, as a real centre does, and records what it was asked; every request fails.
class FakeNotificationCenter final : public NotificationCenter {
public:
    QCoro::Task<NotificationAuthorizationStatus> authorizationStatus() override {
        co_await QCoro::sleepFor(std::chrono::milliseconds(0));
        co_return status;
    }
    QCoro::Task<Result<bool>> requestAuthorization(NotificationAuthorizationOptions options) override {
        asked.push_back(options);
        co_await QCoro::sleepFor(std::chrono::milliseconds(0));
        status = statusAfterRequest;
        co_return failure(URLError{});
    }
    QCoro::Task<Result<void>> add(NotificationRequest request) override {
        added.push_back(std::move(request));
        co_return failure(URLError{});
    }
    void setActivationHandler(std::function<void()>) override {}

    NotificationAuthorizationStatus status = NotificationAuthorizationStatus::authorized;
    NotificationAuthorizationStatus statusAfterRequest = NotificationAuthorizationStatus::authorized;
    std::vector<NotificationAuthorizationOptions> asked;
    std::vector<NotificationRequest> added;
};

} // namespace Varnel::Testing
