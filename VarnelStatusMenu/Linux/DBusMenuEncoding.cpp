#include <VarnelStatusMenu/Linux/DBusMenuEncoding.h>

#include <QDBusMetaType>

#include <algorithm>

namespace Varnel {

namespace {

// 0 is the menu itself.
constexpr int showChartId = 1;
constexpr int firstCommandId = 10;
constexpr int firstTextId = 100;
constexpr int firstSeparatorId = 200;

/// The ids of the rows, in order. Texts and separators are counted each by themselves: some panels keep what they once
/// made for an id, so that it must never be of another kind.
std::vector<int> idsOf(const ExportedMenu& menu) {
    std::vector<int> ids;
    int textId = firstTextId;
    int separatorId = firstSeparatorId;
    for (const ExportedMenuItem& item : menu) {
        switch (item.kind) {
        case ExportedMenuItem::Kind::showChart:
            ids.push_back(showChartId);
            break;
        case ExportedMenuItem::Kind::command:
            ids.push_back(firstCommandId + static_cast<int>(item.command.value_or(StatusMenuCommand::refresh)));
            break;
        case ExportedMenuItem::Kind::text:
            ids.push_back(textId++);
            break;
        case ExportedMenuItem::Kind::separator:
            ids.push_back(separatorId++);
            break;
        }
    }
    return ids;
}

/// The shortcut as the menu protocol carries it: [["Control", "comma"]].
QList<QStringList> shortcutOf(const QKeySequence& key, KeyNames keyNames) {
    QList<QStringList> presses;
    for (int index = 0; index < key.count(); ++index) {
        QStringList names = QKeySequence(key[static_cast<uint>(index)])
                                .toString(QKeySequence::PortableText)
                                .split(QLatin1Char('+'), Qt::SkipEmptyParts);
        names.replaceInStrings(QStringLiteral("Ctrl"), QStringLiteral("Control"));
        if (keyNames == KeyNames::xServer) {
            names.replaceInStrings(QStringLiteral(","), QStringLiteral("comma"));
        }
        if (names.last().size() == 1) {
            names.last() = names.last().toLower();
        }
        presses.append(names);
    }
    return presses;
}

QVariantMap propertiesOf(const ExportedMenuItem& item, KeyNames keyNames) {
    if (item.kind == ExportedMenuItem::Kind::separator) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    // An underscore marks the key of a row; two are one to read. What is left out keeps its former value in some
    // panels, so "enabled" is there also where it has its default.
    QVariantMap properties{
        {QStringLiteral("label"), QString(item.title).replace(QLatin1Char('_'), QStringLiteral("__"))},
        {QStringLiteral("enabled"), item.isEnabled}};
    if (!item.iconName.isEmpty()) {
        // Panels draw the symbolic form in the colour of their own text.
        properties.insert(QStringLiteral("icon-name"), item.iconName + QStringLiteral("-symbolic"));
    }
    if (!item.key.isEmpty()) {
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcutOf(item.key, keyNames)));
    }
    return properties;
}

} // namespace

QList<DBusMenuItem> dbusMenuRows(const ExportedMenu& menu, KeyNames keyNames) {
    const std::vector<int> ids = idsOf(menu);
    QList<DBusMenuItem> rows;
    for (std::size_t index = 0; index < menu.size(); ++index) {
        rows.append({ids[index], propertiesOf(menu[index], keyNames)});
    }
    return rows;
}

const ExportedMenuItem* exportedItem(const ExportedMenu& menu, int id) {
    const std::vector<int> ids = idsOf(menu);
    const auto found = std::find(ids.begin(), ids.end(), id);
    return found == ids.end() ? nullptr : &menu[static_cast<std::size_t>(found - ids.begin())];
}

bool haveSameLayout(const QList<DBusMenuItem>& a, const QList<DBusMenuItem>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const DBusMenuItem& x, const DBusMenuItem& y) { return x.id == y.id; });
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
