#pragma once

#include "systeminfo/privacy/byteHashes.h"
#include "systeminfo/privacy/privateValues.h"
#include "systeminfo/privacy/replacements.h"

#include <QSet>
#include <QString>

#include <array>
#include <cstdint>
#include <vector>

namespace norvex::Privacy {

/// What is numbered apart from others.
enum class Family : std::uint8_t {
    Serial,
    Person,
    Host,
    Domain,
    Label,
    Network,
    Device,
    Printer,
    Token,
    Uuid,
    Address, ///< the device half of a hardware address
    IpV4,
    IpV6,
    Count
};

/// Private values and the visible forms that stand for them, such as "SERIAL-1" and "user1". Forms are numbered in the
/// order in which their values were learned. A form that a text has already stays, and no other value gets it.
class FixedForms
{
public:
    /// Learns the private values in a text of that kind.
    void learn(const QString& text, PrivateKind kind);
    /// Gives forms to what was learned. Call it before replaced().
    void settle();
    /// The text with forms for its private values, and for known ones where a name of their kind can stand.
    QString replaced(const QString& text, PrivateKind kind) const;

private:
    class Reader;
    class Learner;
    class Replacer;

    struct Learned
    {
        Family family;
        std::uint32_t index; ///< in numbers_
        QString text;        ///< to search for, unless it is a word
        ByteHash word;       ///< 0: it is none
        bool isPlural;       ///< the word has an "s" behind it
    };
    /// A value of letters and digits alone, which is found by its hash: it takes a third of the memory.
    struct Word
    {
        Family family;
        bool isPlural;
        std::uint32_t number;
    };

    static ByteHash keyHash(Family family, const QString& key);
    static ByteHash wordHash(const QString& word);
    void addLearned(Family family, std::uint32_t index, const QString& text);
    void searchFor(const Learned& learned, std::uint32_t number);
    void searchForName(Replacements& replacements, const QString& name, const QString& form,
                       Replacements::Where where, Replacements::Letters letters);
    QString withoutWords(const QString& text, PrivateKind kind) const;
    static QString formOfWord(const QString& word, const Word& known);

    HashTable<std::uint32_t> indices_;
    std::vector<std::uint32_t> numbers_; ///< 0 until settle()
    std::vector<Learned> learned_;       ///< since the last settle()
    std::array<QSet<std::uint32_t>, std::size_t(Family::Count)> taken_;
    std::array<std::uint32_t, std::size_t(Family::Count)> last_ = {};
    HashTable<Word> words_;
    Replacements models_;  ///< what stands where no name can, too
    Replacements tokens_;  ///< values of the environment
    Replacements names_;   ///< of all but volumes
    Replacements labels_;  ///< names of volumes
    int spelledNames_ = 0; ///< names that are searched for in all their spellings
};

} // namespace norvex::Privacy
