#pragma once

#include <simulator/ServiceRequest.h>

#include <VarnelShared/Result.h>

#include <QFile>

#include <memory>
#include <vector>

namespace Varnel::Simulator {

/// Keeps what was asked, in order, in memory and where wished as JSON lines in a file. Passwords and tokens stand in
/// it as they came: it is meant for made-up accounts alone.
class RequestLog {
public:
    /// Appends from now on to a file that only its owner can read. Fails with the reason when it cannot be written.
    Result<void> writeTo(const QString& path);

    /// Notes the arrival. The request is in flight until the last copy of the returned token is gone; tokens may
    /// outlive the log.
    std::shared_ptr<void> noteArrival(ServiceRequest request);

    const std::vector<ServiceRequest>& requests() const { return m_requests; }

    /// The largest number of requests that were in flight at once since the last `clear`.
    int maximumInFlight() const { return m_maximumInFlight; }

    /// Every request as one line of JSON: time, method, target, headers, body, inFlight.
    QByteArray jsonLines() const;

    /// Forgets what was asked; the file stays as it is.
    void clear();

private:
    std::vector<ServiceRequest> m_requests;
    std::shared_ptr<int> m_inFlight = std::make_shared<int>(0);
    int m_maximumInFlight = 0;
    std::unique_ptr<QFile> m_file;
};

} // namespace Varnel::Simulator
