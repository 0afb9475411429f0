#include "systeminfo/privacy/replacements.h"

#include <algorithm>
#include <cctype>

namespace norvex::Privacy {

namespace {

// In ASCII, whatever the locale.
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

bool stands(const QByteArray& bytes, int start, int end, Replacements::Where where)
{
    const auto isFree = [&bytes, where](int place) {
        if (place < 0 || place >= bytes.size() || where == Replacements::Where::Anywhere) {
            return true;
        }
        return where == Replacements::Where::Word ? !isWordByte(bytes.at(place))
                                                  : endsComponent(bytes.at(place));
    };
    return isFree(start - 1) && isFree(end);
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
    std::uint32_t node = isExact ? exactRoot : foldedRoot;
    for (const char byte : walked) {
        std::uint32_t next = nodeBelow(node, byte);
        if (next == 0) {
            next = static_cast<std::uint32_t>(nodes_.size());
            nodes_.push_back({0, nodes_[node].child, 0, byte});
            nodes_[node].child = next;
        }
        node = next;
    }
    begins_[static_cast<unsigned char>(lower(walked.at(0)))] = true;
    if (nodes_[node].target == 0) {
        nodes_[node].target = static_cast<std::uint32_t>(targets_.size());
        targets_.push_back({replacement, where, letters});
    }
}

std::uint32_t Replacements::nodeBelow(std::uint32_t node, char byte) const
{
    std::uint32_t next = nodes_[node].child;
    while (next != 0 && nodes_[next].byte != byte) {
        next = nodes_[next].sibling;
    }
    return next;
}

Replacements::Found Replacements::longestFrom(std::uint32_t root, const QByteArray& bytes, int start) const
{
    Found longest;
    std::uint32_t node = root;
    for (int end = start; end < bytes.size();) {
        node = nodeBelow(node, bytes.at(end++));
        if (node == 0) {
            break;
        }
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
    QByteArray result;
    int copied = 0;
    for (int i = 0; i < bytes.size();) {
        if (!begins_[static_cast<unsigned char>(foldedBytes.at(i))]) {
            ++i;
            continue;
        }
        const Found exact = longestFrom(exactRoot, bytes, i);
        Found found = longestFrom(foldedRoot, foldedBytes, i);
        if (exact.length > found.length) {
            found = exact;
        }
        if (found.target == nullptr) {
            ++i;
            continue;
        }
        result += bytes.mid(copied, i - copied);
        result += inCaseOf(bytes.mid(i, found.length), found.target->replacement, found.target->letters);
        i += found.length;
        copied = i;
    }
    return copied == 0 ? bytes : result + bytes.mid(copied);
}

} // namespace norvex::Privacy
