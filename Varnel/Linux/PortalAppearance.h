#pragma once

#include <Varnel/Appearance.h>

#include <QDBusVariant>
#include <QObject>

#include <optional>

namespace Varnel {

/// The desktop portal's "color-scheme" setting with its change signal; where the portal says nothing, the lightness of
/// the application's palette with its changes. Asks the portal once, without waiting: until the answer is there the
/// palette decides.
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
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void askPortal();
    void takeColorScheme(const QVariant& value);
    void announceIfChanged();

    std::optional<bool> m_portalIsDark; ///< none when the portal has no preference or is absent
    bool m_announcedIsDark = false;
};

} // namespace Varnel
