#include "systeminfo/privacy/fixedForms.h"

#include "systeminfo/privacy/commonNames.h"
#include "systeminfo/privacy/privateParts.h"
#include "systeminfo/privacy/spellings.h"

#include <QHostAddress>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace norvex::Privacy {

namespace {

using Where = Replacements::Where;
using Letters = Replacements::Letters;

const QChar ellipsis(0x2026);

constexpr int shortestName = 3; ///< that is searched for

bool isPlain(QChar c)
{
    return c.unicode() < 0x80 && c.isLetterOrNumber();
}

/// Whether the values are names that people give.
bool isName(Family family)
{
    switch (family) {
    case Family::Person:
    case Family::Host:
    case Family::Domain:
    case Family::Label:
    case Family::Network:
    case Family::Device:
    case Family::Printer: return true;
    default: return false;
    }
}

bool isNumber(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

/// Where no name can stand.
bool isNameless(PrivateKind kind)
{
    return kind == PrivateKind::Model || kind == PrivateKind::Addresses;
}

/// Where a value of the environment can stand. What it has in common with models and paths are models and paths.
bool mayHoldToken(PrivateKind kind)
{
    switch (kind) {
    case PrivateKind::Path:
    case PrivateKind::HomeFolder:
    case PrivateKind::MountPoint:
    case PrivateKind::MountSource: return false;
    default: return !isNameless(kind);
    }
}

/// Whether a known value of the family can stand in a text of the kind. A serial number of digits alone looks like the
/// sizes and counts that stand beside models.
bool mayStandIn(Family family, const QString& word, PrivateKind kind)
{
    if (family == Family::Token) {
        return mayHoldToken(kind);
    }
    return !isNameless(kind) || !(isName(family) || (family == Family::Serial && isNumber(word)));
}

/// The forms of families whose values are names.
const struct
{
    Family family;
    const char* form; ///< what stands in front of the number
} prefixes[] = {
    {Family::Serial, "SERIAL-"}, {Family::Person, "user"},      {Family::Host, "host"},
    {Family::Domain, "domain"},  {Family::Label, "Volume "},    {Family::Network, "Network "},
    {Family::Device, "Device "}, {Family::Printer, "Printer "}, {Family::Token, "VALUE-"},
};

/// Empty for the families that have forms of another kind.
QString nameForm(Family family, std::uint32_t number)
{
    const auto prefix = std::find_if(std::begin(prefixes), std::end(prefixes),
                                     [family](const auto& each) { return each.family == family; });
    return prefix == std::end(prefixes) ? QString() : QLatin1String(prefix->form) + QString::number(number);
}

/// A form that a text has already.
struct GivenForm
{
    Family family = Family::Count; ///< Count: it is none
    std::uint32_t number = 0;
};

/// Of a name or serial number, in any spelling.
GivenForm givenNameForm(const QString& text)
{
    constexpr int longestForm = 60; // percent-encoded, too
    if (text.size() > longestForm || text.isEmpty() || !text.at(text.size() - 1).isDigit()) {
        return {};
    }
    const ushort first = text.at(0).toLower().unicode();
    if (first >= 0x80 || std::strchr("sudhvnp", static_cast<char>(first)) == nullptr) {
        return {};
    }
    static const QStringList spellings = [] {
        QStringList all;
        for (const auto& prefix : prefixes) {
            all += QString(QLatin1String(prefix.form)).toLower().replace(QLatin1Char(' '), QLatin1Char('-'));
        }
        return all;
    }();
    const QString common = commonSpelling(text);
    for (int i = 0; i < spellings.size(); ++i) {
        bool isNumber = false;
        const std::uint32_t number = common.mid(spellings.at(i).size()).toUInt(&isNumber);
        if (isNumber && number > 0 && common == spellings.at(i) + QString::number(number)) {
            return {prefixes[i].family, number};
        }
    }
    return {};
}

/// The digits of a hardware address, and where they stand.
struct AddressText
{
    explicit AddressText(const QString& text);

    bool isAddress() const { return !places.empty(); }
    QByteArray device() const { return bytes.right(deviceSize); }
    bool isEach(char byte) const
    {
        const QByteArray checked = byte == 0 ? device() : bytes;
        return std::all_of(checked.begin(), checked.end(), [byte](char each) { return each == byte; });
    }
    /// The address with that number for a device half.
    QString withNumber(std::uint32_t number) const;

    struct Place
    {
        int begin;
        int size;
    };

    const QString& text;
    std::vector<Place> places; ///< of the bytes
    QByteArray bytes;
    int deviceSize = 0;
};

bool isHexDigit(QChar c)
{
    const ushort unit = c.unicode();
    return (unit >= '0' && unit <= '9') || (unit >= 'a' && unit <= 'f') || (unit >= 'A' && unit <= 'F');
}

AddressText::AddressText(const QString& addressText) : text(addressText)
{
    const bool isSeparated = std::any_of(text.begin(), text.end(), [](QChar c) { return !isHexDigit(c); });
    const bool isInPairs = text.indexOf(QLatin1Char('.')) != 4; // unlike "3c15.c2d6.f03f"
    for (int i = 0; i < text.size();) {
        int end = i;
        while (end < text.size() && end < i + 2 && isHexDigit(text.at(end))) {
            ++end;
        }
        const bool isEnd = end == text.size();
        const bool isBetween = isSeparated && (isInPairs || bytes.size() % 2 == 1);
        const bool goesOn =
            !isEnd && (!isBetween || (QStringLiteral(":-.").contains(text.at(end)) && end + 1 < text.size()));
        if (end == i || !(isEnd || goesOn)) {
            places.clear();
            return;
        }
        places.push_back({i, end - i});
        bytes += static_cast<char>(text.midRef(i, end - i).toInt(nullptr, 16));
        i = isEnd ? end : end + (isBetween ? 1 : 0);
    }
    const bool isWhole = text.size() == 2 * addressSize || text.size() == 2 * extendedAddressSize;
    if (!isSeparated && !isWhole) {
        places.clear(); // a number of another kind
        return;
    }
    constexpr int deviceHalf = 3;
    constexpr int extendedDevice = 5;
    const bool holdsOther = bytes.mid(3, 2) == "\xff\xfe" || bytes.mid(3, 2) == "\xff\xff";
    const bool isExtended =
        bytes.size() > addressSize && !(bytes.size() == extendedAddressSize && holdsOther);
    deviceSize = bytes.size() < addressSize ? bytes.size() : isExtended ? extendedDevice : deviceHalf;
}

QString AddressText::withNumber(std::uint32_t number) const
{
    const bool isUpper = std::any_of(text.begin(), text.end(), [](QChar c) { return c.isUpper(); });
    const bool isPadded =
        std::all_of(places.begin(), places.end(), [](const Place& each) { return each.size == 2; });
    QString result = text;
    for (std::size_t fromEnd = 0; fromEnd < std::size_t(deviceSize); ++fromEnd) {
        const Place& place = places[places.size() - 1 - fromEnd];
        const std::uint32_t byte = fromEnd < sizeof number ? number >> 8 * fromEnd & 0xff : 0;
        const QString digits = QString::number(byte, 16).rightJustified(isPadded ? 2 : 1, QLatin1Char('0'));
        result.replace(place.begin, place.size, isUpper ? digits.toUpper() : digits);
    }
    return result;
}

/// Of networks that exist in documentation and tests alone, as many as are needed.
const struct
{
    std::uint32_t first;
    std::uint32_t count;
} documentationNetworks[] = {
    {0xc0000201, 254},      // 192.0.2.0/24
    {0xc6336401, 254},      // 198.51.100.0/24
    {0xcb007101, 254},      // 203.0.113.0/24
    {0xc6120001, 0x1fffe},  // 198.18.0.0/15
    {0xf0000001, 0xffffffe} // 240.0.0.0/4
};

QString versionFourForm(std::uint32_t number)
{
    std::uint32_t index = number - 1;
    for (const auto& network : documentationNetworks) {
        if (index < network.count) {
            return QHostAddress(network.first + index).toString();
        }
        index -= network.count;
    }
    return QString(ellipsis);
}

GivenForm givenVersionFour(std::uint32_t address)
{
    std::uint32_t before = 0;
    for (const auto& network : documentationNetworks) {
        // The addresses of the network itself and of its broadcasts stay, too.
        if (address + 1 >= network.first && address - network.first <= network.count) {
            return {Family::IpV4, address < network.first ? 0 : before + address - network.first + 1};
        }
        before += network.count;
    }
    return {};
}

QString versionSixForm(std::uint32_t number)
{
    const QString high = number >> 16 == 0 ? QString() : QString::number(number >> 16, 16) + QLatin1Char(':');
    return QLatin1String("2001:db8::") + high + QString::number(number & 0xffff, 16);
}

GivenForm givenVersionSix(const Q_IPV6ADDR& bytes)
{
    if (std::memcmp(bytes.c, "\x20\x01\x0d\xb8\0\0\0\0\0\0\0\0", 12) != 0) {
        return {};
    }
    std::uint32_t number = 0;
    for (int i = 12; i < 16; ++i) {
        number = number << 8 | bytes[i];
    }
    return {Family::IpV6, number};
}

QString uuidForm(std::uint32_t number)
{
    return QLatin1String("00000000-0000-0000-0000-") +
           QString::number(number).rightJustified(12, QLatin1Char('0'));
}

GivenForm givenUuid(const QByteArray& bytes)
{
    const QByteArray digits = bytes.toHex();
    bool isNumber = false;
    const std::uint32_t number = digits.mid(20).toUInt(&isNumber);
    return isNumber && digits.startsWith(QByteArray(20, '0')) ? GivenForm{Family::Uuid, number} : GivenForm();
}

/// "host:1" has the same blank in it as the text that it replaces.
QString spelledLike(const QString& original, const QString& form)
{
    if (original.contains(QLatin1Char('%')) && commonSpelling(original) != original.toLower()) {
        return spelled(form, 1);
    }
    if (original.contains(QLatin1String("\\x20"))) {
        return spelled(form, 5);
    }
    return original.contains(QLatin1String("\\040")) ? spelled(form, 6) : form;
}

/// The text without halves of surrogate pairs, for which expressions find nothing.
QString wellFormed(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            ++i;
        } else if (c.isSurrogate()) {
            text[i] = QChar(QChar::ReplacementCharacter);
        }
    }
    return text;
}

} // namespace

/// What goes through the private values of a text and asks for their forms.
class FixedForms::Reader
{
public:
    virtual ~Reader() = default;

    QString textWithForms(const QString& text, PrivateKind kind);

protected:
    /// The form of a value that has none yet.
    /// @param key what all spellings of the value share
    virtual QString form(Family family, const QString& key, const QString& value) = 0;
    virtual void alsoKnownAs(Family, const QString& /*key*/, const QString& /*other*/) {}
    virtual void isGiven(const GivenForm&) {}
    /// How many forms of a family there are.
    virtual std::uint32_t formCount(Family family) const = 0;
    /// A text between private values.
    virtual QString other(const QString& text, PrivateKind kind) = 0;

private:
    /// The form of a value that is private as a whole; any other value stays.
    QString formOf(const QString& value, PrivateKind kind);
    QString formOfName(const QString& value, Family family);
    QString formOfPerson(const QString& value);
    QString formOfHost(const QString& value);
    QString formOfAddress(const QString& value);
    QString formOfUuid(const QString& value);
    QString formOfIpAddress(const QString& value);
};

QString FixedForms::Reader::textWithForms(const QString& text, PrivateKind kind)
{
    QString form = formOf(text, kind);
    // One of eight bytes looks like an IPv6 address.
    const bool isAddress = kind == PrivateKind::Address && AddressText(text).isAddress();
    if (form != text || kind == PrivateKind::Token || kind == PrivateKind::Interface || isAddress) {
        return form;
    }
    const std::vector<PrivatePart> parts = privatePartsOf(wellFormed(text), kind);
    if (kind == PrivateKind::HomeFolder && parts.empty()) {
        return isCommonHome(text) ? text : formOf(text, PrivateKind::Token);
    }
    const bool isPort = kind == PrivateKind::SerialPort || kind == PrivateKind::BluetoothPort;
    QString result;
    int copied = 0;
    for (const PrivatePart& part : parts) {
        result += other(text.mid(copied, part.start - copied), kind);
        const QString partForm = formOf(text.mid(part.start, part.length), part.kind);
        result += isPort ? spelled(partForm, 3) : partForm;
        copied = part.start + part.length;
    }
    return result + other(text.mid(copied), kind);
}

QString FixedForms::Reader::formOf(const QString& value, PrivateKind kind)
{
    switch (kind) {
    case PrivateKind::Serial: return isNoSerialNumber(value) ? value : formOfName(value, Family::Serial);
    case PrivateKind::Token: return formOfName(value, Family::Token);
    case PrivateKind::Uuid: return formOfUuid(value);
    case PrivateKind::Address: return formOfAddress(value);
    case PrivateKind::IpAddress: return formOfIpAddress(value);
    case PrivateKind::Person: return formOfPerson(value);
    case PrivateKind::Host: return formOfHost(value);
    case PrivateKind::Domain: return isCommonName(value) ? value : formOfName(value, Family::Domain);
    case PrivateKind::Label: return isCommonLabel(value) ? value : formOfName(value, Family::Label);
    case PrivateKind::Name: return isModelName(value) ? value : formOfName(value, Family::Device);
    case PrivateKind::Network: return formOfName(value, Family::Network);
    case PrivateKind::Printer:
        return value == QLatin1String("<None>") ? value : formOfName(value, Family::Printer);
    case PrivateKind::Interface:
        return textWithForms(value, isInterfaceName(value) ? PrivateKind::Model : PrivateKind::Product);
    case PrivateKind::Folder: return givenNameForm(value).family == Family::Count ? QString(ellipsis) : value;
    default: return value;
    }
}

QString FixedForms::Reader::formOfName(const QString& value, Family family)
{
    const GivenForm given = givenNameForm(value);
    if (value.isEmpty() || value == QString(ellipsis) || given.family != Family::Count) {
        isGiven(given);
        return value;
    }
    return spelledLike(value, form(family, family == Family::Token ? value : commonSpelling(value), value));
}

QString FixedForms::Reader::formOfPerson(const QString& value)
{
    const int backslash = value.lastIndexOf(QLatin1Char('\\'));
    if (backslash > 0) {
        return formOf(value.left(backslash), PrivateKind::Domain) + QLatin1Char('\\') +
               formOfPerson(value.mid(backslash + 1));
    }
    if (isCommonName(value)) {
        return value;
    }
    QString result = formOfName(value, Family::Person);
    const QStringList names = namesOfPerson(value);
    for (const QString& name : names) {
        alsoKnownAs(Family::Person, value, name);
    }
    return result;
}

/// The names of host and domain have forms of their own, so that those of one domain can be told.
QString FixedForms::Reader::formOfHost(const QString& value)
{
    if (value.contains(QLatin1Char(':')) || QHostAddress(value).protocol() == QAbstractSocket::IPv4Protocol) {
        return formOfIpAddress(value);
    }
    QString name = value;
    for (const char* suffix : {".", ".local", ".lan", ".fritz.box"}) {
        if (name.endsWith(QLatin1String(suffix), Qt::CaseInsensitive)) {
            name.chop(static_cast<int>(std::strlen(suffix)));
        }
    }
    const QString label = name.left(name.indexOf(QLatin1Char('.')));
    const QString domain = name.mid(label.size() + 1);
    if (isCommonName(name) || label.isEmpty()) {
        return value;
    }
    QString result = formOfName(label, Family::Host);
    constexpr int netBiosLength = 15;
    alsoKnownAs(Family::Host, label, label.left(netBiosLength));
    const std::vector<PrivatePart> parts = privatePartsOf(wellFormed(label), PrivateKind::None);
    for (const PrivatePart& part : parts) {
        formOf(label.mid(part.start, part.length), part.kind); // is learned
    }
    if (!domain.isEmpty()) {
        result += QLatin1Char('.') + formOf(domain, PrivateKind::Domain);
    }
    return result + value.mid(name.size());
}

QString FixedForms::Reader::formOfAddress(const QString& value)
{
    const AddressText address(value);
    if (!address.isAddress()) {
        return formOfUuid(value);
    }
    const QByteArray device = address.device();
    const QString key = QString::fromLatin1(device.toHex());
    // Only the forms that end in one byte can be told from addresses; further ones are known to those who made them.
    constexpr qulonglong mostShown = 0xff;
    const qulonglong shown = key.toULongLong(nullptr, 16);
    if (shown <= std::max<qulonglong>(mostShown, formCount(Family::Address)) || address.isEach('\xff')) {
        isGiven({shown <= mostShown ? Family::Address : Family::Count, static_cast<std::uint32_t>(shown)});
        return value;
    }
    const QString number = form(Family::Address, key, QString());
    if (address.bytes.size() == addressSize) {
        alsoKnownAs(Family::Address, key, QString::fromLatin1(address.bytes.toHex()));
    }
    return number.isEmpty() ? value : address.withNumber(number.toUInt());
}

QString FixedForms::Reader::formOfUuid(const QString& value)
{
    const bool isBraced = value.startsWith(QLatin1Char('{')) && value.endsWith(QLatin1Char('}'));
    const QByteArray bytes = hexBytesOf((isBraced ? value.mid(1, value.size() - 2) : value).toLatin1());
    if (bytes.size() != uuidSize) {
        return formOf(value, PrivateKind::Serial);
    }
    const GivenForm given = givenUuid(bytes);
    const bool isNone = std::all_of(bytes.begin(), bytes.end(), [](char each) { return each == '\xff'; });
    if (isNone || given.family != Family::Count) {
        isGiven(given);
        return value;
    }
    const QString digits = QString::fromLatin1(bytes.toHex());
    const QString result = form(Family::Uuid, digits, digits);
    return isBraced ? QLatin1Char('{') + result + QLatin1Char('}') : result;
}

QString FixedForms::Reader::formOfIpAddress(const QString& value)
{
    const QHostAddress address(value);
    if (!isPrivateIpAddress(value)) {
        return address.isNull() ? formOfName(value, Family::Host) : value;
    }
    const bool isFour = address.protocol() == QAbstractSocket::IPv4Protocol;
    const GivenForm given =
        isFour ? givenVersionFour(address.toIPv4Address()) : givenVersionSix(address.toIPv6Address());
    if (given.family != Family::Count) {
        isGiven(given);
        return value;
    }
    return form(isFour ? Family::IpV4 : Family::IpV6, address.toString(), QString());
}

class FixedForms::Learner : public Reader
{
public:
    explicit Learner(FixedForms& forms) : forms_(forms) {}

protected:
    QString form(Family family, const QString& key, const QString& value) override
    {
        const ByteHash hash = keyHash(family, key);
        if (forms_.indices_.find(hash) == nullptr) {
            const auto index = static_cast<std::uint32_t>(forms_.numbers_.size());
            forms_.numbers_.push_back(0);
            forms_.addLearned(family, index, value);
            forms_.indices_.insert(hash, index);
        }
        return QString();
    }

    void alsoKnownAs(Family family, const QString& key, const QString& other) override
    {
        const std::uint32_t* const known = forms_.indices_.find(keyHash(family, keyOf(family, key)));
        const bool isOther = family == Family::Address || keyOf(family, other) != keyOf(family, key);
        if (known == nullptr || !isOther) {
            return;
        }
        const ByteHash hash = keyHash(family, QLatin1Char('=') + other);
        const ByteHash own = keyHash(family, keyOf(family, other));
        if (forms_.indices_.find(hash) == nullptr && forms_.indices_.find(own) == nullptr) {
            const std::uint32_t index = *known;
            forms_.addLearned(family, index, other);
            forms_.indices_.insert(family == Family::Address ? hash : own, index);
        }
    }

    void isGiven(const GivenForm& form) override
    {
        if (form.family != Family::Count) {
            forms_.taken_.at(std::size_t(form.family)).insert(form.number);
        }
    }

    std::uint32_t formCount(Family family) const override { return forms_.last_.at(std::size_t(family)); }

    QString other(const QString&, PrivateKind) override { return QString(); }

private:
    static QString keyOf(Family family, const QString& name)
    {
        return family == Family::Address ? name : commonSpelling(name);
    }

    FixedForms& forms_;
};

class FixedForms::Replacer : public Reader
{
public:
    explicit Replacer(const FixedForms& forms) : forms_(forms) {}

protected:
    QString form(Family family, const QString& key, const QString&) override
    {
        const std::uint32_t* const index = forms_.indices_.find(keyHash(family, key));
        const std::uint32_t number = index == nullptr ? 0 : forms_.numbers_[*index];
        if (number == 0) {
            return family == Family::Address ? QString() : QString(ellipsis);
        }
        switch (family) {
        case Family::Uuid: return uuidForm(number);
        case Family::Address: return QString::number(number);
        case Family::IpV4: return versionFourForm(number);
        case Family::IpV6: return versionSixForm(number);
        default: return nameForm(family, number);
        }
    }

    std::uint32_t formCount(Family family) const override { return forms_.last_.at(std::size_t(family)); }

    QString other(const QString& text, PrivateKind kind) override
    {
        QString result = forms_.models_.replacedInText(text);
        if (mayHoldToken(kind)) {
            result = forms_.tokens_.replacedInText(result);
        }
        if (!isNameless(kind)) {
            result = forms_.names_.replacedInText(result);
        }
        if (!isNameless(kind) && kind != PrivateKind::Product) {
            result = forms_.labels_.replacedInText(result);
        }
        return forms_.withoutWords(result, kind);
    }

private:
    const FixedForms& forms_;
};

ByteHash FixedForms::keyHash(Family family, const QString& key)
{
    const QString named = QChar(static_cast<ushort>(family)) + key;
    return Privacy::hashOf(reinterpret_cast<const char*>(named.constData()),
                           named.size() * static_cast<int>(sizeof(QChar)));
}

void FixedForms::learn(const QString& text, PrivateKind kind)
{
    Learner(*this).textWithForms(text, kind);
}

QString FixedForms::replaced(const QString& text, PrivateKind kind) const
{
    return Replacer(*this).textWithForms(text, kind);
}

void FixedForms::settle()
{
    for (Learned& learned : learned_) {
        const auto family = std::size_t(learned.family);
        std::uint32_t& number = numbers_[learned.index];
        if (number == 0) {
            do {
                ++last_.at(family);
            } while (taken_.at(family).contains(last_.at(family)));
            number = last_.at(family);
        }
        searchFor(learned, number);
        learned.text = QString(); // its memory serves the next one
    }
    learned_ = {};
}

/// Of either letter case.
ByteHash FixedForms::wordHash(const QString& word)
{
    const QByteArray lower = word.toLatin1().toLower();
    return Privacy::hashOf(lower.constData(), lower.size());
}

namespace {

/// Values that are ordinary words or small numbers are not searched for: most of what is found would be something else.
bool isSearchedFor(Family family, const QString& text)
{
    constexpr int longestSearched = 255;
    const auto hasOne = [&text](bool (*is)(QChar)) { return std::any_of(text.begin(), text.end(), is); };
    const bool hasDigit = hasOne([](QChar c) { return c.isDigit(); });
    const bool hasLetter = hasOne([](QChar c) { return c.isLetter(); });
    if (text.size() > longestSearched || text.size() < shortestName) {
        return false;
    }
    switch (family) {
    case Family::Address:
    case Family::Uuid: return true;
    case Family::Serial: return hasDigit && text.size() >= (hasLetter ? 4 : 7);
    case Family::Token:
        return hasDigit && hasLetter && text.size() >= 8 && !hasOne([](QChar c) { return c.isSpace(); });
    case Family::IpV4:
    case Family::IpV6: return false;
    default: return hasLetter && !isTechnicalWord(text);
    }
}

} // namespace

void FixedForms::addLearned(Family family, std::uint32_t index, const QString& text)
{
    const bool isSearched = isSearchedFor(family, text);
    const bool isWord =
        isSearched && family != Family::Label && std::all_of(text.begin(), text.end(), isPlain);
    learned_.push_back(
        {family, index, isSearched && !isWord ? text : QString(), isWord ? wordHash(text) : 0, false});
    if (isWord && family == Family::Person && !text.at(text.size() - 1).isDigit()) {
        learned_.push_back(
            {family, index, QString(), wordHash(text + QLatin1Char('s')), true}); // "Alices iPhone"
    }
}

void FixedForms::searchFor(const Learned& learned, std::uint32_t number)
{
    const QString& text = learned.text;
    const QString form = nameForm(learned.family, number);
    if (learned.word != 0) {
        words_.insert(learned.word, {learned.family, learned.isPlural, number});
    }
    if (text.isEmpty()) {
        return;
    }
    switch (learned.family) {
    case Family::Serial: searchForName(models_, text, form, Where::Word, Letters::Either); break;
    case Family::Token: tokens_.add(text.toUtf8(), form.toUtf8(), Where::Word, Letters::Either); break;
    case Family::Label: {
        const bool isWord = std::all_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
        constexpr int unmistakable = 5;
        searchForName(labels_, text, form, text.size() < unmistakable ? Where::Folder : Where::Word,
                      isWord ? Letters::Exact : Letters::Either);
        break;
    }
    default: searchForName(names_, text, form, Where::Word, Letters::Either);
    }
}

void FixedForms::searchForName(Replacements& replacements, const QString& name, const QString& form,
                               Where where, Letters letters)
{
    constexpr int mostSpelled = 10000; // bounds the memory: each has dozens of spellings
    const bool isSpelled = !std::all_of(name.begin(), name.end(), isPlain) && spelledNames_++ < mostSpelled;
    if (!isSpelled) {
        replacements.add(name.toUtf8(), form.toUtf8(), where, letters);
        return;
    }
    for (int way = 0; way < waysToSpell; ++way) {
        const QByteArray replacement = spelled(form, way).toUtf8();
        for (const QString& text : {name, name.toLower(), name.toUpper()}) {
            for (const auto normalized : {QString::NormalizationForm_C, QString::NormalizationForm_D}) {
                const QString spelling = spelled(text.normalized(normalized), way);
                if (spelling.size() >= shortestName && !isTechnicalWord(spelling)) {
                    replacements.add(spelling.toUtf8(), replacement, where, letters);
                }
            }
        }
    }
}

/// The text with forms for known words, which stand between characters of other kinds.
QString FixedForms::withoutWords(const QString& text, PrivateKind kind) const
{
    constexpr int longestWord = 255;
    const auto isInWord = [](QChar c) {
        return isPlain(c) || (c.unicode() >= 0x80 && !c.isPunct() && !c.isSpace() && !c.isSymbol() &&
                              !c.isSurrogate() && c != QChar(QChar::ByteOrderMark));
    };
    QString result;
    int copied = 0;
    for (int begin = 0; begin < text.size() && !words_.isEmpty();) {
        int end = begin;
        bool isOfKind = true;
        for (; end < text.size() && isInWord(text.at(end)); ++end) {
            isOfKind = isOfKind && isPlain(text.at(end));
        }
        if (isOfKind && end - begin >= shortestName && end - begin <= longestWord) {
            const QString word = text.mid(begin, end - begin);
            const Word* const known = words_.find(wordHash(word));
            if (known != nullptr && mayStandIn(known->family, word, kind)) {
                result += text.midRef(copied, begin - copied);
                result += formOfWord(word, *known);
                copied = end;
            }
        }
        begin = end + 1;
    }
    return copied == 0 ? text : result + text.midRef(copied);
}

QString FixedForms::formOfWord(const QString& word, const Word& known)
{
    switch (known.family) {
    case Family::Uuid: return uuidForm(known.number).remove(QLatin1Char('-'));
    case Family::Address: return AddressText(word).withNumber(known.number);
    default: return nameForm(known.family, known.number) + QLatin1String(known.isPlural ? "s" : "");
    }
}

} // namespace norvex::Privacy
