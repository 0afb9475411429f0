#pragma once

#include "systeminfo/privacy/pseudonymGenerator.h"
#include "systeminfo/privacy/replacements.h"

#include <QHash>

namespace norvex::Privacy {

/// Private values and their pseudonyms, in all forms in which they can stand elsewhere.
class PseudonymMap
{
public:
    enum class TextKind { Serial, Name, Label };

    void addAddress(const QByteArray& address); ///< of 6 bytes, or 8
    void addUuid(const QByteArray& uuid);       ///< of 16 bytes, as its text begins
    /// Add serial numbers last, the longest first: they may contain the other values.
    void addText(const QByteArray& utf8, TextKind kind);
    void addSerialBytes(const QByteArray& bytes);

    /// A value that is private as a whole; it stays if it is not.
    QByteArray replacedWhole(const QByteArray& value) const;
    QByteArray replacedAddress(const QByteArray& address) const;
    /// The key of a dictionary.
    QByteArray inKey(const QByteArray& key) const;
    QByteArray inText(const QByteArray& utf8) const { return texts_.replaced(utf8); }
    QByteArray inData(const QByteArray& bytes) const { return data_.replaced(bytes); }

private:
    void addForm(const QByteArray& text, const QByteArray& replacement, Replacements::Where where,
                 Replacements::Letters letters);
    void addHexForm(const QByteArray& text, const QByteArray& replacement);
    void addBytes(const QByteArray& bytes, const QByteArray& replacement);
    void addAddressForms(const QByteArray& address, const QByteArray& replacement);
    void addDerivedForms(const QByteArray& device, const QByteArray& replacement);

    PseudonymGenerator generator_;
    QHash<QByteArray, QByteArray> whole_;     ///< of texts in lower case, and of bytes
    QHash<QByteArray, QByteArray> addresses_; ///< whole ones, and their device parts
    Replacements texts_;
    Replacements data_;
    Replacements keys_;
};

} // namespace norvex::Privacy
