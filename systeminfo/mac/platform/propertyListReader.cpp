#include "systeminfo/mac/platform/propertyListReader.h"

#include "systeminfo/mac/platform/xmlInput.h"

#include <QXmlStreamReader>

#include <algorithm>
#include <utility>
#include <vector>

namespace norvex {

PropertyListHandler::~PropertyListHandler() = default;

namespace {

void appendUtf8(std::string& target, const QStringRef& text)
{
    const QByteArray utf8 = text.toUtf8();
    target.append(utf8.constData(), std::size_t(utf8.size()));
}

std::string utf8Of(const QStringRef& text)
{
    return text.toString().toStdString();
}

/// The bits of an integer element, 0 when it does not name a size.
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
    throw PropertyListError("the size of an integer is 8, 16, 32 or 64, not \"" + utf8Of(size) + "\"");
}

bool holdsElements(PropertyListElement element)
{
    return element == PropertyListElement::Plist || element == PropertyListElement::Dict ||
           element == PropertyListElement::Array;
}

bool holdsText(PropertyListElement element)
{
    return !holdsElements(element) && element != PropertyListElement::True &&
           element != PropertyListElement::False;
}

class PropertyListReader
{
public:
    PropertyListReader(QIODevice& device, PropertyListDialect dialect, PropertyListHandler& handler)
        : input_(device), dialect_(dialect), handler_(handler)
    {
        reader_.setDevice(&input_);
        reader_.setNamespaceProcessing(false);
    }

    PropertyListFailure parse()
    {
        try {
            while (!reader_.atEnd()) {
                line_ = lineReached(); // where the next token begins
                handle(reader_.readNext());
            }
        } catch (const PropertyListError& error) {
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
            throw PropertyListError("the entity \"" + utf8Of(reader_.name()) + "\" is not known");
        case QXmlStreamReader::StartElement: begin(); break;
        case QXmlStreamReader::EndElement: end(); break;
        case QXmlStreamReader::Characters: addText(reader_.text()); break;
        default: break;
        }
    }

    PropertyListElement elementNamed(const QStringRef& name) const
    {
        static const struct
        {
            QLatin1String name;
            PropertyListElement element;
        } elements[] = {{QLatin1String("key"), PropertyListElement::Key},
                        {QLatin1String("string"), PropertyListElement::String},
                        {QLatin1String("integer"), PropertyListElement::Integer},
                        {QLatin1String("dict"), PropertyListElement::Dict},
                        {QLatin1String("data"), PropertyListElement::Data},
                        {QLatin1String("array"), PropertyListElement::Array},
                        {QLatin1String("true"), PropertyListElement::True},
                        {QLatin1String("false"), PropertyListElement::False},
                        {QLatin1String("real"), PropertyListElement::Real},
                        {QLatin1String("plist"), PropertyListElement::Plist},
                        {QLatin1String("date"), PropertyListElement::Date}};
        const bool isRecording = dialect_ == PropertyListDialect::Recording;
        for (const auto& candidate : elements) {
            if (candidate.name == name && !(isRecording && candidate.element == PropertyListElement::Date)) {
                return candidate.element;
            }
        }
        throw PropertyListError("<" + utf8Of(name) + "> is no element of a " +
                                (isRecording ? "recording" : "property list"));
    }

    void begin()
    {
        const QStringRef name = reader_.qualifiedName();
        const PropertyListElement element = elementNamed(name);
        checkPlace(element, name);
        open_.push_back(element);
        value_.text.clear();
        value_.bits = 0;
        if (element == PropertyListElement::Integer && dialect_ == PropertyListDialect::Recording) {
            value_.bits = bitsIn(reader_.attributes());
        } else if (element == PropertyListElement::Dict) {
            handler_.beginDictionary();
        } else if (element == PropertyListElement::Array) {
            handler_.beginArray();
        }
    }

    void checkPlace(PropertyListElement element, const QStringRef& name)
    {
        if (open_.empty()) {
            if (element != PropertyListElement::Plist &&
                (dialect_ == PropertyListDialect::Recording || !holdsElements(element))) {
                throw PropertyListError("the document is no property list: it begins with <" + utf8Of(name) +
                                        ">");
            }
            hasRoot_ = element != PropertyListElement::Plist;
            return;
        }
        const PropertyListElement container = open_.back();
        if (!holdsElements(container) || element == PropertyListElement::Plist) {
            throw PropertyListError("<" + utf8Of(name) + "> cannot stand here");
        }
        if (container == PropertyListElement::Plist && std::exchange(hasRoot_, true)) {
            throw PropertyListError("a property list has one root element");
        }
        if (container != PropertyListElement::Dict) {
            if (element == PropertyListElement::Key) {
                throw PropertyListError("<key> stands outside a dictionary");
            }
            return;
        }
        if ((element == PropertyListElement::Key) == awaitsValue_) {
            throw PropertyListError(awaitsValue_ ? "a key without a value" : "a value without a key");
        }
        awaitsValue_ = element == PropertyListElement::Key;
    }

    void addText(const QStringRef& text)
    {
        if (!open_.empty() && holdsText(open_.back())) {
            appendUtf8(value_.text, text);
            return;
        }
        const auto found = std::find_if_not(text.begin(), text.end(), isXmlSpace<QChar>);
        if (found != text.end()) {
            line_ += static_cast<unsigned long long>(std::count(text.begin(), found, '\n'));
            throw PropertyListError("text outside a value");
        }
    }

    void end()
    {
        const PropertyListElement element = open_.back();
        open_.pop_back();
        switch (element) {
        case PropertyListElement::Plist:
            if (!hasRoot_) {
                throw PropertyListError("the property list is empty");
            }
            break;
        case PropertyListElement::Dict:
            if (std::exchange(awaitsValue_, false)) {
                throw PropertyListError("a key without a value");
            }
            handler_.endDictionary();
            break;
        case PropertyListElement::Array: handler_.endArray(); break;
        case PropertyListElement::Key: handler_.key(value_.text); break;
        default: value_.element = element; handler_.value(value_);
        }
    }

    XmlInput input_;
    const PropertyListDialect dialect_;
    PropertyListHandler& handler_;
    QXmlStreamReader reader_;
    std::vector<PropertyListElement> open_;
    PropertyListValue value_ = {}; ///< the key or value that is being read
    bool awaitsValue_ = false;     ///< a key of the innermost dictionary was read, its value not yet
    bool hasRoot_ = false;
    unsigned long long line_ = 1; ///< of the token
};

} // namespace

PropertyListFailure readPropertyList(QIODevice& device, PropertyListDialect dialect,
                                     PropertyListHandler& handler)
{
    return PropertyListReader(device, dialect, handler).parse();
}

} // namespace norvex
