#pragma once

#include <VarnelShared/Clock.h>
#include <VarnelStatusMenu/Linux/ExportedStatusItem.h>
#include <VarnelStatusMenu/Linux/ItemWatcher.h>

namespace Varnel {

/// The item in panels of today: org.kde.StatusNotifierItem at /StatusNotifierItem, its text menu at /MenuBar. Registers
/// anew with each panel that comes or comes back, in the form which that panel can show, and once more with a panel
/// that lets the item go or does not list it three seconds later; a panel that does so again is taken for none. Every
/// call on the bus is asynchronous.
class ItemProtocolStatusItem final : public QObject, public StatusItemBackEnd {
public:
    /// `identifier` is the bundle identifier. One item per connection. `timers` must outlive this object.
    ItemProtocolStatusItem(const QDBusConnection& connection, const QString& identifier, TimerFactory& timers,
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
    void sendRegistration();
    void onRegistered(const QDBusError& error);
    void checkListedLater(int mostChecks);
    void onLost();
    void takeForNone();

    TimerFactory& m_timers;
    ItemWatcher m_watcher;
    ExportedStatusItem m_exported;
    std::function<void()> m_availabilityChanged;
    bool m_isShown = false;
    QString m_registeredWith; ///< the unique name of the watcher; empty: none
    bool m_isRefused = false; ///< by that watcher
    int m_losses = 0;         ///< with the present watcher, since the item was last listed
    std::unique_ptr<OneShotTimer> m_listingTimer;
};

} // namespace Varnel
