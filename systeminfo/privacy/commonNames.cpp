#include "systeminfo/privacy/commonNames.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace norvex::Privacy {

namespace {

using Words = QSet<QString>;

Words words(const char* blankSeparated)
{
    const QStringList list = QString::fromUtf8(blankSeparated).split(QLatin1Char(' '));
    Words all;
    for (const QString& word : list) {
        all.insert(word);
    }
    return all;
}

/// "Macintosh HD 1" and "macintosh-hd" differ in spelling only.
QString lettersOf(const QString& name)
{
    QString letters;
    for (const QChar c : name) {
        if (c.isLetterOrNumber()) {
            letters += c.toLower();
        }
    }
    while (!letters.isEmpty() && letters.at(letters.size() - 1).isDigit()) {
        letters.chop(1);
    }
    return letters;
}

} // namespace

bool isCommonName(const QString& name)
{
    static const Words common =
        words("root admin administrator guest shared nobody daemon localhost "
              "localdomain workgroup local lan internal public default ubuntu debian fedora "
              "127.0.0.1 ::1 ip6-localhost");
    const QString lower = name.toLower();
    return common.contains(lower) || lower.startsWith(QLatin1String("localhost."));
}

bool isCommonLabel(const QString& label)
{
    static const Words common =
        words("macintoshhd macintoshhddata macintoshssd data efi efisystempartition preboot recovery "
              "recoveryhd vm boot update customer bootcamp untitled noname root basicdatapartition diskimage "
              "booter apple bootosx home microsoftreservedpartition isopartition swap var usr tmp opt system "
              "vg lv rootvg systemvg ubuntuvg ubuntulv debianvg fedora centos rhel rl cs volgroup lvol rpool "
              "bpool pve lvm crypt cryptroot cryptdata cryptswap cryptsystem luks control");
    return common.contains(lettersOf(label)) || isDiskName(label) ||
           label.endsWith(QLatin1String(" Media")); // a whole disk, named after its model
}

bool isCommonFolder(const QString& folder)
{
    static const Words common = words(
        "users user home homes files share shares shared public export exports volumes volume vol "
        "srv mnt nfs media net network servers remote php dav remotephp webdav data backup backups desktop "
        "documents downloads library movies music pictures sites templates videos applications "
        "bin sbin lib src tmp opt usr var etc snap nix store log spool crash ports docker go local config "
        "cache mount mounts fs");
    return common.contains(lettersOf(folder)) || folder.startsWith(QLatin1Char('.'));
}

bool isCommonHome(const QString& path)
{
    static const Words common = words("/ /root /var/root /private/var/root /nonexistent /var/empty");
    return path.isEmpty() || common.contains(path);
}

bool isHomeFolder(const QString& folder)
{
    static const Words common = words("desktop documents downloads library movies music pictures public "
                                      "sites templates videos applications "
                                      ".local .config .cache .trash .var .ssh .gnupg .fonts .icons .themes "
                                      "share state bin lib app data config cache "
                                      "appdata local locallow roaming temp caches preferences fonts "
                                      "containers logs frameworks .. . \xe2\x80\xa6");
    return common.contains(folder.toLower()) || folder == QLatin1String("Application Support") ||
           folder == QLatin1String("Group Containers") || folder.isEmpty();
}

bool isDiskName(const QString& name)
{
    static const QRegularExpression disk(QStringLiteral(
        "^(?:(?:[shv]|xv)d[a-z]{1,2}\\d*|nvme\\d+(?:c\\d+)?n\\d+(?:p\\d+)?|mmcblk\\d+(?:p\\d+|boot\\d+|rpmb)?"
        "|"
        "r?disk\\d+(?:s\\d+)*|(?:loop|md|nbd|zram|zd|sr|fd|bcache|ram|pmem)\\d+(?:p\\d+)?|dm-\\d+)"
        "(?:_crypt)?$"));
    return disk.match(name).hasMatch();
}

bool isInterfaceName(const QString& name)
{
    static const QRegularExpression interface(
        QStringLiteral("^(?:lo|en|em|eth|wl|wlan|ww|wwan|ib|sl|usb|ap|awdl|llw|utun|tun|tap|wg|ppp|gif|stf|"
                       "fw|p|p2p|bridge|br|virbr|"
                       "docker|veth|vmnet|vboxnet|bond|team|dummy|ifb|sit|ip6tnl|anpi|feth|ipsec|pdp_ip|can|"
                       "vpn)(?:[a-z]?\\d+)*$"));
    return interface.match(name).hasMatch();
}

bool isModelName(const QString& name)
{
    static const Words common =
        words("apple magic wireless bluetooth mighty usb keyboard mouse trackpad mini extended internal "
              "headset headphones speaker controller gamepad pencil remote iphone ipad ipod airpods pro "
              "max watch with numeric keypad touch id device hub adapter port serial phone the and");
    QString blankSeparated = name.toLower();
    for (QChar& c : blankSeparated) {
        c = c.isSpace() || QStringLiteral("-_/()").contains(c) ? QLatin1Char(' ') : c;
    }
    const QStringList parts = blankSeparated.split(QLatin1Char(' '));
    return std::all_of(parts.begin(), parts.end(), [](const QString& part) {
        bool isNumber = false;
        part.toInt(&isNumber);
        return part.isEmpty() || isNumber || common.contains(part);
    });
}

bool isPropertyKey(const QString& word)
{
    static const Words common =
        words("model name channel class classes type size data path version vendor product revision speed "
              "address serial manufacturer compatible status state value device display port bus location "
              "platform properties children faults volumes files registry services gestalt sysctl recording "
              "statfs pathconf errno subsystem target interface endpoint power clock memory audio video "
              "graphics network wireless keyboard mouse root user host disk");
    return common.contains(word);
}

bool isTechnicalWord(const QString& name)
{
    static const Words common = words("intel amd nvidia ati radeon geforce apple samsung sandisk toshiba "
                                      "seagate hitachi western digital logitech "
                                      "microsoft google dell lenovo asus acer sony crucial micron qualcomm "
                                      "broadcom realtek marvell mediatek generic "
                                      "linux darwin windows macos macosx mac macintosh kernel build release "
                                      "debug unknown true false yes none all "
                                      "free used total avail available size blocks block nodes node mount "
                                      "from enabled disabled left right server "
                                      "client desktop laptop notebook computer workstation machine printer "
                                      "scanner print screen monitor card sound "
                                      "core cores processor cpu drive ssd hdd raid boot system test testing "
                                      "home temp qt opengl mesa driver "
                                      "adapter controller ethernet wifi router gateway switch modem standard "
                                      "primary secondary master main media "
                                      "volume label partition label value domain serial name names number "
                                      "numbers time date day language country "
                                      "library libraries application applications program programs file "
                                      "files folder folders share shares public "
                                      "private work office cloud storage web mail mailer print base engine "
                                      "core air book studio air plus ultra "
                                      "lite basic advanced express connect sensor light camera video audio "
                                      "music photo photos picture pictures");
    const QString lower = name.toLower();
    return common.contains(lower) || isPropertyKey(lower) || isModelName(lower) || isCommonFolder(lower) ||
           isHomeFolder(lower);
}

bool isNoSerialNumber(const QString& text)
{
    static const QStringList texts = {QStringLiteral("to be filled by o.e.m."),
                                      QStringLiteral("default string"),
                                      QStringLiteral("system serial number"),
                                      QStringLiteral("not specified"),
                                      QStringLiteral("not available"),
                                      QStringLiteral("not applicable"),
                                      QStringLiteral("unknown"),
                                      QStringLiteral("none"),
                                      QStringLiteral("n/a")};
    const auto tells = [](QChar c) { return c.isLetterOrNumber() && c != QLatin1Char('0'); };
    return std::none_of(text.begin(), text.end(), tells) || texts.contains(text.trimmed().toLower());
}

} // namespace norvex::Privacy
