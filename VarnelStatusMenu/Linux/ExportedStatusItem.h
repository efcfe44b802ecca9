#pragma once

#include <VarnelStatusMenu/Linux/ItemFace.h>
#include <VarnelStatusMenu/Linux/StatusItemBackEnd.h>

#include <QDBusConnection>
#include <QObject>

#include <memory>
#include <optional>

namespace Varnel {

class DBusMenuExporter;
class StatusNotifierItemAdaptor;

/// The objects that panels read: the item at /StatusNotifierItem and its menu at /MenuBar.
class ExportedStatusItem {
public:
    ExportedStatusItem(const QDBusConnection& connection, QString identifier, StatusItemHandlers handlers);
    ~ExportedStatusItem();
    ExportedStatusItem(const ExportedStatusItem&) = delete;
    ExportedStatusItem& operator=(const ExportedStatusItem&) = delete;

    /// Exports the item for a panel of that kind; nothing is exported before.
    void setPanel(const PanelKind& panel);

    /// Tells the panel what changed, and nothing else.
    void setContent(const StatusItemContent& content);

    /// Tells the panel once more what it may have missed while it made the item its own: the label.
    void repeat();

private:
    QDBusConnection m_connection;
    QString m_identifier;
    StatusItemHandlers m_handlers;
    StatusItemContent m_content;
    std::optional<PanelKind> m_panel;
    ItemFace m_face;                       ///< of m_content for m_panel
    std::unique_ptr<QObject> m_itemObject; ///< owns m_item
    QObject m_menuObject;                  ///< owns m_menu
    StatusNotifierItemAdaptor* m_item = nullptr;
    DBusMenuExporter* m_menu = nullptr;
};

} // namespace Varnel
