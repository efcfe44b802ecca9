#include <VarnelShared/Timestamp.h>

#include <cmath>

namespace Varnel {

namespace {
constexpr double millisecondsPerSecond = 1000.0;
constexpr double yearOneUnixSeconds = -62135596800.0;
constexpr double yearTenThousandUnixSeconds = 253402300800.0;
} // namespace

Timestamp Timestamp::fromDateTime(const QDateTime& dateTime) {
    return {static_cast<double>(dateTime.toMSecsSinceEpoch()) / millisecondsPerSecond - referenceDateUnixSeconds};
}

QDateTime Timestamp::toDateTime() const {
    const double unixSeconds = secondsSinceReferenceDate + referenceDateUnixSeconds;
    // Written so that a NaN is refused too; beyond this range the conversion to an integer would be undefined.
    if (!(unixSeconds >= yearOneUnixSeconds && unixSeconds < yearTenThousandUnixSeconds)) {
        return {};
    }
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::floor(unixSeconds * millisecondsPerSecond)));
}

} // namespace Varnel
