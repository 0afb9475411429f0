#include "systeminfo/privacy/privateParts.h"

#include "systeminfo/privacy/commonNames.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <bitset>
#include <cstring>
#include <string>

namespace norvex::Privacy {

namespace {

using Match = QRegularExpressionMatch;
using Parts = std::vector<PrivatePart>;

QRegularExpression expression(const char* pattern)
{
    QRegularExpression result(QString::fromUtf8(pattern), QRegularExpression::UseUnicodePropertiesOption);
    result.optimize();
    return result;
}

// The lengths in the expressions are larger than any such name, and keep the time of a search in proportion to the text.

/// What Apple calls the devices that carry their owner's name from the start.
constexpr char devices[] =
    "(?:iPhone|iPad|iPod|iMac|MacBook|AirPods|Apple Watch|Mac mini|Mac Pro|Mac Studio|Mac)";

/// Which characters a text has. Most texts have none that a shape needs.
class Characters
{
public:
    explicit Characters(const QString& text)
    {
        for (const QChar c : text) {
            if (c.unicode() < 0x80) {
                has_.set(c.unicode());
            } else {
                hasOthers_ = true;
            }
        }
    }

    bool has(const char* anyOf) const
    {
        return std::any_of(anyOf, anyOf + std::strlen(anyOf),
                           [this](char c) { return has_.test(static_cast<unsigned char>(c)); });
    }
    bool hasOthers() const { return hasOthers_; }

private:
    std::bitset<0x80> has_;
    bool hasOthers_ = false; ///< beyond ASCII
};

class Finder
{
public:
    explicit Finder(const QString& text) : text_(text), characters_(text) {}

    /// Once.
    Parts parts(PrivateKind kind)
    {
        switch (kind) {
        case PrivateKind::MountSource: addMountSource(); break;
        case PrivateKind::MountPoint: addMountPoint(); break;
        case PrivateKind::SerialPort: addSerialPort(); break;
        case PrivateKind::BluetoothPort: addBluetoothPort(); break;
        case PrivateKind::DisplayServer: addDisplayServer(); break;
        default: break;
        }
        addShapes(kind);
        if (hasFailed_) {
            return {{PrivateKind::Folder, 0, text_.size()}};
        }
        return inOrder();
    }

private:
    /// The first that is found at a place counts.
    void add(PrivateKind kind, int start, int length)
    {
        if (start < 0 || length <= 0) {
            return;
        }
        const QString value = text_.mid(start, length);
        const bool isName =
            kind == PrivateKind::Name || kind == PrivateKind::Person || kind == PrivateKind::Host;
        const bool isCommon =
            (isName && isCommonName(value)) || (kind == PrivateKind::Label && isCommonLabel(value));
        if (!isCommon) {
            parts_.push_back({kind, start, length});
        }
    }

    void add(PrivateKind kind, const Match& match, int group)
    {
        add(kind, match.capturedStart(group), match.capturedLength(group));
    }

    void addShapes(PrivateKind kind)
    {
        if (characters_.has(":-x")) {
            addNumbers();
        }
        if (characters_.has(".") && characters_.has("abcdefABCDEF")) {
            addDottedAddresses();
        }
        if (characters_.has(".:") && characters_.has("0123456789") && kind != PrivateKind::Model) {
            addIpAddresses();
        }
        if (kind == PrivateKind::Addresses && characters_.has("%")) {
            addZones();
        }
        if (characters_.has("/\\")) {
            addHomeFolders();
        }
        if (characters_.has("/=")) {
            addVolumes(kind);
        }
        if (characters_.has("@.\\")) {
            addHosts(kind);
        }
        if (characters_.has("=") && kind == PrivateKind::None) {
            addAssigned();
        }
        if (characters_.has("@") && kind == PrivateKind::None) { // elsewhere a label may stand in front
            addPasswords();
        }
        if (characters_.has("sS") && characters_.has("0123456789") && kind == PrivateKind::None) {
            addSerialNumbers();
        }
        const bool mayHaveOwner = characters_.has("'`MPW") || characters_.hasOthers();
        if (mayHaveOwner && kind != PrivateKind::Model) {
            addOwners();
        }
    }

    Parts inOrder()
    {
        std::stable_sort(parts_.begin(), parts_.end(),
                         [](const PrivatePart& a, const PrivatePart& b) { return a.start < b.start; });
        std::size_t kept = 0;
        int end = 0;
        for (const PrivatePart part : parts_) {
            if (part.start >= end) {
                parts_[kept++] = part;
                end = part.start + part.length;
            }
        }
        parts_.resize(kept);
        return std::move(parts_);
    }

    template <typename Use>
    void forEach(const QRegularExpression& shape, Use use) const
    {
        forEach(shape, text_, 0, [&use](const Match& found) {
            use(found);
            return true;
        });
    }

    /// @param use says whether to go on
    template <typename Use>
    void forEach(const QRegularExpression& shape, const QString& text, int start, Use use) const
    {
        QRegularExpressionMatchIterator found = shape.globalMatch(text, start);
        bool goesOn = true;
        while (goesOn && found.hasNext()) {
            goesOn = use(found.next());
        }
        hasFailed_ = hasFailed_ || !found.isValid();
    }

    Match find(const QRegularExpression& shape, const QString& text) const
    {
        Match found = shape.match(text);
        hasFailed_ = hasFailed_ || !found.isValid();
        return found;
    }

    void addNumbers()
    {
        static const QRegularExpression uuid(QStringLiteral(
            "(?<![0-9A-Fa-f])[0-9A-Fa-f]{8}(?:-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}(?![0-9A-Fa-f])"));
        static const QRegularExpression address(
            QStringLiteral("(?<![0-9A-Fa-f])(?<![0-9A-Fa-f]{2}[:-])(?:[0-9A-Fa-f]{2}(?:-[0-9A-Fa-f]{2}){5}|"
                           "[0-9A-Fa-f]{1,2}(?::[0-9A-Fa-f]{1,2}){5})(?![:-]?[0-9A-Fa-f])"));
        // Linux names interfaces after their addresses.
        static const QRegularExpression interface(
            QStringLiteral("(?<![0-9A-Za-z])(?:en|wl|ww|ib|sl)x([0-9a-f]{12})(?![0-9A-Za-z])"));
        // The part of a security identifier that tells the machine or domain; for a directory in the cloud, the user.
        static const QRegularExpression securityId(
            QStringLiteral("(?<![\\w\\-])S-1-(?|5-21-(\\d{1,10}(?:-\\d{1,10}){2}|SERIAL-\\d+)|"
                           "12-1-(\\d{1,10}(?:-\\d{1,10}){3}|SERIAL-\\d+))(?!\\d)"));
        forEach(uuid, [this](const Match& found) { add(PrivateKind::Uuid, found, 0); });
        forEach(address, [this](const Match& found) { add(PrivateKind::Address, found, 0); });
        forEach(interface, [this](const Match& found) { add(PrivateKind::Address, found, 1); });
        forEach(securityId, [this](const Match& found) { add(PrivateKind::Serial, found, 1); });
    }

    /// As switches write them: "3c15.c2d6.f03f". Digits alone are a version.
    void addDottedAddresses()
    {
        static const QRegularExpression address(QStringLiteral(
            "(?<![\\w.])(?=[\\d.]{0,13}[A-Fa-f])[0-9A-Fa-f]{4}(?:\\.[0-9A-Fa-f]{4}){2}(?![\\w]|\\.\\w)"));
        forEach(address, [this](const Match& found) { add(PrivateKind::Address, found, 0); });
    }

    /// Behind an address stands the name of its interface: "fe80::1%en0".
    void addZones()
    {
        static const QRegularExpression zone = expression(R"(%([^\s,/%]{1,255}))");
        forEach(zone, [this](const Match& found) { add(PrivateKind::Interface, found, 1); });
    }

    /// In a sentence or a command: "hostname=turm8;user=otto", "?token=1x2y".
    void addAssigned()
    {
        const auto assigned = [](const char* name) {
            const std::string value =
                R"~( {0,2}= {0,2}(?|"([^"]{1,255})"|'([^']{1,255})'|([^\s;,&"'<>()\[\]{}]{1,255})))~";
            return expression((name + value).c_str());
        };
        static const struct
        {
            PrivateKind kind;
            QRegularExpression shape;
        } rows[] = {
            {PrivateKind::Host,
             assigned(
                 R"((?<![\p{L}\p{N}])(?i:(?:host|computer|machine|node|server)[ _\-]?name|host|computer))")},
            {PrivateKind::Person,
             assigned(R"((?<![\p{L}\p{N}])(?i:(?:user|login|account|owner)[ _\-]?name|user|login|owner))")},
            {PrivateKind::Serial,
             assigned(
                 R"((?i:pass(?:word|wd|phrase)|pwd|secret|token|signature|credential|[?&]key|(?:api|access|auth|private)[ _\-]?key))")},
        };
        static const QRegularExpression noName =
            expression("^(?i:[\\d.]+|yes|no|on|off|true|false|none|null)$");
        for (const auto& row : rows) {
            forEach(row.shape, [this, &row](const Match& found) {
                if (row.kind == PrivateKind::Serial || !find(noName, found.captured(1)).hasMatch()) {
                    add(row.kind, found, 1);
                }
            });
        }
    }

    /// A version has the same shape, and says so in front.
    void addIpAddresses()
    {
        static const QRegularExpression version4(
            QStringLiteral("(?<![\\w.\\-])(?:[0-9]{1,3}\\.){3}[0-9]{1,3}(?![\\w\\-]|\\.\\w)"));
        static const QRegularExpression version6(
            QStringLiteral("(?<![\\w:.])(?:[0-9A-Fa-f]{0,4}:){2,7}[0-9A-Fa-f]{0,4}(?:(?<=:)(?:[0-9]{1,3}\\.){"
                           "3}[0-9]{1,3})?(?![\\w:]|\\.\\w)"));
        static const QRegularExpression versionWord(
            QStringLiteral("(?:version|revision|release|build|v)[ :=]{0,3}$"),
            QRegularExpression::CaseInsensitiveOption);
        forEach(version4, [this](const Match& found) {
            constexpr int longestWord = 12;
            const int begin = std::max(0, found.capturedStart() - longestWord);
            const QString before = text_.mid(begin, found.capturedStart() - begin);
            if (isPrivateIpAddress(found.captured()) && !find(versionWord, before).hasMatch()) {
                add(PrivateKind::IpAddress, found, 0);
            }
        });
        forEach(version6, [this](const Match& found) {
            if (isPrivateIpAddress(found.captured())) {
                add(PrivateKind::IpAddress, found, 0);
            }
        });
    }

    void addHomeFolders()
    {
        static const QRegularExpression homes = expression(
            R"([/\\](?:Users|home|Documents and Settings)[/\\]|(?<![^\s:;"'=(])(?:(?:/private)?/var)?/root/|(?<![^\s:;"'=(])~/)");
        // Where macOS keeps what each user's programs leave behind.
        static const QRegularExpression leftovers = expression(R"(/var/folders/[^/]{2}/([^/\s]{16,64}))");
        int end = 0;
        forEach(homes, [this, &end](const Match& found) {
            if (found.capturedStart() >= end) {
                end = addHomeFolder(found, end);
            }
        });
        forEach(leftovers, [this](const Match& found) { add(PrivateKind::Serial, found, 1); });
    }

    /// The user of a home folder, and what no system names below it.
    /// @param from where the path begins at the earliest
    /// @return where it ends
    int addHomeFolder(const Match& home, int from)
    {
        static const QRegularExpression domain = expression(R"(^[\p{Lu}\d.\-]*\p{Lu}[\p{Lu}\d.\-]*$|\..*\.)");
        const PathFrame frame = frameOf(home.capturedStart(), from);
        const bool hasUser = !home.captured().endsWith(QLatin1String("root/")) && home.capturedLength() > 2;
        int users = hasUser ? 1 : 0;
        int begin = home.capturedEnd();
        while (begin < frame.end) {
            const int end = endOfName(begin, frame, users > 0 && text_.at(begin - 1) == QLatin1Char('/'));
            const QString name = text_.mid(begin, end - begin);
            if (users > 0 && isCommonName(name)) {
                return frame.end; // all users' own
            }
            if (users > 0) {
                add(PrivateKind::Person, begin, end - begin);
                const int next = std::min(end + 1, frame.end);
                const bool isDomain = find(domain, name).hasMatch();
                users = users == 1 && isDomain && next < frame.end &&
                                !isCommonFolder(text_.mid(next, endOfName(next, frame, false) - next))
                            ? 2
                            : 0;
            } else if (!isHomeFolder(name)) {
                add(PrivateKind::Folder, begin, end - begin);
            }
            begin = end + 1;
            if (end < frame.end && !isSlash(end)) {
                break; // at a blank
            }
        }
        return std::min(begin, frame.end);
    }

    /// Where a path ends at the latest, and whether blanks in it are its own: it is a value, not a word of a sentence.
    struct PathFrame
    {
        int end;
        bool mayHaveBlanks;
    };

    PathFrame frameOf(int place, int from)
    {
        static const QString ends = QStringLiteral("\r\n:;\"<>|") + QChar(QChar::Null);
        static const QString openers = ends + QStringLiteral("='([{,");
        static const QString closers =
            QStringLiteral("\r\n:;\"<>|") + QChar(QChar::Null) + QStringLiteral("=')]},");
        const bool hasDrive =
            place > from + 1 && text_.at(place - 1) == QLatin1Char(':') && text_.at(place - 2).isLetter();
        int begin = hasDrive ? place - 2 : place;
        while (begin > from && text_.at(begin - 1) != QLatin1Char(' ') &&
               !openers.contains(text_.at(begin - 1))) {
            --begin;
        }
        const int opener = begin > from ? openers.indexOf(text_.at(begin - 1)) : -1;
        const QChar closer = opener >= ends.size() ? closers.at(opener) : QChar(QChar::Null);
        if (pathEnd_ < place) {
            pathEnd_ = place;
            while (pathEnd_ < text_.size() && !ends.contains(text_.at(pathEnd_))) {
                ++pathEnd_;
            }
        }
        constexpr int longestQuoted = 1024; // keeps the time in proportion to the text
        const int quoteEnd = text_.midRef(place, std::min(longestQuoted, pathEnd_ - place)).indexOf(closer);
        return {quoteEnd == -1 ? pathEnd_ : place + quoteEnd, begin == from || opener != -1};
    }

    /// In a sentence, blanks are in a name only where a slash follows, and in no user's behind a slash.
    int endOfName(int begin, const PathFrame& frame, bool isUser) const
    {
        int end = begin;
        int blank = -1;
        for (; end < frame.end && !isSlash(end); ++end) {
            if (blank == -1 && text_.at(end) == QLatin1Char(' ')) {
                blank = end;
            }
        }
        const bool isCut = blank != -1 && !frame.mayHaveBlanks && (isUser || end == frame.end);
        return isCut ? blank : end;
    }

    bool isSlash(int place) const
    {
        return text_.at(place) == QLatin1Char('/') || text_.at(place) == QLatin1Char('\\');
    }

    /// The addresses in paths of the registry look alike ("PCI0@1F,2"), but are hexadecimal.
    void addHosts(PrivateKind kind)
    {
        static const QRegularExpression server = expression(R"((?<![\w\\:])\\\\([\w\-.]{1,255})(?=\\))");
        static const QRegularExpression url =
            expression(R"(://([^/@\s:]{1,255})(?::([^/@\s]{1,255}))?@([^/\s:?#]{1,255}))");
        static const QRegularExpression builder = expression(R"(\(([^()\s/]{1,128})@([^()\s/@]{1,255})\))");
        // In sentences, what stands between parentheses is more than a name.
        static const QRegularExpression builderWithBlanks =
            expression(R"(\((?! )([^()/]{1,128})(?<! )@(?! )([^()/@]{1,255})(?<! )\))");
        // macOS names the user in front of the kernel as well: "; root:xnu-4570.71.2~1/RELEASE_X86_64".
        static const QRegularExpression kernel = expression(R"(; ([^\s:;/]{1,128}):xnu-\d)");
        static const QRegularExpression account =
            expression(R"((?<![\w\p{M}.+\-])([\w\p{M}.+\-]{1,64})@([\w\-][\w\p{M}.\-]{0,254}))");
        static const QRegularExpression host =
            expression(R"([^\W\d_a-fA-F]|\.[A-Za-z]{2}|^(?:\d{1,3}\.){3}\d)");
        static const QRegularExpression local = expression(
            R"((?<![\w.\-])([\w\-]{1,63})\.(?:local|lan|fritz\.box)(?![\w.\-])|(?:^|[/@])([^/@:;]{1,63})\._[a-z0-9\-]+\._(?:tcp|udp)\b)");
        forEach(server, [this](const Match& found) { add(PrivateKind::Host, found, 1); });
        if (kind != PrivateKind::MountSource) { // it has its own
            forEach(url, [this](const Match& found) {
                add(PrivateKind::Person, found, 1);
                add(PrivateKind::Person, found, 2); // a password
                add(PrivateKind::Host, found, 3);
            });
            forEach(kind == PrivateKind::Model ? builderWithBlanks : builder, [this](const Match& found) {
                add(PrivateKind::Person, found, 1);
                add(PrivateKind::Host, found, 2);
            });
            forEach(kernel, [this](const Match& found) { add(PrivateKind::Person, found, 1); });
            forEach(account, [this](const Match& found) {
                if (find(host, found.captured(2)).hasMatch()) {
                    add(PrivateKind::Person, found, 1);
                    add(PrivateKind::Host, found, 2);
                }
            });
        }
        forEach(local, [this](const Match& found) {
            add(PrivateKind::Host, found, found.capturedLength(1) > 0 ? 1 : 2);
        });
    }

    /// Without a protocol in front: "otto:geheim@lager".
    void addPasswords()
    {
        static const QRegularExpression password = expression(
            R"((?<![\w/:.\-])(?!(?i:mailto|sips?|xmpp|acct|git|ssh):)(?=[\d.\-]{0,63}[\p{L}_])([\w.\-]{1,64}):([^\s:@/]{1,255})@([\p{L}\d][\w.\-]{0,254}))");
        forEach(password, [this](const Match& found) {
            add(PrivateKind::Person, found, 1);
            add(PrivateKind::Person, found, 2);
            add(PrivateKind::Host, found, 3);
        });
    }

    /// In a sentence: "serial number 1A2B-77F0".
    void addSerialNumbers()
    {
        static const QRegularExpression serial = expression(
            R"(\b(?i:serial(?: ?(?:number|no\.?))|s/n)[ \t:=#|]{1,8}(?=[\w\-]{0,63}\d)([A-Za-z0-9][\w\-]{3,63}))");
        forEach(serial, [this](const Match& found) { add(PrivateKind::Serial, found, 1); });
    }

    void addOwners()
    {
        static const QRegularExpression possessive = expression(
            R"((?<![\p{L}\p{N}])([\p{L}\p{M}\p{N}.\-]{1,64})(?:['’ʼ´`]s|(?<=[sxz])['’ʼ´`])(?=[ \x{a0}_\-]))");
        static const QRegularExpression first =
            expression(R"(^(?:[\p{L}\p{M}.\-]{1,64}[ \x{a0}]){1,2}(?=[^ ]{1,64}['’ʼ´`]))");
        static const QRegularExpression word = expression(R"([^ \x{a0}]+)");
        const auto around = [](const char* before, const char* behind) {
            return expression((std::string(before) + devices + behind).c_str());
        };
        static const QRegularExpression named[] = {
            around(R"((?<![\p{L}\p{N}])(\p{L}[\p{L}\p{M}]{1,64}?)s[ \-_](?=)", ")"),
            around(R"((?<![\p{L}\p{N}])([\p{L}\p{M}]{1,64}?)(?:的|の|의)[ \x{a0}\-]?(?=)", ")"),
            around(
                "",
                R"((?: (?:Pro|Air|Max))?[ \x{a0}\-](?:(?:de|von|di|van|del|da|do|af|av|för)[ \x{a0}\-]|d['’]?)(\p{Lu}[\p{L}\p{M}\-]{1,64}))"),
            around("", R"([ \x{a0}]\((\p{Lu}[\p{L}\p{M}]{1,64})\)$)"), // "iPhone (Anna)"
        };
        static const QRegularExpression nobody =
            expression("^(?i:it|that|what|let|there|here|who|device|vendor|user|manufacturer|today|system)$");
        if (find(possessive, text_).hasMatch()) {
            const Match names = find(first, text_);
            forEach(word, names.captured(), 0, [this](const Match& found) {
                add(PrivateKind::Person, found, 0);
                return true;
            });
        }
        forEach(possessive, [this](const Match& found) {
            if (!find(nobody, found.captured(1)).hasMatch()) {
                add(PrivateKind::Person, found, 1);
            }
        });
        for (const QRegularExpression& shape : named) {
            forEach(shape, [this](const Match& found) { add(PrivateKind::Person, found, 1); });
        }
    }

    /// Names in the device files of Linux.
    void addVolumes(PrivateKind kind)
    {
        static const QRegularExpression mounted = expression(
            R"(/Volumes/([^/\x00\r\n:;"<>|]{1,255})|/(?:run/)?media/([^/\s:]{1,255})/([^/\x00\r\n:;"<>|]{1,255}))");
        if (kind != PrivateKind::MountPoint) {
            forEach(mounted, [this](const Match& found) {
                add(PrivateKind::Label, found, 1);
                add(PrivateKind::Person, found, 2);
                add(PrivateKind::Label, found, 3);
            });
        }
        static const QRegularExpression label =
            expression(R"((?:/dev/disk/by-(?:part)?label/|^(?:PART)?LABEL=)([^/]+))");
        static const QRegularExpression serial =
            expression(R"(/dev/disk/by-id/(?:[^/]{0,255}_)?([^/_]{1,255}?)(?:-\d+:\d+)?(?:-part\d+)?$)");
        static const QRegularExpression mapper =
            expression(R"(/dev/mapper/((?:[^/\-]|--){1,128})(?:-((?:[^/\-]|--){1,128}))?)");
        static const QRegularExpression group = expression(
            R"(^/dev/(?!disk/|mapper/|mtd|block/|bus/|fuse|shm|loop|zvol/|dri/|input/|char/|snd/|cu\.|tty)([^/]+)/([^/]+)$)");
        // Of FAT and NTFS, and of a partition in a table without UUIDs. UUIDs are found by their shape.
        static const QRegularExpression number = expression(
            R"(/dev/disk/by-(?:part)?uuid/([0-9A-Fa-f]{8,16}|[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4})(?:-\d{2})?$)");
        forEach(number, [this](const Match& found) { add(PrivateKind::Serial, found, 1); });
        forEach(label, [this](const Match& found) { add(PrivateKind::Label, found, 1); });
        forEach(serial, [this](const Match& found) { add(PrivateKind::Serial, found, 1); });
        forEach(mapper, [this](const Match& found) {
            addGroup(found, 1);
            add(PrivateKind::Label, found, 2);
        });
        forEach(group, [this](const Match& found) {
            addGroup(found, 1);
            add(PrivateKind::Label, found, 2);
        });
    }

    /// Installers name a group of volumes after the host: "alice-laptop-vg", "fedora_alice-laptop".
    void addGroup(const Match& match, int group)
    {
        static const QRegularExpression named =
            expression("^(?:(?:fedora|centos|rhel|rl|cl|cs|almalinux|ol)[_-]{1,2})?(.+?)(?:-{1,2}vg)?$");
        const QString name = match.captured(group);
        const Match host = find(named, name);
        const bool isHost = host.capturedLength(1) < name.size();
        if (!isCommonLabel(name)) {
            add(isHost ? PrivateKind::Host : PrivateKind::Label,
                match.capturedStart(group) + host.capturedStart(1), host.capturedLength(1));
        }
    }

    void addMountPoint()
    {
        static const QRegularExpression system = expression(
            "^/(?:System|private|dev|etc|boot|var|sys|proc|run|snap|usr|bin|lib|nix|ostree|sysroot|opt|tmp|"
            "home|Users|Library|Applications|bin|sbin|root|efi)(?:/|$)");
        static const QRegularExpression removable = expression("^/(?:run/)?media/([^/]+)/([^/]+)");
        const Match medium = find(removable, text_);
        if (medium.hasMatch()) {
            add(PrivateKind::Person, medium, 1);
            addFolders(medium.capturedStart(2), text_.size());
        } else if (!find(system, text_).hasMatch()) {
            addFolders(0, text_.size());
        }
    }

    /// The folders of a path: users' behind the folder that holds their homes, labels elsewhere.
    void addFolders(int start, int end)
    {
        static const QRegularExpression folder = expression(R"([^/\\\x00?&]+)");
        static const QRegularExpression homes = expression("^(?i:users?|homes?|files|~)$");
        QString previous;
        forEach(folder, text_, start, [&](const Match& match) {
            const QString name = match.captured();
            if (match.capturedEnd() > end) {
                return false;
            }
            const bool isUser = find(homes, previous).hasMatch();
            const int mark = name.startsWith(QLatin1Char('~')) ? 1 : 0;
            if (mark == 1 || isUser) {
                add(PrivateKind::Person, match.capturedStart() + mark, name.size() - mark);
            } else if (!isCommonFolder(name)) {
                add(PrivateKind::Label, match.capturedStart(), name.size());
            }
            previous = name;
            return true;
        });
    }

    void addMountSource()
    {
        // "//domain;user:password@host:port/share", "https://host/folder"
        static const QRegularExpression url =
            expression(R"(^(?:\w+#)?(?:[A-Za-z][\w+.\-]*:)?[/\\]{2}(?:([^/\\]*)@)?([^/\\@]+)([/\\].*)?$)");
        static const QRegularExpression cluster =
            expression(R"(^([^/@=]+)@[0-9a-fA-F\-]*\.([^/@=]+)=(/.*)?$)");
        static const QRegularExpression remote =
            expression(R"(^(?:\w+#)?(?!map |/|\.)(.+?):(?=/)|^(?:\w+#)?(?!map |/|\.)([^/:]{2,}):)");
        static const QRegularExpression pool = expression(R"(^(?:\w+#)?[\w.\- ]+(?:/[\w.\- ]+)*$)");
        const Match address = find(url, text_);
        const Match ceph = find(cluster, text_);
        const Match exported = find(remote, text_);
        if (address.hasMatch()) {
            addAccount(address.capturedStart(1), address.capturedEnd(1));
            addServers(address.capturedStart(2), address.capturedEnd(2));
            addFolders(address.capturedEnd(2), text_.size());
        } else if (ceph.hasMatch()) {
            add(PrivateKind::Person, ceph, 1);
            add(PrivateKind::Label, ceph, 2);
            addFolders(ceph.capturedEnd(2) + 1, text_.size());
        } else if (exported.hasMatch()) {
            const int group = exported.capturedLength(1) > 0 ? 1 : 2;
            addServers(exported.capturedStart(group), exported.capturedEnd(group));
            addFolders(exported.capturedEnd(), text_.size());
        } else if (!isSystemSource() && find(pool, text_).hasMatch()) {
            addFolders(0, text_.size());
        }
    }

    /// What stands where a device would, for file systems of the kernel's own.
    bool isSystemSource() const
    {
        static const QRegularExpression source = expression(
            "^(?:none|[\\w.]*tmpfs|udev|proc|sysfs|cgroup2?|devpts|overlay|shm|systemd-1|gvfsd-fuse|portal|"
            "lxcfs|map .*|devfs|fdesc|binfmt_misc|bpf|pstore|tracefs|debugfs|securityfs|configfs|fusectl|"
            "efivarfs|hugetlbfs|mqueue|ramfs|rootfs|nsfs|squashfs|drivers|lowntfs|ntfs|fuse|sunrpc|nfsd|"
            "vmware-vmblock)$");
        return find(source, text_).hasMatch();
    }

    /// "domain;user:password", "user;AUTH=method"
    void addAccount(int start, int end)
    {
        static const QRegularExpression part = expression(R"([^;:\\@]+)");
        const int begin = start < 0 ? text_.size() : start;
        forEach(part, text_.mid(begin, std::max(0, end - begin)), 0, [this, begin](const Match& match) {
            if (!match.captured().startsWith(QLatin1String("AUTH="))) {
                add(PrivateKind::Person, begin + match.capturedStart(), match.capturedLength());
            }
            return true;
        });
    }

    /// "user@host", "host:port,host:port", "[v2:host:port/0,v1:host:port/0]"
    void addServers(int start, int end)
    {
        static const QRegularExpression server = expression(
            R"((?:([^,\[\]]{1,255})@)?(?:v[12]:)?(?|\[([0-9a-fA-F:.]+)(?:%[^\]]*)?\]|([^\[\]:,/@]+))(?::\d+)?(?:/\d+)?)");
        static const QRegularExpression suffix =
            expression(R"((?:\._[a-z0-9\-]+\._(?:tcp|udp))?(?:\.local)?$)");
        const QString servers = text_.mid(start, end - start);
        forEach(server, servers, 0, [this, start](const Match& match) {
            const QString host = match.captured(2);
            if (match.capturedLength(1) > 0) {
                addAccount(start + match.capturedStart(1), start + match.capturedEnd(1));
            }
            add(PrivateKind::Host, start + match.capturedStart(2), find(suffix, host).capturedStart());
            return true;
        });
    }

    /// Drivers of adapters name a port after themselves or their serial number; macOS names those of Bluetooth devices
    /// after the device.
    void addSerialPort()
    {
        static const QRegularExpression device =
            expression((std::string("^(?=.*") + devices + ")(.+)$").c_str());
        static const QRegularExpression serial =
            expression("^(?:usbserial-|usbmodem|wchusbserial|SLAB_USBtoUART)"
                       "(?=[^0-9]*[0-9])(?=[0-9]*[A-Za-z]|[0-9]{8})([0-9A-Za-z]{4,})$");
        const Match port = portName();
        const Match adapter = find(serial, port.captured(1));
        if (adapter.hasMatch()) {
            add(PrivateKind::Serial, port.capturedStart(1) + adapter.capturedStart(1),
                adapter.capturedLength(1));
        } else {
            addPortOf(device);
        }
    }

    void addBluetoothPort()
    {
        static const QRegularExpression any = expression("^(.+)$");
        addPortOf(any);
    }

    /// @param device finds the name of a device where no service stands behind it
    void addPortOf(const QRegularExpression& device)
    {
        static const QRegularExpression service =
            expression("^(.+?)(?:-(?:WirelessiAP|Wireless "
                       "iAP|SPPDev|SPP|SerialPort|SerialPort-\\d+|DevB|COM\\d+|RFCOMM))(?:-\\d+)?$");
        static const QRegularExpression system = expression("^(?:Bluetooth|debug|wlan|usb|wchusb|serial)");
        const Match port = portName();
        const QString name = port.captured(1);
        const Match offered = find(service, name);
        const Match named = offered.hasMatch() ? offered : find(device, name);
        if (named.hasMatch() && !find(system, name).hasMatch() && !isModelName(named.captured(1))) {
            add(PrivateKind::Name, port.capturedStart(1) + named.capturedStart(1), named.capturedLength(1));
        }
    }

    Match portName() const
    {
        static const QRegularExpression file(QStringLiteral("^(?:/dev/(?:cu|tty)\\.)?([^/]+)$"));
        return find(file, text_);
    }

    void addDisplayServer()
    {
        static const QRegularExpression server(QStringLiteral("^(?:[a-z0-9]+/)?([^/:]+):[0-9]"));
        add(PrivateKind::Host, find(server, text_), 1);
    }

    const QString& text_;
    const Characters characters_;
    int pathEnd_ = -1; ///< where paths that began before end at the latest
    Parts parts_;
    mutable bool hasFailed_ = false; ///< an expression got no memory, or the text is beyond its limits
};

} // namespace

bool isPrivateIpAddress(const QString& text)
{
    const QHostAddress address(text);
    if (address.protocol() == QAbstractSocket::IPv4Protocol) {
        const quint32 number = address.toIPv4Address();
        const bool isMask = number >> 31 != 0 && ((~number + 1) & ~number) == 0;
        return number >> 24 != 0 && number >> 24 != 127 && number >> 28 != 14 && !isMask; // 14: groups
    }
    if (address.protocol() != QAbstractSocket::IPv6Protocol || address.isLoopback()) {
        return false;
    }
    const Q_IPV6ADDR bytes = address.toIPv6Address();
    const bool isNone = std::all_of(bytes.c, bytes.c + 16, [](quint8 byte) { return byte == 0; });
    const bool isMask = bytes[0] == 0xff && bytes[1] == 0xff;
    const bool isGroup = bytes[0] == 0xff && bytes[12] != 0xff; // FF there: made of an address
    return !isNone && !isMask && !isGroup;
}

std::vector<PrivatePart> privatePartsOf(const QString& text, PrivateKind kind)
{
    return Finder(text).parts(kind);
}

QStringList namesOfPerson(const QString& person)
{
    static const QRegularExpression word = expression(R"([^\s,]{3,})");
    QStringList names = {person};
    for (auto found = word.globalMatch(person); found.hasNext();) {
        names += found.next().captured();
    }
    names.removeDuplicates();
    return names;
}

QStringList namesOfHost(const QString& host)
{
    static const QRegularExpression number(QStringLiteral("^[0-9.]+$|:"));
    QStringList names;
    QString name = host;
    for (const char* suffix : {".local", ".lan", "."}) {
        if (name.endsWith(QLatin1String(suffix))) {
            name.chop(static_cast<int>(qstrlen(suffix)));
        }
    }
    const QString label = name.left(name.indexOf(QLatin1Char('.')));
    const QString domain = name.mid(label.size() + 1);
    constexpr int longEnough = 3; // to be found as a word
    if (number.match(name).hasMatch() || label.size() < longEnough || !domain.contains(QLatin1Char('.'))) {
        names += name;
    } else {
        names += domain;
    }
    if (!number.match(name).hasMatch()) {
        names += label;
        for (const PrivatePart& part : privatePartsOf(label, PrivateKind::None)) {
            names += label.mid(part.start, part.length);
        }
    }
    names.removeAll(QString());
    return names;
}

} // namespace norvex::Privacy
