#pragma once

#include <VarnelShared/RawValueEnum.h>

namespace Varnel {

/// Which variant of the application icon is shown; `automatic` follows the system's light or dark appearance.
enum class IconAppearanceMode { automatic, light, dark };

template <>
struct RawValueTable<IconAppearanceMode> {
    static constexpr std::array cases = {
        RawValueCase{IconAppearanceMode::automatic, "automatic", "Automatic"},
        RawValueCase{IconAppearanceMode::light, "light", "Light"},
        RawValueCase{IconAppearanceMode::dark, "dark", "Dark"},
    };
};

} // namespace Varnel
