#include <VarnelStatusMenu/Linux/ExportedStatusItem.h>

#include <VarnelStatusMenu/Linux/DBusMenuExporter.h>
#include <VarnelStatusMenu/Linux/LabelledItemAdaptor.h>

#include <QGuiApplication>

#include <utility>

namespace Varnel {

namespace {

ItemFace faceOf(const StatusItemContent& content, TitleForm form) {
    return itemFace(content.title, content.toolTip, form, qGuiApp->devicePixelRatio());
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

void ExportedStatusItem::setForm(TitleForm form) {
    if (form == m_form) {
        return;
    }
    m_form = form;
    m_itemObject = std::make_unique<QObject>();
    m_face = faceOf(m_content, form);
    m_item = form == TitleForm::label
                 ? new LabelledItemAdaptor(m_itemObject.get(), m_identifier, m_face, m_handlers.openMenu)
                 : new StatusNotifierItemAdaptor(m_itemObject.get(), m_identifier, m_face, m_handlers.openMenu);
    m_connection.registerObject(QStringLiteral("/StatusNotifierItem"), m_itemObject.get());
}

void ExportedStatusItem::setContent(const StatusItemContent& content) {
    const StatusItemContent old = std::exchange(m_content, content);
    m_menu->setMenu(content.menu);
    if (!m_form) {
        return;
    }
    // The pictures are the expensive part, and they show the title alone.
    if (content.title != old.title) {
        m_face = faceOf(content, *m_form);
    }
    m_face.toolTip = content.toolTip;
    m_item->setFace(m_face);
}

} // namespace Varnel
