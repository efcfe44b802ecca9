#pragma once

#include <VarnelSettings/LaunchAtLoginManager.h>

#include <QString>

namespace Varnel {

/// The login item as an entry of the user's autostart folder, by the XDG rules for autostart and desktop entries.
///
/// An entry that the session has disabled, by `Hidden=true` or `X-GNOME-Autostart-enabled=false`, requires approval:
/// it is the user's own decision and is never written over. One whose program no longer exists is not registered, so
/// that it is written anew. One that cannot be read is not found.
class AutostartLoginItem final : public LoginItem {
public:
    /// The entry is `<autostartFolder>/<bundleIdentifier>.desktop` and starts `executable`, an absolute path.
    AutostartLoginItem(const QString& autostartFolder, const QString& bundleIdentifier, const QString& executable);

    LoginItemStatus status() const override;

    /// Replaces the entry in one step. Fails with `FileError`.
    Result<void> registerItem() override;

    /// Removes the entry, one that the session has disabled too. Fails with `FileError`.
    Result<void> unregisterItem() override;

private:
    QByteArray entry() const;

    const QString m_path;
    const QString m_bundleIdentifier;
    const QString m_executable;
};

} // namespace Varnel
