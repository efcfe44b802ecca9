#include <simulator/TerminationSignals.h>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace Varnel::Simulator {

namespace {
sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}
} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal) {
    // Blocked here, before any thread is started, the signals arrive through the descriptor alone.
    const sigset_t signals = watchedSignals();
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    const int descriptor = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    m_notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [descriptor, handler = std::move(onSignal)] {
        signalfd_siginfo received{};
        if (read(descriptor, &received, sizeof received) == sizeof received) {
            handler();
        }
    });
}

TerminationSignals::~TerminationSignals() {
    const int descriptor = static_cast<int>(m_notifier->socket());
    m_notifier.reset();
    close(descriptor);
    const sigset_t signals = watchedSignals();
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
}

} // namespace Varnel::Simulator
