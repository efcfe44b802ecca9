#include <VarnelShared/TerminationSignals.h>

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace Varnel {

namespace {
constexpr int handledSignals[] = {SIGTERM, SIGINT, SIGHUP};

// A signal handler may do little more than write: the pair carries the news to the event loop.
int signalSockets[2] = {-1, -1};

void onSignal(int /*number*/) {
    const int interrupted = errno; // whatever was interrupted may be about to read it
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalSockets[0], &byte, sizeof byte);
    errno = interrupted;
}

void install(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : handledSignals) {
        sigaction(number, &action, nullptr);
    }
}
} // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalSockets) != 0) {
        return; // without the pair the signals keep their default action: the process ends, unsaved
    }
    auto* notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [notifier, terminate = std::move(terminate)] {
        notifier->setEnabled(false);
        terminate();
    });
    install(onSignal);
}

TerminationSignals::~TerminationSignals() {
    install(SIG_DFL);
    for (int& socket : signalSockets) {
        if (socket >= 0) {
            ::close(socket);
            socket = -1;
        }
    }
}

} // namespace Varnel
