#pragma once

#include <QFile>
#include <QStringList>

#include <random>

/// Reports made of lines of real ones and of what a reader could trip over.
class ReportGenerator
{
public:
    /// @param pieces further lines, and what lines are glued together from
    explicit ReportGenerator(const QStringList& pieces = {}) : pieces_(pieces)
    {
        for (const char* file :
             {"/reports/macintosh.txt", "/reports/windows.txt", "/recordings/report-complete.txt"}) {
            lines_ += read(NORVEX_TEST_DATA + QString(file)).split('\n');
        }
        lines_ += (QString(72, '-') +
                   "\nSystem environemnt (QProcess::systemEnvironment()):\n#### QGLFormat #### \nhasOpenGL   "
                   "      0\n" +
                   "  NAME=VALUE\n  BASH_FUNC_a%%=() {\n\r\n\t\n: \n #\n#1\nCard #1\n/\n" + QString(55, '_') +
                   "\n" + QString(40, '_') + "\nQScreen\nVolumes\nModel: \nCPU family:\nAddresses:\n" +
                   "Library Paths:        a\n                      b\n'\n''\n\\[/]: \\")
                      .split('\n');
        lines_ += {QString(QChar(0xd800)), "a" + QString(QChar(0xdc00)) + ": b", QString(QChar(0)),
                   "\xf0\x9f\x98\x80: 1"};
    }

    QString next()
    {
        QString text;
        for (int count = number(60); count > 0; --count) {
            QString line = lines_.at(number(lines_.size()));
            for (int glued = pieces_.isEmpty() ? 0 : number(8); glued > 0; --glued) {
                line += pieces_.at(number(pieces_.size()));
            }
            if (number(20) == 0) {
                line = line.left(number(line.size() + 1));
            }
            const QString ends[] = {"\r\n", "", "\r", "\n\n", QChar(0xd83d)};
            text += line + (number(30) == 0 ? ends[number(5)] : QString("\n"));
        }
        return text;
    }

private:
    static QString read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    int number(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

    QStringList lines_;
    QStringList pieces_;
    std::mt19937 random_{14};
};
