#include <Varnel/ApplicationDialogs.h>

#include <QImageReader>
#include <QMessageBox>
#include <QPixmap>
#include <QPointer>

namespace Varnel::ApplicationDialogs {

namespace {
constexpr int aboutIconSize = 96;

QPixmap aboutIcon(const QString& path, qreal devicePixelRatio) {
    if (path.isEmpty()) {
        return {};
    }
    QImageReader reader(path);
    reader.setScaledSize(QSize(aboutIconSize, aboutIconSize) * devicePixelRatio);
    QPixmap pixmap = QPixmap::fromImage(reader.read());
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

/// An empty box in this slot; one that is still open there goes.
QMessageBox& freshBox(QPointer<QMessageBox>& slot, const QString& title) {
    delete slot.data();
    slot = new QMessageBox(QMessageBox::NoIcon, title, QString(), QMessageBox::Ok);
    slot->setAttribute(Qt::WA_DeleteOnClose);
    slot->setModal(false);
    return *slot;
}

void bringToFront(QMessageBox& box) {
    box.show();
    box.raise();
    box.activateWindow();
}
} // namespace

void showAboutPanel(const QString& version, const QString& iconPath) {
    static QPointer<QMessageBox> open;
    QMessageBox& box = freshBox(open, QStringLiteral("About Varnel"));
    box.setText(QStringLiteral("<h2>Varnel</h2><p>Version %1</p>").arg(version.toHtmlEscaped()));
    box.setInformativeText(QStringLiteral("Watches your home solar installation from the status area."));
    box.setIconPixmap(aboutIcon(iconPath, box.devicePixelRatioF()));
    bringToFront(box);
}

void showNoUpdatesAlert() {
    static QPointer<QMessageBox> open;
    QMessageBox& box = freshBox(open, QStringLiteral("Varnel"));
    box.setIcon(QMessageBox::Information);
    box.setText(QStringLiteral("Check for Updates"));
    box.setInformativeText(QStringLiteral("Automatic updates are not configured for this build yet."));
    bringToFront(box);
}

} // namespace Varnel::ApplicationDialogs
