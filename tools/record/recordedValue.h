#pragma once

#include <QByteArray>

#include <cstdint>
#include <utility>
#include <vector>

namespace norvex::Tool {

/// A value of a recording under construction. Texts and keys are UTF-8 and hold only what XML can hold.
struct RecordedValue
{
    enum class Kind { Text, Boolean, Integer, Real, Data, Dictionary, Array };
    struct Item;

    static RecordedValue text(QByteArray utf8);
    static RecordedValue data(QByteArray bytes);
    static RecordedValue boolean(bool value);
    /// @param size the integer's stored size in bits: 8, 16, 32 or 64
    static RecordedValue integer(int size, std::int64_t value);
    static RecordedValue real(double value);
    static RecordedValue dictionary();
    static RecordedValue array();

    /// Adds to a dictionary.
    void add(const QByteArray& key, RecordedValue value);
    /// Adds to an array.
    void add(RecordedValue value) { add(QByteArray(), std::move(value)); }
    /// Adds a dictionary or an array to a dictionary unless it is empty, which says the same as its absence.
    void addUnlessEmpty(const QByteArray& key, RecordedValue container);
    /// The value of a key in a dictionary, null without one.
    const RecordedValue* find(const char* key) const;
    RecordedValue* find(const char* key);
    void sortKeys();
    /// The bits of an integer as an unsigned number of its size.
    std::uint64_t unsignedNumber() const;

    Kind kind;
    int size = 0;            ///< of an integer
    std::int64_t number = 0; ///< an integer; a boolean as 0 or 1
    double realNumber = 0;
    QByteArray bytes;        ///< of a text or data
    std::vector<Item> items; ///< of a dictionary; of an array, without keys
};

struct RecordedValue::Item
{
    QByteArray key;
    RecordedValue value;
};

} // namespace norvex::Tool
