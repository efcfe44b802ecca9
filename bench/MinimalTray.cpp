// The least a program of this kind can be, as a yardstick of memory and start: an item in the tray with a menu, and
// one request through a network manager. usage: minimal-tray URL [tls]; with "tls" the TLS library is loaded too,
// which a request to an https address would do.

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPainter>
#include <QPixmap>
#include <QSslSocket>
#include <QSystemTrayIcon>

#include <cstdio>

namespace {

QIcon titleIcon() {
    QPixmap pixmap(64, 22);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.drawText(pixmap.rect(), Qt::AlignCenter, QStringLiteral("3.42 kW"));
    return QIcon(pixmap);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList arguments = QApplication::arguments();
    QMenu menu;
    menu.addAction(QStringLiteral("Current Output: 3.42 kW"));
    menu.addAction(QStringLiteral("Today's Output: 12.3 kWh"));
    menu.addAction(QStringLiteral("Last Updated: 12:00"));
    menu.addSeparator();
    menu.addAction(QStringLiteral("Refresh"));
    menu.addAction(QStringLiteral("Settings"));
    menu.addAction(QStringLiteral("Quit"), &application, &QCoreApplication::quit);
    QSystemTrayIcon icon(titleIcon());
    icon.setContextMenu(&menu);
    QObject::connect(&icon, &QSystemTrayIcon::activated, &menu, [&menu] { menu.popup(QCursor::pos()); });
    icon.show();
    QNetworkAccessManager manager;
    if (arguments.contains(QStringLiteral("tls"))) {
        std::printf("%s\n", qPrintable(QSslSocket::sslLibraryVersionString())); // loads it
    }
    QNetworkReply* reply = manager.get(QNetworkRequest(QUrl(arguments.value(1))));
    QObject::connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
    return QApplication::exec();
}
