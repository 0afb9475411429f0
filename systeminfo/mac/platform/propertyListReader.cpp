#include "systeminfo/mac/platform/propertyListReader.h"

#include "systeminfo/mac/platform/xmlInput.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <utility>
#include <vector>

namespace norvex {

PlistHandler::~PlistHandler() = default;

namespace {

bool isBlank(QChar c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

void appendUtf8(std::string& target, const QStringRef& text)
{
    const QByteArray utf8 = text.toUtf8();
    target.append(utf8.constData(), std::size_t(utf8.size()));
}

std::string utf8Of(const QStringRef& text)
{
    return text.toString().toStdString();
}

// The size of an integer, 0 where none is given.
int bitsIn(const QXmlStreamAttributes& attributes)
{
    const QLatin1String name("size");
    if (!attributes.hasAttribute(name)) {
        return 0;
    }
    const QStringRef size = attributes.value(name);
    for (const int bits : {8, 16, 32, 64}) {
        if (size == QString::number(bits)) {
            return bits;
        }
    }
    throw PlistError("the size of an integer is 8, 16, 32 or 64, not \"" + utf8Of(size) + "\"");
}

bool holdsElements(PlistElement element)
{
    return element == PlistElement::Plist || element == PlistElement::Dict || element == PlistElement::Array;
}

bool holdsText(PlistElement element)
{
    return !holdsElements(element) && element != PlistElement::True && element != PlistElement::False;
}

class PlistParser
{
public:
    PlistParser(QIODevice& device, PlistDialect dialect, PlistHandler& handler)
        : input_(device), dialect_(dialect), handler_(handler)
    {
        reader_.setDevice(&input_);
        reader_.setNamespaceProcessing(false);
    }

    PlistFailure parse()
    {
        try {
            while (!reader_.atEnd()) {
                line_ = lineReached(); // where the next token begins
                handle(reader_.readNext());
            }
        } catch (const PlistError& error) {
            return {line_, QString::fromStdString(error.what())};
        }
        const bool hasReachedEnd =
            !reader_.hasError() || reader_.error() == QXmlStreamReader::PrematureEndOfDocumentError;
        if (hasReachedEnd && !input_.failure().isEmpty()) {
            return {input_.failureLine(), input_.failure()};
        }
        if (reader_.hasError()) {
            return {lineReached(), "not well-formed XML: " + reader_.errorString()};
        }
        return {};
    }

private:
    unsigned long long lineReached() const { return static_cast<unsigned long long>(reader_.lineNumber()); }

    void handle(QXmlStreamReader::TokenType token)
    {
        if (open_.empty()) {
            line_ = lineReached(); // white space outside the root is no token
        }
        switch (token) {
        case QXmlStreamReader::EntityReference:
            throw PlistError("the entity \"" + utf8Of(reader_.name()) + "\" is not known");
        case QXmlStreamReader::StartElement: begin(); break;
        case QXmlStreamReader::EndElement: end(); break;
        case QXmlStreamReader::Characters: addText(reader_.text()); break;
        default: break;
        }
    }

    PlistElement elementNamed(const QStringRef& name) const
    {
        static const struct
        {
            QLatin1String name;
            PlistElement element;
        } elements[] = {{QLatin1String("key"), PlistElement::Key},
                        {QLatin1String("string"), PlistElement::String},
                        {QLatin1String("integer"), PlistElement::Integer},
                        {QLatin1String("dict"), PlistElement::Dict},
                        {QLatin1String("data"), PlistElement::Data},
                        {QLatin1String("array"), PlistElement::Array},
                        {QLatin1String("true"), PlistElement::True},
                        {QLatin1String("false"), PlistElement::False},
                        {QLatin1String("real"), PlistElement::Real},
                        {QLatin1String("plist"), PlistElement::Plist},
                        {QLatin1String("date"), PlistElement::Date}};
        const bool isRecording = dialect_ == PlistDialect::Recording;
        for (const auto& candidate : elements) {
            if (candidate.name == name && !(isRecording && candidate.element == PlistElement::Date)) {
                return candidate.element;
            }
        }
        throw PlistError("<" + utf8Of(name) + "> is no element of a " +
                         (isRecording ? "recording" : "property list"));
    }

    void begin()
    {
        const QStringRef name = reader_.qualifiedName();
        const PlistElement element = elementNamed(name);
        checkPlace(element, name);
        open_.push_back(element);
        value_.text.clear();
        value_.bits = 0;
        if (element == PlistElement::Integer && dialect_ == PlistDialect::Recording) {
            value_.bits = bitsIn(reader_.attributes());
        } else if (element == PlistElement::Dict) {
            handler_.beginDictionary();
        } else if (element == PlistElement::Array) {
            handler_.beginArray();
        }
    }

    void checkPlace(PlistElement element, const QStringRef& name)
    {
        if (open_.empty()) {
            if (element != PlistElement::Plist &&
                (dialect_ == PlistDialect::Recording || !holdsElements(element))) {
                throw PlistError("the document is no property list: it begins with <" + utf8Of(name) + ">");
            }
            hasRoot_ = element != PlistElement::Plist;
            return;
        }
        const PlistElement container = open_.back();
        if (!holdsElements(container) || element == PlistElement::Plist) {
            throw PlistError("<" + utf8Of(name) + "> cannot stand here");
        }
        if (container == PlistElement::Plist && std::exchange(hasRoot_, true)) {
            throw PlistError("a property list has one root element");
        }
        if (container != PlistElement::Dict) {
            if (element == PlistElement::Key) {
                throw PlistError("<key> stands outside a dictionary");
            }
            return;
        }
        if ((element == PlistElement::Key) == awaitsValue_) {
            throw PlistError(awaitsValue_ ? "a key without a value" : "a value without a key");
        }
        awaitsValue_ = element == PlistElement::Key;
    }

    void addText(const QStringRef& text)
    {
        if (!open_.empty() && holdsText(open_.back())) {
            appendUtf8(value_.text, text);
            return;
        }
        const auto found = std::find_if_not(text.begin(), text.end(), isBlank);
        if (found != text.end()) {
            line_ += static_cast<unsigned long long>(std::count(text.begin(), found, '\n'));
            throw PlistError("text outside a value");
        }
    }

    void end()
    {
        const PlistElement element = open_.back();
        open_.pop_back();
        switch (element) {
        case PlistElement::Plist:
            if (!hasRoot_) {
                throw PlistError("the property list is empty");
            }
            break;
        case PlistElement::Dict:
            if (std::exchange(awaitsValue_, false)) {
                throw PlistError("a key without a value");
            }
            handler_.endDictionary();
            break;
        case PlistElement::Array: handler_.endArray(); break;
        case PlistElement::Key: handler_.key(value_.text); break;
        default: value_.element = element; handler_.value(value_);
        }
    }

    XmlInput input_;
    const PlistDialect dialect_;
    PlistHandler& handler_;
    QXmlStreamReader reader_;
    std::vector<PlistElement> open_;
    PlistValue value_ = {};    ///< the key or value that is being read
    bool awaitsValue_ = false; ///< a key of the innermost dictionary was read, its value not yet
    bool hasRoot_ = false;
    unsigned long long line_ = 1; ///< of the token
};

} // namespace

PlistFailure parsePlist(QIODevice& device, PlistDialect dialect, PlistHandler& handler)
{
    return PlistParser(device, dialect, handler).parse();
}

} // namespace norvex
