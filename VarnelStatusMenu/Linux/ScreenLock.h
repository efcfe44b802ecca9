#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>

namespace Varnel {

/// Whether the screen is locked, as GNOME's service org.gnome.ScreenSaver tells: there the panel's items are away for
/// as long as it is. Elsewhere they stay behind the lock, and the screen counts as not locked.
class ScreenLock final : public QObject {
public:
    explicit ScreenLock(const QDBusConnection& connection, QObject* parent = nullptr);

    /// Calls `handle` later, unless this object is gone by then; with false where there is no answer in three seconds.
    void ask(std::function<void(bool isLocked)> handle);

private:
    QDBusConnection m_connection;
};

} // namespace Varnel
