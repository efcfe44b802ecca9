#pragma once

#include <VarnelStatusMenu/Linux/PanelKind.h>
#include <VarnelStatusMenu/Linux/StatusItemBackEnd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QObject>

#include <functional>
#include <optional>

namespace Varnel {

/// The service org.kde.StatusNotifierWatcher, where items register and panels learn of them: whether it is there with
/// a panel behind it, and of which kind that panel is. Asks asynchronously, and again after each change. When the bus
/// ends, there is none any more.
class ItemWatcher final : public QObject {
    Q_OBJECT

public:
    /// A connection that is not connected has no watcher, now and ever.
    explicit ItemWatcher(const QDBusConnection& connection, QObject* parent = nullptr);

    StatusItemBackEnd::Availability availability() const { return m_availability; }

    /// The unique name of the process that is the watcher now; a registration lasts as long as it. Empty: none.
    QString owner() const { return m_owner; }

    /// Meaningful while available.
    PanelKind panel() const { return m_panel; }

    /// Registers the item that this connection exports at /StatusNotifierItem, under the connection's unique name: a
    /// well-known one is watched by some panels, and what they know of the item is forgotten when the watch first
    /// fires.
    QDBusPendingCall registerItem() const;

    /// Calls `handle` with whether the watcher lists the item; with none where it does not tell in three seconds, and
    /// not at all when the watcher changes meanwhile.
    void askWhetherListed(std::function<void(std::optional<bool> isListed)> handle);

Q_SIGNALS:
    /// The availability or the owner changed.
    void changed();

    /// The watcher has let this connection's item go.
    void itemLost();

private Q_SLOTS:
    void askForHost();
    void onDisconnected();
    void onItemUnregistered(const QString& service, const QDBusMessage& message);

private:
    using Handler = std::function<void(const QDBusMessage& reply)>;

    void askForOwner();
    void setOwner(const QString& owner);
    void askForProcess();
    bool isOwnItem(const QString& service) const;
    void askForProperty(const QString& name, Handler handle);
    void setAvailability(StatusItemBackEnd::Availability availability);
    /// Calls `handle` with the reply, a failure included, unless the owner has changed meanwhile.
    void await(const QDBusPendingCall& call, Handler handle);

    QDBusConnection m_connection;
    StatusItemBackEnd::Availability m_availability = StatusItemBackEnd::Availability::unknown;
    QString m_owner;
    PanelKind m_panel;
};

} // namespace Varnel
