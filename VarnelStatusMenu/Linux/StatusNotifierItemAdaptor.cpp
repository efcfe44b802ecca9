#include <VarnelStatusMenu/Linux/StatusNotifierItemAdaptor.h>

#include <utility>

namespace Varnel {

StatusNotifierItemAdaptor::StatusNotifierItemAdaptor(QObject* parent, QString identifier, ItemFace face,
                                                     std::function<void()> openMenu)
    : QDBusAbstractAdaptor(parent)
    , m_identifier(std::move(identifier))
    , m_face(std::move(face))
    , m_openMenu(std::move(openMenu)) {}

void StatusNotifierItemAdaptor::setFace(const ItemFace& face) {
    const ItemFace old = std::exchange(m_face, face);
    if (face.title != old.title) {
        Q_EMIT NewTitle();
    }
    if (face.icon != old.icon) {
        Q_EMIT NewIcon();
    }
    if (face.toolTip != old.toolTip) {
        Q_EMIT NewToolTip();
    }
}

void StatusNotifierItemAdaptor::Activate(int /*x*/, int /*y*/) {
    openMenuSoon();
}

void StatusNotifierItemAdaptor::SecondaryActivate(int /*x*/, int /*y*/) {
    openMenuSoon();
}

void StatusNotifierItemAdaptor::ContextMenu(int /*x*/, int /*y*/) {
    openMenuSoon();
}

void StatusNotifierItemAdaptor::Scroll(int /*delta*/, const QString& /*orientation*/) {}

void StatusNotifierItemAdaptor::openMenuSoon() {
    // The panel gets its reply before the menu takes the pointer.
    QMetaObject::invokeMethod(
        this, [this] { m_openMenu(); }, Qt::QueuedConnection);
}

} // namespace Varnel
