#include "systeminfo/mac/platform/live/propertyListCheck.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string_view>
#include <type_traits>
#include <vector>

#include <expat.h>

namespace norvex {

namespace {

struct FreeParser
{
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

/// Writes the elements and texts of a property list anew. Comments, attributes, declarations, character
/// sections and other encodings than UTF-8 end here, and with them all room for a second opinion about where
/// an element begins.
class XmlNormaliser
{
public:
    XmlNormaliser() : parser_(XML_ParserCreate(nullptr))
    {
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), startElement, endElement);
        XML_SetCharacterDataHandler(parser_.get(), characters);
        XML_SetStartDoctypeDeclHandler(parser_.get(), startDoctype);
    }

    std::optional<std::string> run(const char* text, int length)
    {
        const bool complete = XML_Parse(parser_.get(), text, length, XML_TRUE) == XML_STATUS_OK;
        return complete ? std::make_optional(std::move(output_)) : std::nullopt;
    }

private:
    static bool isContainer(std::string_view name)
    {
        return name == "plist" || name == "dict" || name == "array";
    }

    static bool isLeaf(std::string_view name)
    {
        static constexpr std::array<std::string_view, 8> names = {"key",  "string", "integer", "real",
                                                                  "true", "false",  "date",    "data"};
        return std::find(names.begin(), names.end(), name) != names.end();
    }

    /// The end of an empty element may still be reported after this.
    void stop()
    {
        stopped_ = true;
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    static void startElement(void* self, const char* name, const char**)
    {
        static_cast<XmlNormaliser*>(self)->start(name);
    }
    static void endElement(void* self, const char* name) { static_cast<XmlNormaliser*>(self)->end(name); }
    static void characters(void* self, const char* text, int length)
    {
        static_cast<XmlNormaliser*>(self)->text(std::string_view(text, static_cast<std::size_t>(length)));
    }
    static void startDoctype(void* self, const char*, const char*, const char*, int hasInternalSubset)
    {
        if (hasInternalSubset) {
            static_cast<XmlNormaliser*>(self)->stop();
        }
    }

    void start(std::string_view name)
    {
        if (name == "key" && !open_.empty()) {
            keyComparisons_ += open_.back().keys++;
        }
        if ((!open_.empty() && open_.back().isLeaf) || open_.size() > propertyListMaxDepth ||
            keyComparisons_ > propertyListMaxKeyComparisons || !budget_.spend(0)) {
            return stop();
        }
        const Element element = {isLeaf(name), 0};
        if (!element.isLeaf && !isContainer(name)) {
            return stop();
        }
        open_.push_back(element);
        output_ += '<';
        output_ += name;
        output_ += '>';
    }

    void end(std::string_view name)
    {
        if (stopped_) {
            return;
        }
        writeText();
        open_.pop_back();
        // An empty element too has its end tag: libplist stumbles over "<key/>".
        output_ += "</";
        output_ += name;
        output_ += '>';
    }

    void text(std::string_view characters)
    {
        if (open_.back().isLeaf) {
            text_ += characters;
        } else if (characters.find_first_not_of(" \t\r\n") != std::string_view::npos) {
            stop();
        }
    }

    /// Special characters go into a character section, because libplist needs quadratic time for their
    /// escapes.
    void writeText()
    {
        if (text_.find_first_of("<>&") == std::string::npos) {
            output_ += text_;
        } else {
            const std::string end = "]]>";
            output_ += "<![CDATA[";
            std::size_t written = 0;
            for (std::size_t found = text_.find(end); found != std::string::npos;
                 found = text_.find(end, found + end.size())) {
                output_.append(text_, written, found + 2 - written);
                output_ += "]]><![CDATA[";
                written = found + 2;
            }
            output_.append(text_, written, std::string::npos);
            output_ += end;
        }
        text_.clear();
    }

    struct Element
    {
        bool isLeaf;
        std::uint64_t keys;
    };

    std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> parser_;
    std::string output_;
    std::string text_; ///< of the leaf that is open
    std::vector<Element> open_;
    std::uint64_t keyComparisons_ = 0;
    bool stopped_ = false;
    PropertyListBudget budget_;
};

/// Walks over the objects of a binary property list in the order in which they are read.
class BinaryWalk
{
public:
    explicit BinaryWalk(const QByteArray& contents)
        : bytes_(reinterpret_cast<const unsigned char*>(contents.constData())),
          size_(static_cast<std::uint64_t>(contents.size()))
    {}

    bool run()
    {
        if (!readTrailer() || !visit(root_)) {
            return false;
        }
        while (!open_.empty()) {
            References& references = open_.back();
            if (references.count == 0) {
                open_.pop_back();
                continue;
            }
            const std::uint64_t object = number(references.position, referenceSize_);
            references.position += referenceSize_;
            --references.count;
            if (!visit(object)) {
                return false;
            }
        }
        return true;
    }

private:
    /// What is left to visit of a container.
    struct References
    {
        std::uint64_t position;
        std::uint64_t count;
    };

    /// The big-endian number of so many bytes, all of which must be inside.
    std::uint64_t number(std::uint64_t position, std::uint64_t length) const
    {
        std::uint64_t value = 0;
        for (std::uint64_t index = 0; index < length; ++index) {
            value = value << 8 | bytes_[position + index];
        }
        return value;
    }

    bool readTrailer()
    {
        constexpr std::uint64_t headerSize = 8;
        constexpr std::uint64_t trailerSize = 32;
        if (size_ < headerSize + trailerSize) {
            return false;
        }
        const std::uint64_t trailer = size_ - trailerSize;
        offsetSize_ = bytes_[trailer + 6];
        referenceSize_ = bytes_[trailer + 7];
        objectCount_ = number(trailer + 8, 8);
        root_ = number(trailer + 16, 8);
        offsetTable_ = number(trailer + 24, 8);
        return offsetSize_ >= 1 && offsetSize_ <= 8 && referenceSize_ >= 1 && referenceSize_ <= 8 &&
               offsetTable_ >= headerSize && offsetTable_ <= trailer &&
               objectCount_ <= (trailer - offsetTable_) / offsetSize_;
    }

    /// Checks one object, and opens it when it is a container.
    bool visit(std::uint64_t object)
    {
        if (object >= objectCount_) {
            return false;
        }
        std::uint64_t position = number(offsetTable_ + object * offsetSize_, offsetSize_);
        if (position < 8 || position >= offsetTable_) {
            return false;
        }
        const unsigned int marker = bytes_[position++];
        std::uint64_t count = marker & 0x0fU;
        const unsigned int kind = marker >> 4;
        const bool isCounted =
            kind == Data || kind == Ascii || kind == Utf16 || kind == Array || kind == Dictionary;
        if (isCounted && count == 0x0f && !readCount(position, count)) {
            return false;
        }
        const std::optional<std::uint64_t> unit = unitSize(kind, count);
        if (!unit || count > (offsetTable_ - position) / *unit || !budget_.spend(count * *unit)) {
            return false;
        }
        if (kind == Array || kind == Dictionary) {
            open_.push_back({position, kind == Dictionary ? 2 * count : count});
        }
        return open_.size() <= propertyListMaxDepth;
    }

    /// The count of an object that has too many items for its marker.
    bool readCount(std::uint64_t& position, std::uint64_t& count) const
    {
        if (position >= offsetTable_ || bytes_[position] >> 4 != Integer || (bytes_[position] & 0x0fU) > 3) {
            return false;
        }
        const std::uint64_t length = std::uint64_t(1) << (bytes_[position] & 0x0fU);
        ++position;
        if (length > offsetTable_ - position) {
            return false;
        }
        count = number(position, length);
        position += length;
        return true;
    }

    /// The bytes of one item; @p count is adjusted where the marker does not hold it as it is.
    std::optional<std::uint64_t> unitSize(unsigned int kind, std::uint64_t& count) const
    {
        switch (kind) {
        case Simple: count = 0; return 1;
        case Integer:
        case Real:
        case Date:
            if (count > 4) {
                return std::nullopt;
            }
            count = std::uint64_t(1) << count;
            return 1;
        case Identifier: ++count; return 1;
        case Data:
        case Ascii: return 1;
        case Utf16: return 2;
        case Array: return referenceSize_;
        case Dictionary: return 2 * referenceSize_;
        default: return std::nullopt;
        }
    }

    enum Kind : unsigned int {
        Simple = 0x0,
        Integer = 0x1,
        Real = 0x2,
        Date = 0x3,
        Data = 0x4,
        Ascii = 0x5,
        Utf16 = 0x6,
        Identifier = 0x8,
        Array = 0xa,
        Dictionary = 0xd
    };

    const unsigned char* bytes_;
    std::uint64_t size_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t root_ = 0;
    std::uint64_t offsetTable_ = 0;
    std::vector<References> open_;
    PropertyListBudget budget_;
};

} // namespace

std::optional<std::string> normalisedXmlPropertyList(const QByteArray& contents)
{
    // Foundation tolerates white space before the XML declaration.
    const QByteArray whiteSpace(" \t\r\n");
    int start = 0;
    while (start < contents.size() && whiteSpace.contains(contents.at(start))) {
        ++start;
    }
    return XmlNormaliser().run(contents.constData() + start, contents.size() - start);
}

bool isAcceptableBinaryPropertyList(const QByteArray& contents)
{
    return BinaryWalk(contents).run();
}

} // namespace norvex
