#pragma once

#include <VarnelShared/RawValueEnum.h>

namespace Varnel {

/// How the chart's vertical axis is scaled: by the day's peak, or by the station's size.
enum class ChartScaleMode { adaptive, fixed };

template <>
struct RawValueTable<ChartScaleMode> {
    static constexpr std::array cases = {
        RawValueCase{ChartScaleMode::adaptive, "adaptive", "Adaptive"},
        RawValueCase{ChartScaleMode::fixed, "fixed", "Fixed"},
    };
};

} // namespace Varnel
