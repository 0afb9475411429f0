/// The least that a program takes which asks Qt for screens and printers: what the tool's whole run is compared with.

#include <QApplication>
#include <QPrinterInfo>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    return QPrinterInfo::availablePrinterNames().isEmpty() ? 0 : 1;
}
