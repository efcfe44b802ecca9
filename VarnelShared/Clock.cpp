#include <VarnelShared/Clock.h>

namespace Varnel {

Timestamp SystemClock::now() const {
    const Seconds sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
    return {sinceUnixEpoch.count() - Timestamp::referenceDateUnixSeconds};
}

} // namespace Varnel
