#include <VarnelStatusMenu/Linux/XEmbedStatusItem.h>

#include <VarnelStatusMenu/Linux/PlainMenu.h>
#include <VarnelStatusMenu/Linux/TitlePicture.h>

#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>

#include <utility>

namespace Varnel {

namespace {

/// The title in the sizes that trays give their icons; each is drawn by itself, because a scaled text blurs.
QIcon titleIcon(const QString& title) {
    QIcon icon;
    for (const int size : {16, 20, 22, 24, 28, 32, 36, 40, 44, 48, 64}) {
        icon.addPixmap(QPixmap::fromImage(squareTitlePicture(title, size)));
    }
    return icon;
}

} // namespace

XEmbedStatusItem::XEmbedStatusItem(StatusItemHandlers handlers)
    : m_handlers(std::move(handlers))
    , m_tray([this] {
        QMetaObject::invokeMethod(
            &m_context,
            [this] {
                if (m_availabilityChanged) {
                    m_availabilityChanged();
                }
            },
            Qt::QueuedConnection);
    }) {}

XEmbedStatusItem::~XEmbedStatusItem() = default;

StatusItemBackEnd::Availability XEmbedStatusItem::availability() const {
    return m_tray.isPresent() ? Availability::available : Availability::unavailable;
}

void XEmbedStatusItem::setAvailabilityHandler(std::function<void()> changed) {
    m_availabilityChanged = std::move(changed);
}

void XEmbedStatusItem::setContent(const StatusItemContent& content) {
    m_content = content;
    if (m_icon) {
        applyContent();
    }
}

void XEmbedStatusItem::applyContent() {
    m_icon->setToolTip(m_content.toolTip);
    if (m_icon->icon().isNull() || m_drawnTitle != m_content.title) {
        m_drawnTitle = m_content.title;
        m_icon->setIcon(titleIcon(m_content.title));
    }
}

void XEmbedStatusItem::setShown(bool isShown) {
    if (!isShown) {
        m_icon.reset();
    } else if (!m_icon) {
        makeIcon();
    }
}

void XEmbedStatusItem::makeIcon() {
    m_icon = std::make_unique<QSystemTrayIcon>();
    QObject::connect(m_icon.get(), &QSystemTrayIcon::activated, &m_context,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Context) {
                             popUpPlainMenu(m_content.menu, m_handlers);
                         } else {
                             m_handlers.openMenu();
                         }
                     });
    applyContent();
    m_icon->show();
}

} // namespace Varnel
