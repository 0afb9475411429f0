#pragma once

#include "systeminfo/mac/platform/recorded/recordedMachine.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QBuffer>
#include <QDir>
#include <QTest>

/// Collects what is logged while it lives, a message as Qt prints it with the pattern "%{type}: %{message}|".
class LoggedMessages
{
public:
    LoggedMessages() : previous_(qInstallMessageHandler(collect)) { text().clear(); }
    LoggedMessages(const LoggedMessages&) = delete;
    LoggedMessages& operator=(const LoggedMessages&) = delete;
    ~LoggedMessages() { qInstallMessageHandler(previous_); }

    static QString& text()
    {
        static QString logged;
        return logged;
    }

private:
    static void collect(QtMsgType type, const QMessageLogContext&, const QString& message)
    {
        text() += QLatin1String(type == QtWarningMsg ? "warning: " : "other: ") + message + "|\n";
    }

    const QtMessageHandler previous_;
};

/// Compares texts line by line, so that the failure shows the first line that differs.
inline void sameLines(const QString& actual, const QString& expected)
{
    const QStringList lines = actual.split('\n');
    const QStringList expectedLines = expected.split('\n');
    for (int i = 0; i < std::min(lines.size(), expectedLines.size()); ++i) {
        const QByteArray line = "line " + QByteArray::number(i + 1);
        if (!QTest::qCompare(lines[i], expectedLines[i], line.constData(), "expected", __FILE__, __LINE__)) {
            return;
        }
    }
    QTest::qCompare(actual, expected, "whole text", "expected", __FILE__, __LINE__);
}

inline QByteArray contentsOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// How many groups of sections a half of the report has. A separator stands behind each.
inline int groupCount(norvex::SystemInfo::ReportHalf half)
{
    QSet<int> groups;
    for (const norvex::SystemInfo::SectionInfo& section : norvex::SystemInfo::sections()) {
        if (section.half == half) {
            groups += section.group;
        }
    }
    return groups.size();
}

/// The folder of recordings that NORVEX_RECORDINGS names instead of the tests' own, so that any collection of
/// recordings can be put through the same test.
inline QDir recordingFolder()
{
    return QDir(qEnvironmentVariable("NORVEX_RECORDINGS", NORVEX_TEST_DATA "/recordings"), "*.plist",
                QDir::Name, QDir::Files);
}

/// A machine from the inside of a recording's top-level dictionary, null with the reason in @p failure.
inline std::shared_ptr<const norvex::Machine> machineOf(const QByteArray& content,
                                                        norvex::PropertyListFailure& failure)
{
    QByteArray document =
        "<plist><dict><key>recording</key><integer>1</integer>" + content + "</dict></plist>";
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return norvex::readRecording(buffer, failure);
}

/// Makes such a machine the one that answers; false, with the reason in the test's log, when it is refused.
inline bool useMachine(const QByteArray& content)
{
    norvex::PropertyListFailure failure;
    norvex::setMachine(machineOf(content, failure));
    return QTest::qVerify(failure.reason.isEmpty(), "recording accepted", qPrintable(failure.reason),
                          __FILE__, __LINE__);
}
