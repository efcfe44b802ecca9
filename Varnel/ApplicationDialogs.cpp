#include <Varnel/ApplicationDialogs.h>

#include <QApplication>
#include <QCoreApplication>
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
        // The window from which the box was opened is active again behind it: left alone, some desktops activate none.
        QObject::connect(slot, &QDialog::finished, slot, [before = QPointer<QWidget>(QApplication::activeWindow())] {
            if (before) {
                before->activateWindow();
            }
        });
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

void showAboutPanel(const BundleInfo& bundle, const Appearance& appearance) {
    static QPointer<QMessageBox> open;
    QMessageBox& box = openBox(open, QCoreApplication::translate("ApplicationDialogs", "About Varnel"));
    // All in one text: an informative text of its own would be wrapped at the width of the text above it.
    box.setText(QCoreApplication::translate("ApplicationDialogs",
                                            "<h2>Varnel</h2><p>Version %1</p>"
                                            "<p>Watches your home solar installation<br>from the status area.</p>")
                    .arg(bundle.version.toHtmlEscaped()));
    const QString iconPath = bundle.iconPath(IconAppearanceMode::automatic, appearance.isDark());
    box.setIconPixmap(aboutIcon(iconPath, box.devicePixelRatioF()));
    bringToFront(box);
}

void showNoUpdatesAlert() {
    static QPointer<QMessageBox> open;
    QMessageBox& box = openBox(open, QStringLiteral("Varnel"));
    box.setIcon(QMessageBox::Information);
    box.setText(QCoreApplication::translate("ApplicationDialogs", "Check for Updates"));
    box.setInformativeText(
        QCoreApplication::translate("ApplicationDialogs", "Automatic updates are not configured for this build yet."));
    bringToFront(box);
}

} // namespace Varnel::ApplicationDialogs
