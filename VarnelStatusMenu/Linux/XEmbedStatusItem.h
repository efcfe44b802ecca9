#pragma once

#include <VarnelStatusMenu/Linux/StatusItemBackEnd.h>
#include <VarnelStatusMenu/Linux/TitlePicture.h>

#include <QObject>

#include <memory>

class QSystemTrayIcon;

namespace Varnel {

class LegacyTray;

/// The item as an icon in the tray of an older X11 panel: a picture of the title. A left click opens our own menu, a
/// right click the text menu.
class XEmbedStatusItem final : public QObject, public StatusItemBackEnd {
public:
    explicit XEmbedStatusItem(StatusItemHandlers handlers);
    ~XEmbedStatusItem() override;

    Availability availability() const override;
    void setAvailabilityHandler(std::function<void()> changed) override;
    void setContent(const StatusItemContent& content) override;
    void setShown(bool isShown) override;

private:
    void applyContent();
    void makeIcon();

    StatusItemHandlers m_handlers;
    std::function<void()> m_availabilityChanged;
    std::unique_ptr<LegacyTray> m_tray;
    StatusItemContent m_content;
    QString m_drawnTitle; ///< of the picture that the tray has
    TitleAge m_drawnAge = TitleAge::current;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace Varnel
