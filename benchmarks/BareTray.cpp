// The floor of the tray measurements: the least Qt Widgets program with a tray item, an icon of the sizes
// that Wakeloft draws and a menu as long as its own, in the environment that Wakeloft makes for itself.

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv) {
    if (qgetenv("XDG_CURRENT_DESKTOP") != "KDE")
        qputenv("XDG_CURRENT_DESKTOP", "X-Wakeloft"); // or Qt loads GTK
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    const QApplication qt(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48}) {
        QPixmap pixmap(size, size);
        pixmap.fill(QColor::fromRgb(0x7a7a7a));
        icon.addPixmap(pixmap);
    }
    QMenu menu;
    menu.addAction(QStringLiteral("Open"));
    menu.addSeparator();
    for (const char* title : {"Turn on", "30 min", "1 hr", "2 hr"})
        menu.addAction(QString::fromLatin1(title));
    menu.addSeparator();
    menu.addAction(QStringLiteral("Quit"));

    QSystemTrayIcon item(icon);
    item.setContextMenu(&menu);
    item.show();
    return QApplication::exec();
}
