#pragma once

#include <VarnelStatusMenu/Linux/ItemFace.h>

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>

#include <functional>

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
    Q_PROPERTY(Varnel::ItemToolTip ToolTip READ toolTip NOTIFY NewToolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    /// `parent` is the object that is exported and owns this; `openMenu` is called per click, after the reply.
    StatusNotifierItemAdaptor(QObject* parent, QString identifier, ItemFace face, std::function<void()> openMenu);

    /// Takes the new face and tells the panel what changed, and nothing else.
    virtual void setFace(const ItemFace& face);

    QString category() const { return QStringLiteral("SystemServices"); }
    QString id() const { return m_identifier; }
    QString status() const { return QStringLiteral("Active"); }
    QString title() const { return m_face.title; }
    int windowId() const { return 0; }
    QString iconName() const { return {}; }
    QList<ItemPixmap> iconPixmap() const { return m_face.icon; }
    ItemToolTip toolTip() const { return {{}, {}, m_face.toolTip, {}}; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(QStringLiteral("/MenuBar")); }

public Q_SLOTS:
    // The coordinates are of no use: some hosts send the item's own, some the panel's corner.
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewToolTip();

protected:
    const ItemFace& face() const { return m_face; }

private:
    void openMenuSoon();

    QString m_identifier;
    ItemFace m_face;
    std::function<void()> m_openMenu;
};

} // namespace Varnel
