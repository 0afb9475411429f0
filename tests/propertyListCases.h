#pragma once

#include "machelpers/norvexMacHelpers.h"

#include <QFile>
#include <QTest>

/// @file
/// Property lists and key paths on which all systems agree. GNUstep reads a dictionary from UTF-8 text only, so
/// binary lists and other encodings are not among them.

inline QByteArray propertyList(const char* name)
{
    QFile file(QStringLiteral(NORVEX_TEST_DATA "/propertyLists/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

/// The string of a property list with these contents, or the helper's code. The list is written to @p file.
inline QByteArray lookUpIn(const QString& file, const QByteArray& contents, const char* keyPath = "k")
{
    QFile output(file);
    if (!output.open(QIODevice::WriteOnly) || output.write(contents) != contents.size()) {
        return "not written";
    }
    output.close();
    QByteArray buffer(64, '#');
    const int code =
        getValueForKeyInPropertyList(QFile::encodeName(file), keyPath, buffer.data(), buffer.size());
    return code == 0 ? QByteArray(buffer.constData()) : QByteArray::number(code);
}

/// The rows of a test function with the columns contents, keyPath and expected.
inline void addPropertyListCases()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("keyPath");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray xml = propertyList("xml.plist");
    const struct
    {
        const char* name;
        QByteArray contents;
        const char* keyPath;
        const char* expected;
    } rows[] = {
        {"XML", xml, "t", "a <& \u00fc"},
        {"nested, empty text", xml, "d.d.k", ""},
        {"number", xml, "n", "-2"},
        {"through a number", xml, "n.k", "-2"},
        {"number of a text", xml, "k.length", "-2"},
        {"through an array", xml, "a.k", "-2"},
        {"dictionary", xml, "d.d", "-2"},
        {"path with an end left out", xml, "k.", "-2"},
        {"no such key", xml, "x", "-2"},
        {"number of keys", xml, "@count", "-2"},
        {"through no such key", xml, "x.y", "-2"},
        {"not UTF-8", xml, "\xff", "-2"},
        {"empty file", "", "k", "-2"},
        {"text", "hello", "k", "-2"},
        {"array", "<plist><array><string>k</string></array></plist>", "k", "-2"},
        {"cut off", xml.left(xml.size() - 12), "k", "-2"},
    };
    for (const auto& row : rows) {
        QTest::newRow(row.name) << row.contents << QByteArray(row.keyPath) << QByteArray(row.expected);
    }
}
