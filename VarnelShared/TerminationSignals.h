#pragma once

#include <QObject>

#include <functional>

namespace Varnel {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread. One per process.
class TerminationSignals final : public QObject {
public:
    explicit TerminationSignals(std::function<void()> terminate);
    ~TerminationSignals() override;
};

} // namespace Varnel
