#pragma once

#include <QFile>
#include <QTest>
#include <QVector>

/// @file
/// Test cases in data files. What stands in front of the first case explains the file. "== " begins a case with its
/// name, and "--" stands between its texts. A text ends without a line feed unless an empty line is its last; "␍"
/// stands for a carriage return.

struct Case
{
    QString name;
    QStringList texts;
};

inline QVector<Case> casesIn(const char* fileName)
{
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/") + QLatin1String(fileName));
    QVector<Case> cases;
    if (!file.open(QIODevice::ReadOnly)) {
        return cases;
    }
    QStringList* texts = nullptr;
    bool continues = false;
    QString contents = QString::fromUtf8(file.readAll()).replace(QChar(0x240d), '\r');
    contents.chop(1);
    for (const QString& line : contents.split('\n')) {
        if (line.startsWith("== ")) {
            cases.append({line.mid(3), {}});
            texts = &cases.last().texts;
            continues = false;
        } else if (line == "--") {
            continues = false;
        } else if (texts != nullptr) {
            *texts += continues ? texts->takeLast() + '\n' + line : line;
            continues = true;
        }
    }
    return cases;
}

/// The rows of a test function with these columns of texts.
inline void addCases(const char* fileName, const QList<const char*>& columns)
{
    for (const char* column : columns) {
        QTest::addColumn<QString>(column);
    }
    const QVector<Case> cases = casesIn(fileName);
    QVERIFY2(!cases.isEmpty(), fileName);
    for (const Case& each : cases) {
        QVERIFY2(each.texts.size() == columns.size(), qPrintable(each.name));
        QTestData& row = QTest::newRow(qPrintable(each.name));
        for (const QString& text : each.texts) {
            row << text;
        }
    }
}
