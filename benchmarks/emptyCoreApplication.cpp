// The least time of any program with Qt, beside which "norvex-systeminfo --version" is measured.

#include <QCoreApplication>

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return 0;
}
