// The floor of the tray measurements: the least Qt Widgets program with a tray item, an icon of the sizes
// that Wakeloft draws and a menu as long as its own, in the environment that Wakeloft makes for itself. A
// press opens and closes a widget as large as BARE_PANEL says: empty, or where BARE_PANEL_FILLED is set, with
// the toolkit's own labels and buttons for as much as Wakeloft's panel shows, one of which counts seconds.

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

namespace {

void fill(QWidget& panel) {
    auto* column = new QVBoxLayout(&panel);
    const auto addLabel = [&](const char* text) {
        auto* label = new QLabel(QString::fromLatin1(text));
        label->setWordWrap(true);
        column->addWidget(label);
    };
    addLabel("Wakeloft");
    addLabel("Your computer can sleep.");
    auto* countdown = new QTimer(&panel);
    QObject::connect(countdown, &QTimer::timeout, &panel, [&panel, seconds = 0]() mutable {
        if (panel.isVisible())
            panel.findChildren<QLabel*>().at(1)->setText(QStringLiteral("Awake for %1").arg(++seconds));
    });
    countdown->start(1000);
    addLabel("Keeps the computer awake and its display on until you turn it off, or until the time is over.");
    column->addWidget(new QPushButton(QStringLiteral("Turn on")));
    addLabel("Turn on for:");
    auto* grid = new QGridLayout;
    for (int place = 0; place < 4; ++place)
        grid->addWidget(new QPushButton(QStringLiteral("%1 min").arg(15 * place)), place / 2, place % 2);
    column->addLayout(grid);
    for (const char* title : {"Deepwake", "Open at login"}) {
        column->addWidget(new QCheckBox(QString::fromLatin1(title)));
        addLabel("Keeps it awake with the lid closed, for as long as this is turned on.");
    }
    column->addWidget(new QPushButton(QStringLiteral("Settings")));
}

} // namespace

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

    QWidget panel(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    panel.setAttribute(Qt::WA_QuitOnClose, false);
    const QList<QByteArray> size = qgetenv("BARE_PANEL").split('x');
    if (size.size() == 2)
        panel.setFixedSize(size[0].toInt(), size[1].toInt());
    bool isToBeFilled = qEnvironmentVariableIsSet("BARE_PANEL_FILLED");
    QObject::connect(&item, &QSystemTrayIcon::activated, &panel, [&](QSystemTrayIcon::ActivationReason) {
        if (std::exchange(isToBeFilled, false))
            fill(panel);
        if (panel.isVisible()) {
            panel.hide();
            return;
        }
        panel.show();
        panel.raise();
        panel.activateWindow();
    });
    return QApplication::exec();
}
