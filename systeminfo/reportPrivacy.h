#pragma once

#include "systeminfo/privacy/privateValues.h"
#include "systeminfo/reportParts.h"

namespace norvex::SystemInfo::Internal {

/// Where one section of a report has private values: by label, elsewhere, and in the lines of its blocks that are no
/// entries.
class SectionPrivacy
{
public:
    /// @param section null for one that is in no table: its labels say what stands behind them.
    static const SectionPrivacy& of(const SectionFormat* section);

    /// What the value of the entry is.
    Privacy::PrivateKind valueKind(const QString& text, const EntryPlace& entry) const;
    /// What labels and lines are.
    Privacy::PrivateKind otherKind() const { return otherKind_; }
    /// The same in a block: a port that a Bluetooth device offers bears its name.
    Privacy::PrivateKind valueKind(const QString& text, const EntryPlace& entry, bool isBluetooth) const;
    /// Whether a Bluetooth device offers the serial port that the block is about.
    static bool isBluetooth(const QString& text, const Piece& block, const SectionFormat& format);
    /// What a block's own lines are.
    Privacy::PrivateKind blockKind() const { return blockKind_; }

private:
    struct Row
    {
        const char* label;
        Privacy::PrivateKind kind;
    };

    static std::vector<SectionPrivacy> all();

    std::vector<Row> rows_;
    bool isKnown_ = false;
    Privacy::PrivateKind otherKind_ = Privacy::PrivateKind::None;
    Privacy::PrivateKind blockKind_ = Privacy::PrivateKind::None;
};

} // namespace norvex::SystemInfo::Internal
