#pragma once

#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSRequest.h>
#include <VarnelShared/Timestamp.h>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace Varnel {

/// How far a list of requests is tried, beyond "each in order until one succeeds".
struct AttemptRules {
    /// Judges a reply that came; its error makes the attempt a failed one. None accepts every reply.
    std::function<Result<void>(const JSON& reply)> accept = nullptr;

    bool endAtTransportFailure = false; ///< without a connection the next path is not tried either

    /// No attempt starts later than this after the first, and the last one's own deadline is shortened to it.
    std::optional<std::chrono::seconds> timeLimit = std::nullopt;
};

/// What became of a list of requests.
struct AttemptOutcome {
    std::optional<JSON> reply;   ///< of the request that succeeded: the one behind the failed ones
    std::vector<Error> failures; ///< of the first requests of the list, in order

    /// The reply, else the last failure; `SEMSAPIError::invalidResponse` when nothing was tried.
    Result<JSON> result() && {
        if (reply) {
            return std::move(*reply);
        }
        return failure(failures.empty() ? Error(SEMSAPIError::invalidResponse()) : failures.back());
    }
};

} // namespace Varnel
