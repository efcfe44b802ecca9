#include <VarnelStatusMenu/Linux/DBusMenuRows.h>

#include <QDBusMetaType>

#include <algorithm>

namespace Varnel {

namespace {

// 0 is the menu itself.
constexpr int showChartId = 1;
constexpr int firstCommandId = 10;
constexpr int firstPlainId = 100;

int idOf(const ExportedMenuItem& item, std::size_t index) {
    switch (item.kind) {
    case ExportedMenuItem::Kind::showChart:
        return showChartId;
    case ExportedMenuItem::Kind::command:
        return firstCommandId + static_cast<int>(item.command.value_or(StatusMenuCommand::refresh));
    case ExportedMenuItem::Kind::text:
    case ExportedMenuItem::Kind::separator:
        break;
    }
    return firstPlainId + static_cast<int>(index);
}

/// The shortcut in the key names of the menu protocol: [["Control", "comma"]].
QList<QStringList> shortcutOf(const QKeySequence& key) {
    QList<QStringList> presses;
    for (int index = 0; index < key.count(); ++index) {
        QStringList names = QKeySequence(key[static_cast<uint>(index)])
                                .toString(QKeySequence::PortableText)
                                .split(QLatin1Char('+'), Qt::SkipEmptyParts);
        names.replaceInStrings(QStringLiteral("Ctrl"), QStringLiteral("Control"));
        names.replaceInStrings(QStringLiteral(","), QStringLiteral("comma"));
        if (names.last().size() == 1) {
            names.last() = names.last().toLower();
        }
        presses.append(names);
    }
    return presses;
}

QVariantMap propertiesOf(const ExportedMenuItem& item) {
    if (item.kind == ExportedMenuItem::Kind::separator) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    // An underscore marks the key of a row; two are one to read.
    QVariantMap properties{
        {QStringLiteral("label"), QString(item.title).replace(QLatin1Char('_'), QStringLiteral("__"))}};
    if (item.kind == ExportedMenuItem::Kind::text || !item.isEnabled) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (!item.iconName.isEmpty()) {
        properties.insert(QStringLiteral("icon-name"), item.iconName);
    }
    if (!item.key.isEmpty()) {
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcutOf(item.key)));
    }
    return properties;
}

} // namespace

QList<DBusMenuItem> dbusMenuRows(const ExportedMenu& menu) {
    QList<DBusMenuItem> rows;
    for (std::size_t index = 0; index < menu.size(); ++index) {
        rows.append({idOf(menu[index], index), propertiesOf(menu[index])});
    }
    return rows;
}

const ExportedMenuItem* exportedItem(const ExportedMenu& menu, int id) {
    for (std::size_t index = 0; index < menu.size(); ++index) {
        if (idOf(menu[index], index) == id) {
            return &menu[index];
        }
    }
    return nullptr;
}

bool haveSameLayout(const QList<DBusMenuItem>& a, const QList<DBusMenuItem>& b) {
    const QString type = QStringLiteral("type");
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&type](const DBusMenuItem& x, const DBusMenuItem& y) {
        return x.id == y.id && x.properties.value(type) == y.properties.value(type);
    });
}

QVariantMap selectProperties(const QVariantMap& properties, const QStringList& names) {
    if (names.isEmpty()) {
        return properties;
    }
    QVariantMap selected;
    for (const QString& name : names) {
        if (const auto found = properties.constFind(name); found != properties.constEnd()) {
            selected.insert(name, *found);
        }
    }
    return selected;
}

// QtDBus prescribes that the reading operators return their argument.
// NOLINTBEGIN(bugprone-return-const-ref-from-parameter)

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItemKeys& keys) {
    argument.beginStructure();
    argument << keys.id << keys.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItemKeys& keys) {
    argument.beginStructure();
    argument >> keys.id >> keys.names;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayoutItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const DBusMenuLayoutItem& child : item.children) {
        argument << QDBusVariant(QVariant::fromValue(child));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayoutItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    item.children.clear();
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        item.children.append(qdbus_cast<DBusMenuLayoutItem>(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.eventId << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.eventId >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

// NOLINTEND(bugprone-return-const-ref-from-parameter)

void registerDBusMenuTypes() {
    qDBusRegisterMetaType<DBusMenuItem>();
    qDBusRegisterMetaType<QList<DBusMenuItem>>();
    qDBusRegisterMetaType<DBusMenuItemKeys>();
    qDBusRegisterMetaType<QList<DBusMenuItemKeys>>();
    qDBusRegisterMetaType<DBusMenuLayoutItem>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<QList<DBusMenuEvent>>();
    qDBusRegisterMetaType<QList<QStringList>>();
}

} // namespace Varnel
