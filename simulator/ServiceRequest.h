#pragma once

#include <QByteArray>
#include <QDateTime>

#include <utility>
#include <vector>

namespace Varnel::Simulator {

/// One request as it arrived.
struct ServiceRequest {
    QByteArray method;
    QByteArray target;                                      ///< path and query, still percent-encoded
    std::vector<std::pair<QByteArray, QByteArray>> headers; ///< in the order and spelling of the sender
    QByteArray body;
    QDateTime received;
    int inFlight = 0; ///< requests without a complete reply when this one arrived, itself included

    QByteArray path() const; ///< the target without its query

    /// The value of the first header with this name in any case; empty when there is none.
    QByteArray header(const QByteArray& name) const;
};

} // namespace Varnel::Simulator
