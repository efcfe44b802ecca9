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

/// The box that is open in this slot, else a new one.
QMessageBox& openBox(QPointer<QMessageBox>& slot, const QString& title) {
    if (!slot) {
        slot = new QMessageBox(QMessageBox::NoIcon, title, QString(), QMessageBox::Ok);
        slot->setAttribute(Qt::WA_DeleteOnClose);
        slot->setModal(false);
    }
    return *slot;
}

void bringToFront(QMessageBox& box) {
    box.setWindowState(box.windowState() & ~Qt::WindowMinimized);
    box.show();
    box.raise();
    box.activateWindow();
}
} // namespace

void showAboutPanel(const QString& version, const QString& iconPath) {
    static QPointer<QMessageBox> open;
    QMessageBox& box = openBox(open, QStringLiteral("About Varnel"));
    // All in one text: an informative text of its own would be wrapped at the width of the text above it.
    box.setText(QStringLiteral("<h2>Varnel</h2><p>Version %1</p>"
                               "<p>Watches your home solar installation<br>from the status area.</p>")
                    .arg(version.toHtmlEscaped()));
    box.setIconPixmap(aboutIcon(iconPath, box.devicePixelRatioF()));
    bringToFront(box);
}

void showNoUpdatesAlert() {
    static QPointer<QMessageBox> open;
    QMessageBox& box = openBox(open, QStringLiteral("Varnel"));
    box.setIcon(QMessageBox::Information);
    box.setText(QStringLiteral("Check for Updates"));
    box.setInformativeText(QStringLiteral("Automatic updates are not configured for this build yet."));
    bringToFront(box);
}

} // namespace Varnel::ApplicationDialogs
