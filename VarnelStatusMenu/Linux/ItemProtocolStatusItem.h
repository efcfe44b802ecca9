#pragma once

#include <VarnelStatusMenu/Linux/ExportedStatusItem.h>
#include <VarnelStatusMenu/Linux/ItemWatcher.h>

namespace Varnel {

/// The item in panels of today: org.kde.StatusNotifierItem at /StatusNotifierItem, its text menu at /MenuBar. Registers
/// anew with each panel that comes, in the form which that panel can show. Every call on the bus is asynchronous.
class ItemProtocolStatusItem final : public QObject, public StatusItemBackEnd {
public:
    /// `identifier` is the bundle identifier. One item per connection.
    ItemProtocolStatusItem(const QDBusConnection& connection, const QString& identifier,
                           const StatusItemHandlers& handlers);
    ~ItemProtocolStatusItem() override;

    Availability availability() const override;
    void setAvailabilityHandler(std::function<void()> changed) override;
    void setContent(const StatusItemContent& content) override;

    /// The protocol knows no taking away: an item that is not shown leaves with its panel or this object.
    void setShown(bool isShown) override;

private:
    void onWatcherChanged();
    void registerWithWatcher();
    void requestName();
    void sendRegistration();
    void onRegistered(const QString& owner, const QDBusError& error);

    QDBusConnection m_connection;
    ItemWatcher m_watcher;
    ExportedStatusItem m_exported;
    std::function<void()> m_availabilityChanged;
    bool m_isShown = false;
    QString m_service; ///< our own name on the bus; empty until the first registration
    QString m_registeredWith;
    QString m_refusedBy;
};

} // namespace Varnel
