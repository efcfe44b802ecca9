#pragma once

#include <VarnelStatusMenu/Linux/StatusItemBackEnd.h>

#include <QDBusConnection>

#include <memory>

namespace Varnel {

/// The item in panels of today: org.kde.StatusNotifierItem at /StatusNotifierItem, its text menu at /MenuBar. Registers
/// anew with each panel that comes, in the form which that panel can show. Every call on the bus is asynchronous.
class ItemProtocolStatusItem final : public StatusItemBackEnd {
public:
    /// `identifier` is the bundle identifier. One item per connection.
    ItemProtocolStatusItem(const QDBusConnection& connection, const QString& identifier, StatusItemHandlers handlers);
    ~ItemProtocolStatusItem() override;

    Availability availability() const override;
    void setAvailabilityHandler(std::function<void()> changed) override;
    void setContent(const StatusItemContent& content) override;

    /// The protocol knows no taking away: an item that is not shown leaves with its panel or this object.
    void setShown(bool isShown) override;

private:
    class Registration;

    std::unique_ptr<Registration> m_registration;
};

} // namespace Varnel
