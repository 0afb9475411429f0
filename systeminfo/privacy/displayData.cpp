#include "systeminfo/privacy/displayData.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace norvex::Privacy {

namespace {

constexpr int blockSize = 128;
constexpr int serialOffset = 12;
constexpr int serialSize = 4;
constexpr int extensionCount = 126; ///< where a display's first block tells how many follow
constexpr int descriptorHead = 5;
constexpr int descriptorText = 13;

const QByteArray& header()
{
    static const QByteArray bytes("\0\xff\xff\xff\xff\xff\xff\0", 8);
    return bytes;
}

struct Range
{
    int start;
    int end;
};

/// The whole blocks of each display.
std::vector<Range> displaysIn(const QByteArray& data, bool isDisplay)
{
    std::vector<Range> displays;
    int start = isDisplay && data.size() >= blockSize ? 0 : data.indexOf(header());
    while (start >= 0 && start + blockSize <= data.size()) {
        const int extensions = static_cast<unsigned char>(data.at(start + extensionCount));
        const int blocks = std::min(1 + extensions, (data.size() - start) / blockSize);
        displays.push_back({start, start + blocks * blockSize});
        start = data.indexOf(header(), displays.back().end);
    }
    return displays;
}

/// Where the serial numbers that are texts stand. Extensions can have descriptors, too.
std::vector<Range> serialTextsIn(const QByteArray& data, const Range& display)
{
    static const QByteArray head("\0\0\0\xff\0", descriptorHead);
    const QByteArray blocks = data.mid(display.start, display.end - display.start);
    std::vector<Range> texts;
    int start = blocks.indexOf(head);
    while (start >= 0 && start + descriptorHead + descriptorText <= blocks.size()) {
        const int text = display.start + start + descriptorHead;
        texts.push_back({text, text + descriptorText});
        start = blocks.indexOf(head, start + descriptorHead + descriptorText);
    }
    return texts;
}

void mendChecksum(QByteArray& data, int block)
{
    unsigned sum = 0;
    for (int i = block; i < block + blockSize - 1; ++i) {
        sum += static_cast<unsigned char>(data.at(i));
    }
    data[block + blockSize - 1] = static_cast<char>(0x100 - sum % 0x100); // all bytes add up to 0
}

} // namespace

QList<QByteArray> displaySerials(const QByteArray& data, bool isDisplay)
{
    QList<QByteArray> serials;
    for (const Range& display : displaysIn(data, isDisplay)) {
        for (const Range& text : serialTextsIn(data, display)) {
            serials += data.mid(text.start, text.end - text.start);
        }
        QByteArray number = data.mid(display.start + serialOffset, serialSize);
        std::reverse(number.begin(), number.end());
        const unsigned serial = number.toHex().toUInt(nullptr, 16);
        if (serial > 0xffff) {
            serials += QByteArray::number(serial);
        }
    }
    return serials;
}

QByteArray withoutDisplaySerials(const QByteArray& data, bool isDisplay,
                                 const std::function<QByteArray(const QByteArray&)>& replaced)
{
    QByteArray result = data;
    for (const Range& display : displaysIn(data, isDisplay)) {
        result.replace(display.start + serialOffset, serialSize, QByteArray(serialSize, '\0'));
        for (const Range& text : serialTextsIn(data, display)) {
            const QByteArray serial = replaced(result.mid(text.start, text.end - text.start));
            result.replace(text.start, descriptorText, serial.leftJustified(descriptorText, ' ', true));
        }
        for (int block = display.start; block < display.end; block += blockSize) {
            mendChecksum(result, block);
        }
    }
    return result;
}

QByteArray displayDataOf(const QByteArray& text)
{
    const bool isHex = std::all_of(text.begin(), text.end(),
                                   [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; });
    const QByteArray bytes = isHex && text.size() % 2 == 0 ? QByteArray::fromHex(text) : QByteArray();
    return displaysIn(bytes, false).empty() ? QByteArray() : bytes;
}

} // namespace norvex::Privacy
