#include <VarnelPolling/PowerPollingService.h>

#include <VarnelShared/Logging.h>
#include <VarnelShared/Task.h>
#include <VarnelShared/URLError.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace Varnel {

namespace {
/// Also the delay of the first poll after a start.
constexpr Seconds shortestDelay(0.1);
/// The back-off stops growing at a factor of two to this power.
constexpr int lastDoubling = 4;
} // namespace

PowerPollingService::PowerPollingService(Seconds pollInterval, FetchHandler fetchHandler, UpdateHandler updateHandler,
                                         TimerFactory& timers)
    : m_pollInterval(pollInterval)
    , m_fetchHandler(std::move(fetchHandler))
    , m_updateHandler(std::move(updateHandler))
    , m_timers(timers) {}

void PowerPollingService::start() {
    if (m_running) {
        return;
    }
    m_running = true;
    scheduleNextPoll(shortestDelay);
}

void PowerPollingService::stop() {
    m_running = false;
    m_timer.reset();
    m_isPolling = false;
    m_isRepeatWanted = false;
    m_consecutiveFailures = 0;
}

void PowerPollingService::refreshNow() {
    if (m_running) {
        queuePoll(weak_from_this());
    }
}

void PowerPollingService::repeatIfFailing() {
    m_isRepeatWanted = m_isPolling;
    if (!m_isPolling && m_consecutiveFailures > 0) {
        refreshNow();
    }
}

void PowerPollingService::scheduleNextPoll(Seconds delay) {
    if (m_running) {
        m_timer =
            m_timers.schedule(std::max(delay, shortestDelay), [service = weak_from_this()] { queuePoll(service); });
    }
}

void PowerPollingService::queuePoll(std::weak_ptr<PowerPollingService> service) {
    startTask("power poll",
              ifAlive(std::move(service), [](PowerPollingService& self) { return pollOnce(self.shared_from_this()); }));
}

QCoro::Task<void> PowerPollingService::pollOnce(std::shared_ptr<PowerPollingService> self) {
    if (!self->m_running || self->m_isPolling) {
        co_return;
    }
    self->m_isPolling = true;
    const Result<PowerReading> result = co_await fetch(self);
    self->m_consecutiveFailures = result ? 0 : self->m_consecutiveFailures + 1;
    self->m_leastDelay = Seconds(0);
    self->update(result);
    const bool isRepeated = std::exchange(self->m_isRepeatWanted, false) && !result && self->m_leastDelay == Seconds(0);
    self->scheduleNextPoll(
        isRepeated ? shortestDelay
                   : delayAfterFailures(self->m_pollInterval, self->m_consecutiveFailures, self->m_leastDelay));
    self->m_isPolling = false;
}

QCoro::Task<Result<PowerReading>> PowerPollingService::fetch(std::shared_ptr<PowerPollingService> self) {
    try {
        QCoro::Task<Result<PowerReading>> fetching = self->m_fetchHandler();
        co_return co_await std::move(fetching);
    } catch (const std::exception& escaped) {
        co_return failure(URLError{URLError::Code::unknown, QString::fromUtf8(escaped.what())});
    }
}

void PowerPollingService::update(const Result<PowerReading>& result) {
    try {
        m_updateHandler(result);
    } catch (const std::exception& escaped) {
        qCCritical(lcApp, "The handling of a poll ended with an exception: %s", escaped.what());
    }
}

void PowerPollingService::waitAtLeast(Seconds delay) {
    m_leastDelay = delay;
}

Seconds PowerPollingService::delayAfterFailures(Seconds pollInterval, int consecutiveFailures, Seconds leastDelay) {
    const Seconds longest = pollInterval * (1 << lastDoubling);
    return std::max(pollInterval * (1 << std::min(consecutiveFailures, lastDoubling)), std::min(leastDelay, longest));
}

} // namespace Varnel
