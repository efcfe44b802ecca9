#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace Varnel::Simulator {

/// Brings SIGTERM and SIGINT into the event loop. One object per process; the signals have their usual effect again
/// when it is gone.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> onSignal);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace Varnel::Simulator
