#include "systeminfo/mac/platform/propertyListReader.h"

#include <QByteArray>
#include <QFileDevice>

#include <expat.h>

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

namespace norvex {

PlistHandler::~PlistHandler() = default;

namespace {

struct ParserDeleter
{
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

std::string_view trimmed(std::string_view text)
{
    constexpr const char* blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

int digitValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = char(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

struct ParsedInteger
{
    std::uint64_t bits = 0; ///< modulo 2^64
    bool fitsInt32 = false;
};

ParsedInteger parseInteger(std::string_view text)
{
    std::string_view digits = text;
    const bool isNegative = !digits.empty() && digits.front() == '-';
    digits.remove_prefix(isNegative ? 1 : 0);
    const bool isHex = digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X";
    digits.remove_prefix(isHex ? 2 : 0);
    const unsigned base = isHex ? 16 : 10;
    constexpr std::uint64_t beyondInt32 = std::uint64_t(1) << 32;

    std::uint64_t bits = 0;
    std::uint64_t magnitude = 0; // stops growing beyond what matters
    for (const char c : digits) {
        const auto digit = unsigned(digitValue(c));
        if (digit >= base) {
            throw PlistError("\"" + std::string(text) + "\" is no integer");
        }
        bits = bits * base + digit;
        magnitude = magnitude >= beyondInt32 ? magnitude : magnitude * base + digit;
    }
    if (digits.empty()) {
        throw PlistError("\"" + std::string(text) + "\" is no integer");
    }
    const std::uint64_t limit =
        std::uint64_t(std::numeric_limits<std::int32_t>::max()) + (isNegative ? 1 : 0);
    return {isNegative ? 0 - bits : bits, magnitude <= limit};
}

CFNumberType typeOfSize(std::string_view size)
{
    if (size == "8") {
        return kCFNumberSInt8Type;
    }
    if (size == "16") {
        return kCFNumberSInt16Type;
    }
    if (size == "32") {
        return kCFNumberSInt32Type;
    }
    if (size == "64") {
        return kCFNumberSInt64Type;
    }
    throw PlistError("the size of an integer is 8, 16, 32 or 64, not \"" + std::string(size) + "\"");
}

ValueRef integerValue(std::string_view text, const std::string& size)
{
    const ParsedInteger parsed = parseInteger(trimmed(text));
    const CFNumberType type = !size.empty()      ? typeOfSize(size)
                              : parsed.fitsInt32 ? kCFNumberSInt32Type
                                                 : kCFNumberSInt64Type;
    return makeInteger(type, std::int64_t(parsed.bits));
}

ValueRef realValue(std::string_view text)
{
    const std::string_view number = trimmed(text);
    bool isNumber = false;
    const double value = QByteArray(number.data(), int(number.size())).toDouble(&isNumber);
    if (!isNumber) {
        throw PlistError("\"" + std::string(number) + "\" is no number");
    }
    return makeReal(value);
}

ValueRef dataValue(std::string_view text)
{
    QByteArray base64;
    base64.reserve(int(text.size()));
    for (const char c : text) {
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') {
            base64.append(c);
        }
    }
    const auto result = QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
    if (!result || base64.size() % 4 == 1) { // one digit alone is less than a byte
        throw PlistError("the data is no base64");
    }
    const QByteArray& bytes = *result;
    return makeData(std::string_view(bytes.constData(), std::size_t(bytes.size())));
}

enum class Element { Plist, Dict, Array, Key, String, Integer, Real, Data, True, False };

Element elementNamed(std::string_view name)
{
    static const struct
    {
        std::string_view name;
        Element element;
    } elements[] = {{"key", Element::Key},    {"string", Element::String}, {"integer", Element::Integer},
                    {"dict", Element::Dict},  {"data", Element::Data},     {"array", Element::Array},
                    {"true", Element::True},  {"false", Element::False},   {"real", Element::Real},
                    {"plist", Element::Plist}};
    for (const auto& candidate : elements) {
        if (candidate.name == name) {
            return candidate.element;
        }
    }
    throw PlistError("<" + std::string(name) + "> is no element of a recording");
}

bool holdsElements(Element element)
{
    return element == Element::Plist || element == Element::Dict || element == Element::Array;
}

class PlistParser
{
public:
    explicit PlistParser(PlistHandler& handler) : handler_(handler), parser_(XML_ParserCreate(nullptr))
    {
        if (parser_ == nullptr) {
            throw std::bad_alloc();
        }
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), &onBegin, &onEnd);
        XML_SetCharacterDataHandler(parser_.get(), &onText);
        XML_SetSkippedEntityHandler(parser_.get(), &onUnknownEntity);
        XML_SetExternalEntityRefHandler(parser_.get(), [](auto...) -> int { return XML_STATUS_ERROR; });
    }

    PlistFailure parse(QIODevice& device)
    {
        constexpr int chunkSize = 1 << 18;
        for (bool isLast = false; !isLast;) {
            void* buffer = XML_GetBuffer(parser_.get(), chunkSize);
            if (buffer == nullptr) {
                throw std::bad_alloc();
            }
            const qint64 length = device.read(static_cast<char*>(buffer), chunkSize);
            const auto* file = qobject_cast<const QFileDevice*>(&device);
            if (length < 0 && (file == nullptr || file->error() != QFileDevice::NoError)) {
                return {0, device.errorString()};
            }
            isLast = length <= 0;
            if (XML_ParseBuffer(parser_.get(), std::max(int(length), 0), isLast) != XML_STATUS_OK) {
                return failure();
            }
        }
        return {};
    }

private:
    // An exception must not cross the frames of the XML parser: it waits here until they are gone.
    template <typename Action>
    void guarded(Action action)
    {
        if (pending_ != nullptr) {
            return;
        }
        try {
            action();
        } catch (...) {
            pending_ = std::current_exception();
            errorLine_ = XML_GetCurrentLineNumber(parser_.get());
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }

    PlistFailure failure()
    {
        std::string reason;
        if (pending_ != nullptr) {
            try {
                std::rethrow_exception(pending_);
            } catch (const PlistError& error) {
                reason = error.what();
            }
        } else {
            if (XML_GetErrorCode(parser_.get()) == XML_ERROR_NO_MEMORY) {
                throw std::bad_alloc();
            }
            errorLine_ = XML_GetCurrentLineNumber(parser_.get());
            reason = std::string("not well-formed XML: ") + XML_ErrorString(XML_GetErrorCode(parser_.get()));
        }
        return {errorLine_, QString::fromStdString(reason)};
    }

    static void onBegin(void* self, const XML_Char* name, const XML_Char** attributes)
    {
        auto* parser = static_cast<PlistParser*>(self);
        parser->guarded([=] { parser->begin(name, attributes); });
    }

    static void onEnd(void* self, const XML_Char*)
    {
        auto* parser = static_cast<PlistParser*>(self);
        parser->guarded([=] { parser->end(); });
    }

    static void onText(void* self, const XML_Char* text, int length)
    {
        auto* parser = static_cast<PlistParser*>(self);
        parser->guarded([=] { parser->addText(std::string_view(text, std::size_t(length))); });
    }

    static void onUnknownEntity(void* self, const XML_Char* name, int)
    {
        static_cast<PlistParser*>(self)->guarded(
            [=] { throw PlistError("the entity \"" + std::string(name) + "\" is not known"); });
    }

    void begin(const char* name, const XML_Char** attributes)
    {
        const Element element = elementNamed(name);
        checkPlace(element, name);
        open_.push_back(element);
        text_.clear();
        size_.clear();
        for (; element == Element::Integer && *attributes != nullptr; attributes += 2) {
            if (std::string_view(attributes[0]) == "size") {
                size_ = attributes[1];
                typeOfSize(size_);
            }
        }
        if (element == Element::Dict) {
            handler_.beginDictionary();
        } else if (element == Element::Array) {
            handler_.beginArray();
        }
    }

    void checkPlace(Element element, const char* name)
    {
        if (open_.empty()) {
            if (element != Element::Plist) {
                throw PlistError("the document is no property list: it begins with <" + std::string(name) +
                                 ">");
            }
            return;
        }
        if (!holdsElements(open_.back()) || element == Element::Plist) {
            throw PlistError("<" + std::string(name) + "> cannot stand here");
        }
        if (open_.back() == Element::Plist && std::exchange(hasRoot_, true)) {
            throw PlistError("a property list has one root element");
        }
        if (open_.back() != Element::Dict) {
            if (element == Element::Key) {
                throw PlistError("<key> stands outside a dictionary");
            }
            return;
        }
        if ((element == Element::Key) == awaitsValue_) {
            throw PlistError(awaitsValue_ ? "a key without a value" : "a value without a key");
        }
        awaitsValue_ = element == Element::Key;
    }

    void addText(std::string_view text)
    {
        if (open_.empty() || holdsElements(open_.back()) || open_.back() == Element::True ||
            open_.back() == Element::False) {
            if (!trimmed(text).empty()) {
                throw PlistError("text outside a value");
            }
            return;
        }
        text_ += text;
    }

    void end()
    {
        const Element element = open_.back();
        open_.pop_back();
        switch (element) {
        case Element::Plist:
            if (!hasRoot_) {
                throw PlistError("the property list is empty");
            }
            break;
        case Element::Dict:
            if (std::exchange(awaitsValue_, false)) {
                throw PlistError("a key without a value");
            }
            handler_.endDictionary();
            break;
        case Element::Array: handler_.endArray(); break;
        case Element::Key: handler_.key(text_); break;
        case Element::String: handler_.value(makeString(text_)); break;
        case Element::Integer: handler_.value(integerValue(text_, size_)); break;
        case Element::Real: handler_.value(realValue(text_)); break;
        case Element::Data: handler_.value(dataValue(text_)); break;
        case Element::True: handler_.value(makeBoolean(true)); break;
        case Element::False: handler_.value(makeBoolean(false)); break;
        }
    }

    PlistHandler& handler_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter> parser_;
    std::vector<Element> open_;
    std::string text_;
    std::string size_;
    bool awaitsValue_ = false; ///< a key of the innermost dictionary was read, its value not yet
    bool hasRoot_ = false;
    std::exception_ptr pending_;
    XML_Size errorLine_ = 0;
};

} // namespace

PlistFailure parsePlist(QIODevice& device, PlistHandler& handler)
{
    return PlistParser(handler).parse(device);
}

} // namespace norvex
