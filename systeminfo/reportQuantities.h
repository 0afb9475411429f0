#pragma once

#include "systeminfo/reportFormat.h"

#include <QString>
#include <QVector>

namespace norvex::SystemInfo::Internal {

/// A number as a report prints it, in its base unit and rounded down.
struct Quantity
{
    qint64 number;
    const char* unit;
};

/// The numbers in a value of that kind; none when one of them is negative or above 2^53, which is what a JSON reader
/// can be relied on to hold.
QVector<Quantity> quantitiesIn(const QString& value, ValueKind kind);

} // namespace norvex::SystemInfo::Internal
