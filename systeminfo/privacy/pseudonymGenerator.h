#pragma once

#include <QByteArray>
#include <QSet>

#include <random>

namespace norvex::Privacy {

/// Invents values in the shape of others. What it invents depends on the shape and on what was invented
/// before, not on the value itself, so that nothing leads back from one to the other.
class PseudonymGenerator
{
public:
    /// Keeps a value that is to be replaced from being invented for another.
    void reserve(const QByteArray& value) { taken_.insert(value.toLower()); }

    /// A text with the same number of characters: digits for digits, letters for letters in their case,
    /// hexadecimal ones when there are no others; all else stays.
    QByteArray text(const QByteArray& utf8);
    /// Bytes of the same number. Zero bytes stay.
    QByteArray bytes(const QByteArray& original);
    /// A UUID of the same version and variant.
    QByteArray uuid(const QByteArray& original);

private:
    template <typename Invent>
    QByteArray untaken(const QByteArray& original, Invent invent);
    unsigned number(unsigned count) { return static_cast<unsigned>(engine_() % count); }
    ushort characterLike(ushort original, bool isHex);

    std::mt19937 engine_;
    QSet<QByteArray> taken_;
};

} // namespace norvex::Privacy
