#pragma once

#include <Varnel/PlatformServices.h>

#include <QObject>

#include <optional>

namespace Varnel {

/// The desktop portal's "color-scheme" setting with its change signal; where the portal says nothing, the lightness of
/// the application's palette with its changes. Asks the portal without waiting, at the start, after each change and
/// when it comes anew: until the first answer is there the palette decides. The colours of the windows follow, too
/// (`followDarkPreference`).
class PortalAppearance final : public QObject, public Appearance {
    Q_OBJECT
public:
    PortalAppearance();
    ~PortalAppearance() override;

    bool isDark() const override;
    std::unique_ptr<Observation> observe(std::function<void()> onChange) override;

Q_SIGNALS:
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void askPortal();

private:
    void takeColorScheme(uint scheme);
    void announceIfChanged();

    std::optional<bool> m_portalIsDark; ///< none when the portal has no preference or is absent
    bool m_followsDark = false;
    bool m_announcedIsDark = false;
};

} // namespace Varnel
