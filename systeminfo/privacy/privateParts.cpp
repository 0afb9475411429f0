#include "systeminfo/privacy/privateParts.h"

#include "systeminfo/privacy/commonNames.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
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

class Finder
{
public:
    explicit Finder(const QString& text) : text_(text) {}

    Parts parts(PrivateKind kind)
    {
        switch (kind) {
        case PrivateKind::MountSource: addMountSource(); break;
        case PrivateKind::MountPoint: addMountPoint(); break;
        case PrivateKind::SerialPort: addSerialPort(); break;
        default: break;
        }
        addNumbers();
        addHomeFolders();
        addHosts();
        addOwners();
        addVolumes();
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

    Parts inOrder()
    {
        std::stable_sort(parts_.begin(), parts_.end(),
                         [](const PrivatePart& a, const PrivatePart& b) { return a.start < b.start; });
        Parts separate;
        for (const PrivatePart& part : parts_) {
            if (separate.empty() || part.start >= separate.back().start + separate.back().length) {
                separate.push_back(part);
            }
        }
        return separate;
    }

    template <typename Use>
    void forEach(const QRegularExpression& shape, Use use) const
    {
        for (auto found = shape.globalMatch(text_); found.hasNext();) {
            use(found.next());
        }
    }

    void addNumbers()
    {
        static const QRegularExpression uuid(QStringLiteral(
            "(?<![0-9A-Fa-f])[0-9A-Fa-f]{8}(?:-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}(?![0-9A-Fa-f])"));
        static const QRegularExpression address(
            QStringLiteral("(?<![0-9A-Fa-f])(?<![0-9A-Fa-f]{2}[:-])(?:[0-9A-Fa-f]{2}(?:-[0-9A-Fa-f]{2}){5}|"
                           "[0-9A-Fa-f]{1,2}(?::[0-9A-Fa-f]{1,2}){5})(?![:-]?[0-9A-Fa-f])"));
        forEach(uuid, [this](const Match& found) { add(PrivateKind::Uuid, found, 0); });
        forEach(address, [this](const Match& found) { add(PrivateKind::Address, found, 0); });
    }

    void addHomeFolders()
    {
        static const QRegularExpression home = expression(
            R"([/\\](?:Users|home)[/\\]([^/\\\x00\n:;"<>|]{1,255})(?:[/\\]([^/\\\x00\n:;"<>|]{1,255}))?)");
        // Where macOS keeps what each user's programs leave behind.
        static const QRegularExpression leftovers = expression(R"(/var/folders/[^/]{2}/([^/\s]{16,64}))");
        static const QRegularExpression domain = expression(R"(^[\p{Lu}\d.\-]*\p{Lu}[\p{Lu}\d.\-]*$|\..*\.)");
        forEach(home, [this](const Match& found) {
            add(PrivateKind::Person, found, 1);
            const bool isDomain = domain.match(found.captured(1)).hasMatch();
            if (isDomain && !isCommonFolder(found.captured(2))) {
                add(PrivateKind::Person, found, 2);
            }
        });
        forEach(leftovers, [this](const Match& found) { add(PrivateKind::Serial, found, 1); });
    }

    /// The addresses in paths of the registry look alike ("PCI0@1F,2"), but are hexadecimal.
    void addHosts()
    {
        static const QRegularExpression account =
            expression(R"((?<![\w.+\-])(\()?([\w.+\-]{1,64})@([\w\-][\w.\-]{0,254})(?(1)\)))");
        static const QRegularExpression word = expression("[g-zG-Z]");
        static const QRegularExpression local = expression(
            R"((?<![\w.\-])([\w\-]{1,63})\.(?:local|lan|fritz\.box)(?![\w.\-])|(?:^|[/@])([^/@:;]{1,63})\._[a-z0-9\-]+\._(?:tcp|udp)\b)");
        forEach(account, [this](const Match& found) {
            const bool areWords =
                word.match(found.captured(2)).hasMatch() && word.match(found.captured(3)).hasMatch();
            if (areWords || found.capturedLength(1) > 0) {
                add(PrivateKind::Person, found, 2);
                add(PrivateKind::Host, found, 3);
            }
        });
        forEach(local, [this](const Match& found) {
            add(PrivateKind::Host, found, found.capturedLength(1) > 0 ? 1 : 2);
        });
    }

    void addOwners()
    {
        static const QRegularExpression possessive = expression(
            R"((?<![\p{L}\p{N}])([\p{L}\p{M}\p{N}.\-]{1,64})(?:['’ʼ]s|(?<=[sxz])['’ʼ])(?=[ \x{a0}_\-]))");
        static const QRegularExpression first =
            expression(R"(^(?:[\p{L}\p{M}.\-]{1,64}[ \x{a0}]){1,2}(?=[^ ]{1,64}['’ʼ]))");
        static const QRegularExpression word = expression(R"([^ \x{a0}]+)");
        static const QRegularExpression genitive = expression(
            (std::string(R"((?<![\p{L}\p{N}])(\p{L}[\p{L}\p{M}]{1,64}?)s[ \-_](?=)") + devices + ")")
                .c_str());
        static const QRegularExpression of = expression(
            (std::string(devices) +
             R"((?: (?:Pro|Air|Max))?[ \x{a0}\-](?:(?:de|von|di|van|del|da|do|af|av|för)[ \x{a0}\-]|d['’]?)(\p{Lu}[\p{L}\p{M}\-]{1,64}))")
                .c_str());
        static const QRegularExpression nobody =
            expression("^(?i:it|that|what|let|there|here|who|device|vendor|user|manufacturer|today|system)$");
        if (possessive.match(text_).hasMatch()) {
            const Match names = first.match(text_);
            for (auto found = word.globalMatch(names.captured()); found.hasNext();) {
                add(PrivateKind::Name, found.next(), 0);
            }
        }
        forEach(possessive, [this](const Match& found) {
            if (!nobody.match(found.captured(1)).hasMatch()) {
                add(PrivateKind::Name, found, 1);
            }
        });
        forEach(genitive, [this](const Match& found) { add(PrivateKind::Name, found, 1); });
        forEach(of, [this](const Match& found) { add(PrivateKind::Name, found, 1); });
    }

    /// Names in the device files of Linux.
    void addVolumes()
    {
        static const QRegularExpression label =
            expression(R"((?:/dev/disk/by-(?:part)?label/|^(?:PART)?LABEL=)([^/]+))");
        static const QRegularExpression serial =
            expression(R"(/dev/disk/by-id/(?:[^/]{0,255}_)?([^/_]{1,255}?)(?:-\d+:\d+)?(?:-part\d+)?$)");
        static const QRegularExpression mapper =
            expression(R"(/dev/mapper/((?:[^/\-]|--){1,128})(?:-((?:[^/\-]|--){1,128}))?)");
        static const QRegularExpression group = expression(
            R"(^/dev/(?!disk/|mapper/|mtd|block/|bus/|fuse|shm|loop|zvol/|dri/|input/|char/|snd/|cu\.|tty)([^/]+)/([^/]+)$)");
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
        const Match host = named.match(name);
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
        const Match medium = removable.match(text_);
        if (medium.hasMatch()) {
            add(PrivateKind::Person, medium, 1);
            addFolders(medium.capturedStart(2), text_.size());
        } else if (!system.match(text_).hasMatch()) {
            addFolders(0, text_.size());
        }
    }

    /// The folders of a path: users' behind the folder that holds their homes, labels elsewhere.
    void addFolders(int start, int end)
    {
        static const QRegularExpression folder = expression(R"([^/\\\x00?&]+)");
        static const QRegularExpression homes = expression("^(?i:users?|homes?|files|~)$");
        QString previous;
        for (auto found = folder.globalMatch(text_, start); found.hasNext();) {
            const Match match = found.next();
            const QString name = match.captured();
            if (match.capturedEnd() > end) {
                break;
            }
            const bool isUser = homes.match(previous).hasMatch();
            const int mark = name.startsWith(QLatin1Char('~')) ? 1 : 0;
            if (mark == 1 || isUser) {
                add(PrivateKind::Person, match.capturedStart() + mark, name.size() - mark);
            } else if (!isCommonFolder(name)) {
                add(PrivateKind::Label, match.capturedStart(), name.size());
            }
            previous = name;
        }
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
        static const QRegularExpression pool = expression(R"(^[\w.\- ]+(?:/[\w.\- ]+)*$)");
        const Match address = url.match(text_);
        const Match ceph = cluster.match(text_);
        const Match exported = remote.match(text_);
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
        } else if (!isSystemSource() && pool.match(text_).hasMatch()) {
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
        return source.match(text_).hasMatch();
    }

    /// "domain;user:password", "user;AUTH=method"
    void addAccount(int start, int end)
    {
        static const QRegularExpression part = expression(R"([^;:\\@]+)");
        for (auto found = part.globalMatch(text_, start < 0 ? text_.size() : start); found.hasNext();) {
            const Match match = found.next();
            if (match.capturedEnd() > end) {
                break;
            }
            if (!match.captured().startsWith(QLatin1String("AUTH="))) {
                add(PrivateKind::Person, match, 0);
            }
        }
    }

    /// "user@host", "host:port,host:port", "[v2:host:port/0,v1:host:port/0]"
    void addServers(int start, int end)
    {
        static const QRegularExpression server = expression(
            R"((?:([^,\[\]]{1,255})@)?(?:v[12]:)?(?|\[([0-9a-fA-F:.]+)(?:%[^\]]*)?\]|([^\[\]:,/@]+))(?::\d+)?(?:/\d+)?)");
        static const QRegularExpression suffix =
            expression(R"((?:\._[a-z0-9\-]+\._(?:tcp|udp))?(?:\.local)?$)");
        const QString servers = text_.mid(start, end - start);
        for (auto found = server.globalMatch(servers); found.hasNext();) {
            const Match match = found.next();
            const QString host = match.captured(2);
            if (match.capturedLength(1) > 0) {
                addAccount(start + match.capturedStart(1), start + match.capturedEnd(1));
            }
            add(PrivateKind::Host, start + match.capturedStart(2), suffix.match(host).capturedStart());
        }
    }

    /// Drivers of adapters name a port after themselves; macOS names those of Bluetooth devices after the device.
    void addSerialPort()
    {
        static const QRegularExpression file(QStringLiteral("^(?:/dev/(?:cu|tty)\\.)?([^/]+)$"));
        static const QRegularExpression service =
            expression("^(.+?)(?:-(?:WirelessiAP|Wireless "
                       "iAP|SPPDev|SPP|SerialPort|SerialPort-\\d+|DevB|COM\\d+|RFCOMM))(?:-\\d+)?$");
        static const QRegularExpression device =
            expression((std::string("^(?=.*") + devices + ")(.+)$").c_str());
        static const QRegularExpression system = expression("^(?:Bluetooth|debug|wlan|usb|wchusb|serial)");
        const Match port = file.match(text_);
        const QString name = port.captured(1);
        const Match offered = service.match(name);
        const Match named = offered.hasMatch() ? offered : device.match(name);
        if (named.hasMatch() && !system.match(name).hasMatch() && !isModelName(named.captured(1))) {
            add(PrivateKind::Name, port.capturedStart(1) + named.capturedStart(1), named.capturedLength(1));
        }
    }

    const QString& text_;
    Parts parts_;
};

} // namespace

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
