#include <VarnelStatusMenu/Linux/DBusMenuExporter.h>

#include <VarnelStatusMenu/Linux/DBusMenuEncoding.h>

#include <QDBusError>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {

constexpr int rootId = 0;

/// The same row is not chosen again within this time: a program that clicks a thousand times a second would have a
/// window opened for each.
constexpr qint64 sameClickMilliseconds = 300;

QVariantMap rootProperties() {
    return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
}

QStringList namesThatWent(const QVariantMap& before, const QVariantMap& after) {
    QStringList names = before.keys();
    names.removeIf([&after](const QString& name) { return after.contains(name); });
    return names;
}

} // namespace

DBusMenuExporter::DBusMenuExporter(QObject* parent, QDBusConnection connection, StatusItemHandlers handlers)
    : QDBusAbstractAdaptor(parent)
    , m_connection(std::move(connection))
    , m_handlers(std::move(handlers)) {
    registerDBusMenuTypes();
}

void DBusMenuExporter::setMenu(const ExportedMenu& menu) {
    if (menu == m_menu) {
        return;
    }
    m_menu = menu;
    makeRows();
}

void DBusMenuExporter::setKeyNames(KeyNames keyNames) {
    if (std::exchange(m_keyNames, keyNames) != keyNames) {
        makeRows();
    }
}

void DBusMenuExporter::makeRows() {
    const QList<DBusMenuItem> oldRows = std::exchange(m_rows, dbusMenuRows(m_menu, m_keyNames));
    if (oldRows.isEmpty()) {
        Q_EMIT LayoutUpdated(++m_revision, rootId);
    } else {
        announceChanges(oldRows);
    }
}

void DBusMenuExporter::announceChanges(const QList<DBusMenuItem>& oldRows) {
    QList<DBusMenuItem> updated;
    QList<DBusMenuItemKeys> removed;
    for (qsizetype index = 0; index < m_rows.size(); ++index) {
        const QVariantMap& before = oldRows[index].properties;
        const QVariantMap& after = m_rows[index].properties;
        if (before != after) {
            updated.append(m_rows[index]);
        }
        if (const QStringList went = namesThatWent(before, after); !went.isEmpty()) {
            removed.append({m_rows[index].id, went});
        }
    }
    Q_EMIT ItemsPropertiesUpdated(updated, removed);
}

QString DBusMenuExporter::textDirection() const {
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

bool DBusMenuExporter::isKnown(int id) const {
    return id == rootId ||
           std::any_of(m_rows.begin(), m_rows.end(), [id](const DBusMenuItem& row) { return row.id == id; });
}

QVariantMap DBusMenuExporter::propertiesOf(int id) const {
    if (id == rootId) {
        return rootProperties();
    }
    const auto row =
        std::find_if(m_rows.begin(), m_rows.end(), [id](const DBusMenuItem& candidate) { return candidate.id == id; });
    return row == m_rows.end() ? QVariantMap() : row->properties;
}

void DBusMenuExporter::refuse(const QDBusMessage& message, int id) {
    message.setDelayedReply(true);
    m_connection.send(message.createErrorReply(QDBusError::InvalidArgs,
                                               QStringLiteral("The menu has no row with the id %1").arg(id)));
}

uint DBusMenuExporter::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                 const QDBusMessage& message, DBusMenuLayoutItem& layout) {
    if (!isKnown(parentId)) {
        refuse(message, parentId);
        return m_revision;
    }
    layout = {parentId, selectProperties(propertiesOf(parentId), propertyNames), {}};
    if (parentId == rootId && recursionDepth != 0) {
        for (const DBusMenuItem& row : std::as_const(m_rows)) {
            layout.children.append({row.id, selectProperties(row.properties, propertyNames), {}});
        }
    }
    return m_revision;
}

QList<DBusMenuItem> DBusMenuExporter::GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames) {
    QList<DBusMenuItem> asked;
    if (ids.isEmpty() || ids.contains(rootId)) {
        asked.append({rootId, selectProperties(rootProperties(), propertyNames)});
    }
    for (const DBusMenuItem& row : std::as_const(m_rows)) {
        if (ids.isEmpty() || ids.contains(row.id)) {
            asked.append({row.id, selectProperties(row.properties, propertyNames)});
        }
    }
    return asked;
}

QDBusVariant DBusMenuExporter::GetProperty(int id, const QString& name, const QDBusMessage& message) {
    const QVariant value = propertiesOf(id).value(name);
    if (!value.isValid()) {
        refuse(message, id);
    }
    return QDBusVariant(value);
}

void DBusMenuExporter::Event(int id, const QString& eventId, const QDBusVariant& /*data*/, uint /*timestamp*/,
                             const QDBusMessage& message) {
    if (!handle(id, eventId)) {
        refuse(message, id);
    }
}

QList<int> DBusMenuExporter::EventGroup(const QList<DBusMenuEvent>& events) {
    QList<int> unknown;
    for (const DBusMenuEvent& event : events) {
        if (!handle(event.id, event.eventId)) {
            unknown.append(event.id);
        }
    }
    return unknown;
}

bool DBusMenuExporter::AboutToShow(int /*id*/) {
    // The rows are always up to date.
    return false;
}

QList<int> DBusMenuExporter::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(idErrors), [this](int id) { return !isKnown(id); });
    return {};
}

bool DBusMenuExporter::handle(int id, const QString& eventId) {
    if (!isKnown(id)) {
        return false;
    }
    const ExportedMenuItem* item = exportedItem(m_menu, id);
    const bool isSameClick = id == m_lastChosen && !m_sinceLastChoice.hasExpired(sameClickMilliseconds);
    if (eventId == QStringLiteral("clicked") && item != nullptr && item->isEnabled && !isSameClick) {
        m_lastChosen = id;
        m_sinceLastChoice.start();
        choose(*item);
    }
    return true;
}

void DBusMenuExporter::choose(const ExportedMenuItem& item) {
    // Queued: the panel gets its reply first, and a handler is free to set a new menu.
    if (item.kind == ExportedMenuItem::Kind::showChart) {
        QMetaObject::invokeMethod(this, [this] { m_handlers.openMenu(std::nullopt); }, Qt::QueuedConnection);
    } else if (item.kind == ExportedMenuItem::Kind::showWindow) {
        QMetaObject::invokeMethod(this, [this] { m_handlers.showWindow(); }, Qt::QueuedConnection);
    } else if (item.command) {
        QMetaObject::invokeMethod(
            this, [this, command = *item.command] { m_handlers.choose(command); }, Qt::QueuedConnection);
    }
}

} // namespace Varnel
