#pragma once

#include <simulator/Reply.h>
#include <simulator/ServiceRequest.h>

#include <VarnelShared/RawValueEnum.h>

#include <chrono>
#include <optional>
#include <vector>

namespace Varnel::Simulator {

/// What goes wrong with a reply. The first group sends the right reply badly or not at all, the second another one.
enum class FaultKind {
    delay,
    drip,
    cut,
    close,
    silence,
    refuse,

    status,
    redirect,
    envelope,
    emptyList,
    emptyData,
    wrongShape,
    notJSON,
    html,
    tooDeep,
    tooLarge,
};

/// A disturbance of the requests that match it.
struct Fault {
    FaultKind kind = FaultKind::status;

    QString path = QStringLiteral("*"); ///< the path with its query as asked for; * stands for anything
    QString method;                     ///< empty matches each
    QString contentType;                ///< a piece of the Content-Type of the request; empty matches each
    std::optional<int> count;           ///< how many more requests are met; none: all
    QTime from;                         ///< where set, the fault holds each day from this time of the service's clock
    QTime to;                           ///< until this one, over midnight when it is the earlier one

    std::optional<int> status;          ///< of `status` (none: 500) and `redirect` (none: 302)
    QString retryAfter;                 ///< when not empty, the Retry-After of `status`: seconds or a date
    QString text;                       ///< the body of `status`, the place of `redirect`, the message of `envelope`
    QString code;                       ///< of `envelope`; empty reports hasError instead
    std::chrono::milliseconds delay{0}; ///< before the first byte, with every kind
    int bytesPerSecond = 50;            ///< of `drip`

    bool holdsAt(QTime timeOfDay) const;
    bool matches(const ServiceRequest& request) const;

    bool operator==(const Fault&) const = default;
};

/// The first fault that holds at this time of day and meets the request, counted down and, when used up, removed.
std::optional<Fault> takeFault(std::vector<Fault>& faults, const ServiceRequest& request, QTime timeOfDay);

/// Whether the right reply is needed at all.
bool keepsReply(FaultKind kind);

/// The reply as the fault leaves it; `reply` counts only where `keepsReply`.
Reply disturbed(const Fault& fault, Reply reply);

} // namespace Varnel::Simulator

namespace Varnel {

template <>
struct RawValueTable<Simulator::FaultKind> {
    static constexpr std::array cases = {
        RawValueCase{Simulator::FaultKind::delay, "delay", "the right reply, late"},
        RawValueCase{Simulator::FaultKind::drip, "drip", "the right reply, a few bytes at a time"},
        RawValueCase{Simulator::FaultKind::cut, "cut", "half of the right reply"},
        RawValueCase{Simulator::FaultKind::close, "close", "the connection is closed without a reply"},
        RawValueCase{Simulator::FaultKind::silence, "silence", "no reply, the connection stays open"},
        RawValueCase{Simulator::FaultKind::refuse, "refuse", "no connection is taken"},
        RawValueCase{Simulator::FaultKind::status, "status", "an HTTP status with a body"},
        RawValueCase{Simulator::FaultKind::redirect, "redirect", "an HTTP redirection"},
        RawValueCase{Simulator::FaultKind::envelope, "envelope", "a failure told in the reply"},
        RawValueCase{Simulator::FaultKind::emptyList, "empty-list", "success, no station"},
        RawValueCase{Simulator::FaultKind::emptyData, "empty-data", "success, no data"},
        RawValueCase{Simulator::FaultKind::wrongShape, "wrong-shape", "JSON of another shape"},
        RawValueCase{Simulator::FaultKind::notJSON, "not-json", "no JSON"},
        RawValueCase{Simulator::FaultKind::html, "html", "a page with status 200"},
        RawValueCase{Simulator::FaultKind::tooDeep, "too-deep", "100,000 nested arrays"},
        RawValueCase{Simulator::FaultKind::tooLarge, "too-large", "a reply of 9 MiB"},
    };
};

} // namespace Varnel
