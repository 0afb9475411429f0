/// The least that a program with a window takes: what the viewer's start is compared with.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setObjectName(QStringLiteral("text")); // for endWhenPainted
    window.show();
    return QApplication::exec();
}
