// The smallest program of its kind: what any Qt Widgets program with a tray icon costs on the machine that measures.

#include <QApplication>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::gray);
    QSystemTrayIcon icon{QIcon(pixmap)};
    icon.show();
    return QApplication::exec();
}
