#pragma once

#include <QByteArray>
#include <QSet>

#include <random>

namespace norvex::Privacy {

/// Invents values in the shape of others. The result depends on the shape and on earlier results, not on the value
/// itself, so that nothing leads back to the value.
class PseudonymGenerator
{
public:
    /// Keeps a private value from becoming the pseudonym of another.
    void reserve(const QByteArray& value) { taken_.insert(value.toLower()); }

    /// A text of the same length: digits for digits, letters for letters in their case (hexadecimal ones if there are no
    /// others). Other characters stay.
    QByteArray text(const QByteArray& utf8);
    /// As many bytes. The zero bytes around them stay.
    QByteArray bytes(const QByteArray& original);
    /// As many bytes, for the device half of an address, where zero bytes tell as much as others.
    QByteArray device(const QByteArray& original);
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
