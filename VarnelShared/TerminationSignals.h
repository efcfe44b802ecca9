#pragma once

#include <QObject>

#include <functional>

namespace Varnel {

/// Turns the first SIGTERM, SIGINT or SIGHUP into one call on the main thread. One per process; the signals have their
/// usual effect again when it is gone.
class TerminationSignals final : public QObject {
public:
    explicit TerminationSignals(std::function<void()> terminate);
    ~TerminationSignals() override;
};

} // namespace Varnel
