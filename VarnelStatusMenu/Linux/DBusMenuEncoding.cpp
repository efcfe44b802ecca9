#include <VarnelStatusMenu/Linux/DBusMenuEncoding.h>

#include <QDBusMetaType>

#include <algorithm>
#include <array>

namespace Varnel {

namespace {

using Kind = ExportedMenuItem::Kind;

/// A row that the menu has at times.
struct Place {
    int id; // 0 is the menu itself
    Kind kind;
    std::optional<StatusMenuCommand> command = std::nullopt;
};

/// Every row that the menu can have, in its order. What is not in the menu at the moment is hidden, and never taken
/// away: GNOME's panel cannot move a row and reads no texts with a new layout, and Plasma's keeps what it once made for
/// an id. So an id is of one kind and has one place for good.
constexpr std::array places{
    Place{1, Kind::showChart},
    Place{2, Kind::showWindow},
    Place{200, Kind::separator},
    Place{100, Kind::text},
    Place{101, Kind::text},
    Place{102, Kind::text},
    Place{103, Kind::text},
    Place{201, Kind::separator},
    Place{10, Kind::command, StatusMenuCommand::refresh},
    Place{11, Kind::command, StatusMenuCommand::preferences},
    Place{12, Kind::command, StatusMenuCommand::signIn},
    Place{202, Kind::separator},
    Place{13, Kind::command, StatusMenuCommand::signOut},
};

using PlacedRows = std::array<const ExportedMenuItem*, places.size()>;

/// Each row of the menu in the next place that is for such a row; null where there is none.
PlacedRows placedRows(const ExportedMenu& menu) {
    PlacedRows placed{};
    std::size_t index = 0;
    for (const ExportedMenuItem& row : menu) {
        while (index < places.size() && (places[index].kind != row.kind || places[index].command != row.command)) {
            ++index;
        }
        Q_ASSERT(index < places.size());
        if (index < places.size()) {
            placed[index++] = &row;
        }
    }
    return placed;
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

QVariantMap propertiesOf(Kind kind, const ExportedMenuItem* row, KeyNames keyNames) {
    // What is left out keeps its former value in some panels, so these are there also where they have their defaults.
    QVariantMap properties{{QStringLiteral("visible"), row != nullptr}};
    if (kind == Kind::separator) {
        properties.insert(QStringLiteral("type"), QStringLiteral("separator"));
        return properties;
    }
    // An underscore marks the key of a row; two are one to read.
    const QString title = row != nullptr ? row->title : QString();
    properties.insert(QStringLiteral("label"), QString(title).replace(QLatin1Char('_'), QStringLiteral("__")));
    properties.insert(QStringLiteral("enabled"), row != nullptr && row->isEnabled);
    if (row != nullptr && !row->iconName.isEmpty()) {
        // Panels draw the symbolic form in the colour of their own text.
        properties.insert(QStringLiteral("icon-name"), row->iconName + QStringLiteral("-symbolic"));
    }
    if (row != nullptr && !row->key.isEmpty()) {
        properties.insert(QStringLiteral("shortcut"), QVariant::fromValue(shortcutOf(row->key, keyNames)));
    }
    return properties;
}

} // namespace

QList<DBusMenuItem> dbusMenuRows(const ExportedMenu& menu, KeyNames keyNames) {
    const PlacedRows placed = placedRows(menu);
    QList<DBusMenuItem> rows;
    for (std::size_t index = 0; index < places.size(); ++index) {
        rows.append({places[index].id, propertiesOf(places[index].kind, placed[index], keyNames)});
    }
    return rows;
}

const ExportedMenuItem* exportedItem(const ExportedMenu& menu, int id) {
    const auto place = std::find_if(places.begin(), places.end(), [id](const Place& each) { return each.id == id; });
    return place == places.end() ? nullptr : placedRows(menu)[static_cast<std::size_t>(place - places.begin())];
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
