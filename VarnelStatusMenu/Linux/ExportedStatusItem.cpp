#include <VarnelStatusMenu/Linux/ExportedStatusItem.h>

#include <VarnelShared/ActivationToken.h>
#include <VarnelStatusMenu/Linux/DBusMenuExporter.h>

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QGuiApplication>

#include <functional>
#include <utility>

namespace Varnel {

/// The item as panels see it on the bus, interface org.kde.StatusNotifierItem. Hosts call `Activate` on a left click;
/// on a right click they draw the menu at `Menu` by themselves.
class StatusNotifierItemAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString Title READ title NOTIFY NewTitle)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ iconName CONSTANT)
    Q_PROPERTY(QList<Varnel::ItemPixmap> IconPixmap READ iconPixmap NOTIFY NewIcon)
    Q_PROPERTY(QString IconAccessibleDesc READ iconDescription NOTIFY NewIcon)
    Q_PROPERTY(Varnel::ItemToolTip ToolTip READ toolTip NOTIFY NewToolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    using OpenMenu = std::function<void(std::optional<QPoint> item)>;

    /// `parent` is the object that is exported and owns this; `openMenu` is called per click, after the reply.
    StatusNotifierItemAdaptor(QObject* parent, QString identifier, ItemFace face, OpenMenu openMenu);

    /// Takes the new face and tells the panel what changed, and nothing else.
    virtual void setFace(const ItemFace& face);

    /// Tells once more what a panel may have missed while it made the item its own.
    virtual void repeat() {}

    QString category() const { return QStringLiteral("SystemServices"); }
    QString id() const { return m_identifier; }
    QString status() const { return QStringLiteral("Active"); }
    QString title() const { return m_face.title; }
    int windowId() const { return 0; }
    QString iconName() const { return {}; }
    QList<ItemPixmap> iconPixmap() const { return m_face.icon; }
    QString iconDescription() const { return m_face.iconDescription; }
    ItemToolTip toolTip() const { return {{}, {}, m_face.toolTip, m_face.toolTipText}; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(QStringLiteral("/MenuBar")); }

public Q_SLOTS:
    // Hosts mean different things by the coordinates: places on the desktop, in the item, or always the panel's corner.
    // They serve where nothing better is known.
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);
    /// Plasma calls it before each of the above.
    void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();

protected:
    const ItemFace& face() const { return m_face; }

private:
    void openMenuSoon(QPoint at);

    QString m_identifier;
    ItemFace m_face;
    OpenMenu m_openMenu;
};

StatusNotifierItemAdaptor::StatusNotifierItemAdaptor(QObject* parent, QString identifier, ItemFace face,
                                                     OpenMenu openMenu)
    : QDBusAbstractAdaptor(parent)
    , m_identifier(std::move(identifier))
    , m_face(std::move(face))
    , m_openMenu(std::move(openMenu)) {}

void StatusNotifierItemAdaptor::setFace(const ItemFace& face) {
    const ItemFace old = std::exchange(m_face, face);
    if (face.title != old.title) {
        Q_EMIT NewTitle();
    }
    if (face.icon != old.icon || face.iconDescription != old.iconDescription) {
        Q_EMIT NewIcon();
    }
    if (face.toolTip != old.toolTip || face.toolTipText != old.toolTipText) {
        Q_EMIT NewToolTip();
    }
}

void StatusNotifierItemAdaptor::Activate(int x, int y) {
    openMenuSoon({x, y});
}

void StatusNotifierItemAdaptor::SecondaryActivate(int x, int y) {
    openMenuSoon({x, y});
}

void StatusNotifierItemAdaptor::ContextMenu(int x, int y) {
    openMenuSoon({x, y});
}

void StatusNotifierItemAdaptor::Scroll(int /*delta*/, const QString& /*orientation*/) {}

void StatusNotifierItemAdaptor::ProvideXdgActivationToken(const QString& token) {
    takeActivationToken(token);
}

void StatusNotifierItemAdaptor::openMenuSoon(QPoint at) {
    const std::optional<QPoint> item = at.isNull() ? std::nullopt : std::optional(at);
    // The panel gets its reply before the menu takes the pointer.
    QMetaObject::invokeMethod(this, [this, item] { m_openMenu(item); }, Qt::QueuedConnection);
}

/// The item for panels that draw a label. A class of its own because a panel takes the mere presence of the label
/// properties, even empty ones, for the wish to show a label and no icon.
class LabelledItemAdaptor final : public StatusNotifierItemAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString XAyatanaLabel READ label NOTIFY XAyatanaNewLabel)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide CONSTANT)

public:
    using StatusNotifierItemAdaptor::StatusNotifierItemAdaptor;

    void setFace(const ItemFace& face) override;
    void repeat() override;

    QString label() const { return face().label; }
    /// The widest usual text, for panels that keep its room.
    QString labelGuide() const { return QStringLiteral("00.00 kW"); }

Q_SIGNALS:
    void XAyatanaNewLabel(const QString& label, const QString& guide);
};

void LabelledItemAdaptor::setFace(const ItemFace& face) {
    const QString oldLabel = label();
    StatusNotifierItemAdaptor::setFace(face);
    if (label() != oldLabel) {
        Q_EMIT XAyatanaNewLabel(label(), labelGuide());
    }
}

void LabelledItemAdaptor::repeat() {
    // GNOME's extension leaves a label out that changes while it reads the item, and takes the same one again for no
    // change.
    Q_EMIT XAyatanaNewLabel({}, labelGuide());
    Q_EMIT XAyatanaNewLabel(label(), labelGuide());
}

namespace {

ItemFace faceOf(const StatusItemContent& content, const PanelKind& panel) {
    return itemFace(content, panel, qGuiApp->devicePixelRatio());
}

} // namespace

ExportedStatusItem::ExportedStatusItem(const QDBusConnection& connection, QString identifier,
                                       StatusItemHandlers handlers)
    : m_connection(connection)
    , m_identifier(std::move(identifier))
    , m_handlers(std::move(handlers))
    , m_menu(new DBusMenuExporter(&m_menuObject, connection, m_handlers)) {
    registerItemProtocolTypes();
    m_connection.registerObject(QStringLiteral("/MenuBar"), &m_menuObject);
}

ExportedStatusItem::~ExportedStatusItem() = default;

void ExportedStatusItem::setPanel(const PanelKind& panel) {
    if (panel == m_panel) {
        return;
    }
    m_panel = panel;
    m_menu->setKeyNames(panel.keyNames);
    m_itemObject = std::make_unique<QObject>();
    m_face = faceOf(m_content, panel);
    m_item = panel.titleForm == TitleForm::label
                 ? new LabelledItemAdaptor(m_itemObject.get(), m_identifier, m_face, m_handlers.openMenu)
                 : new StatusNotifierItemAdaptor(m_itemObject.get(), m_identifier, m_face, m_handlers.openMenu);
    m_connection.registerObject(QStringLiteral("/StatusNotifierItem"), m_itemObject.get());
}

void ExportedStatusItem::setContent(const StatusItemContent& content) {
    const StatusItemContent old = std::exchange(m_content, content);
    m_menu->setMenu(exportedMenu(content.menu));
    if (!m_panel) {
        return;
    }
    // The pictures are expensive: none for what has changed in the menu alone.
    if (content.title != old.title || content.toolTip != old.toolTip || content.outdatedLine != old.outdatedLine) {
        m_face = faceOf(content, *m_panel);
        m_item->setFace(m_face);
    }
}

void ExportedStatusItem::repeat() {
    if (m_item) {
        m_item->repeat();
    }
}

} // namespace Varnel

#include "ExportedStatusItem.moc"
