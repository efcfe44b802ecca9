#pragma once

#include <Varnel/PlatformServices.h>

#include <QString>

namespace Varnel {

/// Where this installation and its user's files are. Gathered once, handed down as plain values.
struct Installation {
    BundleInfo bundle;
    QString executable;       ///< absolute path of the running program
    QString userDefaultsFile; ///< the settings
    QString passwordFile;     ///< used only where the session has no Secret Service
    QString autostartFolder;
    QString applicationSupport; ///< the user's data folder; empty when the system names none
};

/// The installed tree is the bundle: a program at `<prefix>/bin/` with its desktop entry in
/// `<prefix>/share/applications/` is bundled, any other is not. Follows the XDG base directories.
Installation findInstallation();

} // namespace Varnel
