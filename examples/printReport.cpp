// Prints this machine's report. --no-opengl leaves its OpenGL section out.

#include <systeminfo/norvexSystemInfo.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const bool skipOpenGL = application.arguments().contains(QStringLiteral("--no-opengl"));
    const QByteArray report = norvex::SystemInfo::allInfos(skipOpenGL).toUtf8();
    return std::fputs(report.constData(), stdout) == EOF ? 1 : 0;
}
