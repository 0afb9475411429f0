/// The least that a program with Qt takes: what "norvex-systeminfo --version" is compared with.

#include <QCoreApplication>

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return 0;
}
