#pragma once

#include <QString>

namespace Varnel {

/// A transport failure: no usable HTTP reply arrived.
struct URLError {
    enum class Code {
        notConnectedToInternet,
        networkConnectionLost,
        cannotFindHost,
        cannotConnectToHost,
        dnsLookupFailed,
        timedOut,
        cancelled,
        secureConnectionFailed,
        dataTooLarge,
        badURL,
        unknown,
    };

    Code code = Code::unknown;
    QString description; ///< one sentence for a person; empty takes the code's own

    QString localizedDescription() const;

    bool operator==(const URLError&) const = default;
};

} // namespace Varnel
