#include "systeminfo/privacy/replacements.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace norvex::Privacy {

namespace {

constexpr int manyBytes = 64; // fewer are compared faster than hashed

/// In ASCII, whatever the locale.
char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

char upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

QByteArray folded(QByteArray bytes)
{
    std::transform(bytes.begin(), bytes.end(), bytes.begin(), lower);
    return bytes;
}

bool isWordByte(char c)
{
    return (c & 0x80) != 0 || (c >= '0' && c <= '9') || (lower(c) >= 'a' && lower(c) <= 'z');
}

bool endsComponent(char c)
{
    return c == '/' || c == '\0';
}

bool isSlash(char c)
{
    return c == '/' || c == '\\';
}

bool stands(const QByteArray& bytes, int start, int end, Replacements::Where where)
{
    using Where = Replacements::Where;
    const auto isFree = [&bytes, where](int place) {
        if (place < 0 || place >= bytes.size() || where == Where::Anywhere) {
            return true;
        }
        const char c = bytes.at(place);
        return where == Where::Word ? !isWordByte(c) : where == Where::Folder ? isSlash(c) : endsComponent(c);
    };
    const bool isWhole = start == 0 && end == bytes.size();
    return isFree(start - 1) && isFree(end) && !(where == Where::Folder && isWhole);
}

QByteArray inCaseOf(const QByteArray& found, QByteArray replacement, Replacements::Letters letters)
{
    if (letters == Replacements::Letters::EachAsFound) {
        for (int i = 0; i < std::min(found.size(), replacement.size()); ++i) {
            const char c = found.at(i);
            replacement[i] = lower(c) != c ? upper(replacement.at(i))
                                           : (upper(c) != c ? lower(replacement.at(i)) : replacement.at(i));
        }
        return replacement;
    }
    const bool hasUpper = std::any_of(found.begin(), found.end(), [](char c) { return lower(c) != c; });
    const bool hasLower = std::any_of(found.begin(), found.end(), [](char c) { return upper(c) != c; });
    if (letters == Replacements::Letters::AllAsFound && hasUpper != hasLower) {
        std::transform(replacement.begin(), replacement.end(), replacement.begin(), hasUpper ? upper : lower);
    }
    return replacement;
}

} // namespace

void Replacements::add(const QByteArray& sequence, const QByteArray& replacement, Where where,
                       Letters letters)
{
    if (sequence.isEmpty()) {
        return;
    }
    const bool isExact = letters == Letters::Exact;
    const QByteArray walked = isExact ? sequence : folded(sequence);
    const std::uint32_t node = nodeOf(walked, isExact ? exactRoot : foldedRoot);
    begins_[static_cast<unsigned char>(lower(walked.at(0)))] = true;
    if (nodes_[node].target == 0) {
        const std::size_t begin = append(replacement.constData(), replacement.size());
        targets_.push_back({begin, replacement.size(), where, letters});
        nodes_[node].target = static_cast<std::uint32_t>(targets_.size() - 1);
    }
}

/// The node at whose end a sequence ends.
std::uint32_t Replacements::nodeOf(const QByteArray& sequence, std::uint32_t root)
{
    std::uint32_t node = root;
    for (int place = 0; place < sequence.size();) {
        const std::uint32_t next = nodeBelow(node, sequence.at(place));
        if (next == 0) {
            return addBelow(node, sequence, place);
        }
        const char* const bytes = bytesOf(nodes_[next]);
        const int most = std::min(nodes_[next].size, sequence.size() - place);
        const char* const differs = std::mismatch(bytes, bytes + most, sequence.constData() + place).first;
        const int common = static_cast<int>(differs - bytes);
        if (common < nodes_[next].size) {
            split(next, common);
        }
        place += common;
        node = next;
    }
    return node;
}

std::uint32_t Replacements::addBelow(std::uint32_t node, const QByteArray& sequence, int begin)
{
    Node added;
    added.sibling = nodes_[node].child;
    added.size = sequence.size() - begin;
    added.first = sequence.at(begin);
    if (added.size > manyBytes) {
        added.hash = hashOf(sequence.constData() + begin, added.size);
    }
    added.begin = append(sequence.constData() + begin, added.size);
    nodes_.push_back(added);
    nodes_[node].child = static_cast<std::uint32_t>(nodes_.size() - 1);
    return nodes_[node].child;
}

std::size_t Replacements::append(const char* bytes, int size)
{
    const std::size_t begin = bytes_.size();
    bytes_.append(bytes, static_cast<std::size_t>(size));
    return begin;
}

/// Leaves a node its first bytes, and moves the others to one below it.
void Replacements::split(std::uint32_t node, int size)
{
    Node head = nodes_[node];
    Node tail = head;
    tail.sibling = 0;
    tail.begin += static_cast<std::size_t>(size);
    tail.size -= size;
    tail.first = bytesOf(tail)[0];
    const ByteHash headHash = hashOf(bytesOf(head), size);
    tail.hash = tail.size > manyBytes ? hashOfTail(head.hash, headHash, tail.size) : 0;
    head.size = size;
    head.hash = headHash;
    head.target = 0;
    head.child = static_cast<std::uint32_t>(nodes_.size());
    nodes_.push_back(tail);
    nodes_[node] = head;
}

std::uint32_t Replacements::nodeBelow(std::uint32_t node, char byte) const
{
    std::uint32_t next = nodes_[node].child;
    while (next != 0 && nodes_[next].first != byte) {
        next = nodes_[next].sibling;
    }
    return next;
}

bool Replacements::standsAt(const Node& node, const QByteArray& bytes, PartHashes& hashes, int start) const
{
    // Only hashes keep the time in proportion: a text that repeats itself has the begin of a long sequence at many places.
    const int compared = std::min(node.size, manyBytes);
    return bytes.size() - start >= node.size &&
           std::memcmp(bytes.constData() + start, bytesOf(node), static_cast<std::size_t>(compared)) == 0 &&
           (node.size <= manyBytes || hashes.of(start, start + node.size) == node.hash);
}

Replacements::Found Replacements::longestFrom(std::uint32_t root, const QByteArray& bytes, PartHashes& hashes,
                                              int start) const
{
    Found longest;
    std::uint32_t node = root;
    for (int end = start; end < bytes.size();) {
        node = nodeBelow(node, bytes.at(end));
        if (node == 0 || !standsAt(nodes_[node], bytes, hashes, end)) {
            break;
        }
        end += nodes_[node].size;
        const Target& target = targets_[nodes_[node].target];
        if (nodes_[node].target != 0 && stands(bytes, start, end, target.where)) {
            longest = {&target, end - start};
        }
    }
    return longest;
}

QByteArray Replacements::replaced(const QByteArray& bytes) const
{
    const QByteArray foldedBytes = folded(bytes);
    PartHashes hashes(bytes);
    PartHashes foldedHashes(foldedBytes);
    QByteArray result;
    int copied = 0;
    for (int i = 0; i < bytes.size();) {
        if (!begins_[static_cast<unsigned char>(foldedBytes.at(i))]) {
            ++i;
            continue;
        }
        const Found exact = longestFrom(exactRoot, bytes, hashes, i);
        Found found = longestFrom(foldedRoot, foldedBytes, foldedHashes, i);
        if (exact.length > found.length) {
            found = exact;
        }
        if (found.target == nullptr) {
            ++i;
            continue;
        }
        result += bytes.mid(copied, i - copied);
        result += inCaseOf(bytes.mid(i, found.length), replacementOf(*found.target), found.target->letters);
        i += found.length;
        copied = i;
    }
    return copied == 0 ? bytes : result + bytes.mid(copied);
}

QString Replacements::replacedInText(const QString& text) const
{
    const auto isAscii = [](QChar c) { return c.unicode() < 0x80; };
    if (bytes_.empty() || text.isEmpty()) {
        return text;
    }
    if (std::all_of(text.begin(), text.end(), isAscii)) {
        const QByteArray bytes = text.toLatin1();
        const QByteArray other = replaced(bytes);
        return other == bytes ? text : QString::fromUtf8(other);
    }
    QString result;
    int copied = 0;
    for (int i = 0; i <= text.size(); ++i) {
        const bool isEnd = i == text.size();
        const QChar c = isEnd ? QChar() : text.at(i);
        // UTF-8 has no half of a surrogate pair, and a reader of it drops the byte-order mark.
        const bool isPair =
            !isEnd && c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair) {
            ++i;
            continue;
        }
        const bool separates = !isEnd && !isAscii(c) &&
                               (c.isPunct() || c.isSpace() || c.isSymbol() || c.isSurrogate() ||
                                c == QChar(QChar::ByteOrderMark));
        if (isEnd || separates) {
            const QByteArray bytes = text.mid(copied, i - copied).toUtf8();
            const QByteArray other = replaced(bytes);
            result += other == bytes ? text.mid(copied, i - copied) : QString::fromUtf8(other);
            result += isEnd ? QString() : QString(c);
            copied = i + 1;
        }
    }
    return result;
}

} // namespace norvex::Privacy
