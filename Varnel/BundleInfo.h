#pragma once

#include <QString>

#include <optional>

namespace Varnel {

/// What the program knows of its own installation. Gathered once by the composition root.
struct BundleInfo {
    std::optional<QString> identifier; ///< none when the program does not run from an installed tree
    QString version;                   ///< "1.0.0", or "Development Build"
    QString resourcesPath;             ///< folder of the icon resources; empty when there is none

    /// The bundle identifier, also the desktop file's name and the name on the session bus.
    static constexpr char applicationIdentifier[] = "com.varnel.menubar";
};

} // namespace Varnel
