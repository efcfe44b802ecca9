#pragma once

#include <Varnel/PlatformServices.h>

#include <QObject>

#include <memory>

class QWidget;

namespace Varnel {

/// The application on a freedesktop desktop. A minimised window without content stands in the taskbar for the
/// application under the regular policy, and cannot be closed from there; under the accessory policy no window of ours
/// has a taskbar button, save the one that stands for the status item where there is no panel: that one is minimised
/// instead of hidden, too. Wayland offers neither, so the regular policy is refused there.
class DesktopApplicationShell final : public QObject, public ApplicationShell {
public:
    DesktopApplicationShell();
    ~DesktopApplicationShell() override;

    ActivationPolicy activationPolicy() const override { return m_policy; }
    bool setActivationPolicy(ActivationPolicy policy) override;
    void setReopenHandler(std::function<void()> handler) override;
    void setApplicationIcon(const QString& imagePath) override;
    void hide() override;
    void terminate() override;

protected:
    /// Watches the application's windows appear and be raised, and the taskbar window being activated.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void onWindowShown(QWidget& window);
    void onWindowRaised(QWidget& window);
    void applyToWindows();
    void showTaskbarWindow();
    void onTaskbarWindowStateChanged();
    void applyToWindow(const QWidget& window) const;
    void loadIcon();

    ActivationPolicy m_policy = ActivationPolicy::accessory;
    std::function<void()> m_reopen;
    std::unique_ptr<QWidget> m_taskbarWindow;
    QString m_iconPath;
    bool m_isIconLoaded = true;
};

} // namespace Varnel
