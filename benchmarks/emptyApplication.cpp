// The least time of any program that asks Qt for screens and printers, beside which the tool's whole run is measured.

#include <QApplication>
#include <QPrinterInfo>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    return QPrinterInfo::availablePrinterNames().isEmpty() ? 0 : 1;
}
