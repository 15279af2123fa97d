// The smallest program of its kind: what any Qt Widgets program with a tray icon costs on the machine that measures.
// With --once it ends as soon as it has started.

#include <QApplication>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::gray);
    QSystemTrayIcon icon{QIcon(pixmap)};
    icon.show();
    if (QApplication::arguments().contains(QStringLiteral("--once")))
        QTimer::singleShot(0, &application, &QApplication::quit);
    return QApplication::exec();
}
