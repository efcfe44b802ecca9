#pragma once

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <functional>

namespace Varnel {

/// The tray of older X11 panels: the window that owns the selection _NET_SYSTEM_TRAY_S0. Never present where the
/// application does not run on X11.
class LegacyTray final : public QAbstractNativeEventFilter {
public:
    /// `changed` is called from the event loop after the tray has come or gone.
    explicit LegacyTray(std::function<void()> changed);
    ~LegacyTray() override;

    bool isPresent() const { return m_window != 0; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void findWindow();

    std::function<void()> m_changed;
    std::uint32_t m_managerAtom = 0; ///< type of the message by which a tray announces itself
    std::uint32_t m_trayAtom = 0;
    std::uint32_t m_window = 0;
};

} // namespace Varnel
