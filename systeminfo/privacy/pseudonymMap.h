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

    /// Keeps a private value that is not added yet from becoming the pseudonym of another.
    void reserve(const QByteArray& value) { generator_.reserve(value); }
    void addAddress(const QByteArray& address); ///< of 6 bytes, or 8
    void addUuid(const QByteArray& uuid);       ///< of 16 bytes, as its text begins
    /// A text keeps the kind that it has first. Add names, then serial numbers, the longest first: they may contain the
    /// others; labels, which are searched for least, come last.
    void addText(const QByteArray& utf8, TextKind kind);
    /// A name that is private where a home folder stands in front of it, and nowhere else.
    void addFolder(const QByteArray& utf8);
    void addSerialBytes(const QByteArray& bytes);

    /// A value that is private as a whole; it stays if it is not.
    QByteArray replacedWhole(const QByteArray& value) const;
    QByteArray replacedAddress(const QByteArray& address) const;
    /// The key of a dictionary.
    QByteArray inKey(const QByteArray& key) const;
    QByteArray inText(const QByteArray& utf8) const;
    /// A model or a maker, where no name can stand.
    QByteArray inModel(const QByteArray& utf8) const { return numbers_.replaced(utf8); }
    QByteArray inData(const QByteArray& bytes) const { return data_.replaced(bytes); }

private:
    void addForm(const QByteArray& text, const QByteArray& replacement, Replacements::Where where,
                 Replacements::Letters letters);
    void addSpelledForms(const QByteArray& text, const QByteArray& replacement, TextKind kind);
    void addTextForm(const QByteArray& text, const QByteArray& replacement, TextKind kind);
    void addHexForm(const QByteArray& text, const QByteArray& replacement);
    void addBytes(const QByteArray& bytes, const QByteArray& replacement);
    void addAddressForms(const QByteArray& address, const QByteArray& replacement);
    void addDerivedForms(const QByteArray& device, const QByteArray& replacement);

    PseudonymGenerator generator_;
    QHash<QByteArray, QByteArray> whole_;     ///< of texts as they are compared, and of bytes
    QHash<QByteArray, QByteArray> addresses_; ///< whole ones, and their device parts
    Replacements texts_;
    Replacements data_;
    Replacements keys_;
    Replacements numbers_; ///< without names
};

} // namespace norvex::Privacy
