#pragma once

#include <VarnelStatusMenu/Linux/DBusMenuEncoding.h>
#include <VarnelStatusMenu/Linux/StatusItemBackEnd.h>

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>

namespace Varnel {

/// The menu that panels draw by themselves on a right click, as text: interface com.canonical.dbusmenu, version 3.
/// QtDBus passes over a slot whose signature names a type alias, so the lists are written out.
class DBusMenuExporter final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    /// `parent` is the object that is exported on `connection` and owns this. A handler is called once per choice of
    /// an enabled row, after the panel has its reply.
    DBusMenuExporter(QObject* parent, QDBusConnection connection, StatusItemHandlers handlers);

    /// Takes the new rows and tells the panel: texts alone when the rows are the same, the whole layout otherwise.
    void setMenu(const ExportedMenu& menu);
    void setKeyNames(KeyNames keyNames);

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames, const QDBusMessage& message,
                   Varnel::DBusMenuLayoutItem& layout);
    QList<Varnel::DBusMenuItem> GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name, const QDBusMessage& message);
    void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp, const QDBusMessage& message);
    QList<int> EventGroup(const QList<Varnel::DBusMenuEvent>& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<Varnel::DBusMenuItem>& updatedProperties,
                                const QList<Varnel::DBusMenuItemKeys>& removedProperties);
    void LayoutUpdated(uint revision, int parent);

private:
    bool isKnown(int id) const;
    QVariantMap propertiesOf(int id) const;
    bool handle(int id, const QString& eventId);
    void choose(const ExportedMenuItem& item);
    void refuse(const QDBusMessage& message, int id);
    void makeRows();
    void announceChanges(const QList<DBusMenuItem>& oldRows);

    QDBusConnection m_connection;
    StatusItemHandlers m_handlers;
    ExportedMenu m_menu;
    KeyNames m_keyNames = KeyNames::xServer;
    QList<DBusMenuItem> m_rows;
    uint m_revision = 1;
    int m_lastChosen = 0;
    QElapsedTimer m_sinceLastChoice;
};

} // namespace Varnel
