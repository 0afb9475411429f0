#include "tools/silentFolders.h"

#include "tools/output.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/live/fileSystemQuery.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QByteArray>
#include <QFile>
#include <QLibraryInfo>
#include <QList>
#include <QLoggingCategory>
#include <QStringList>

#include <unistd.h>
#include <utility>
#include <vector>

namespace norvex::Tool {

namespace {

using Paths = QList<QByteArray>;

/// No folder, and none can be made below it.
constexpr char noFolder[] = "/dev/null";

/// A folder of the user, and what libraries look at in it: each may be a link to somewhere else.
struct UserFolder
{
    const char* variable;
    const char* inHome; ///< where it is when the variable is not set
    Paths used;
};

const UserFolder home = {"HOME",
                         "",
                         {".Xauthority", ".cups", ".cups/client.conf", ".cups/lpoptions", ".drirc",
                          ".fontconfig", ".fonts", ".fonts.conf", ".fonts.conf.d", ".icons"}};

const UserFolder foldersInHome[] = {
    {"XDG_CONFIG_HOME",
     "/.config",
     {"QtProject", "QtProject.conf", "QtProject/qtlogging.ini", "fontconfig", "fontconfig/conf.d",
      "fontconfig/fonts.conf", "kdeglobals", "user-dirs.dirs"}},
    {"XDG_CACHE_HOME", "/.cache", {"fontconfig", "mesa_shader_cache"}},
    {"XDG_DATA_HOME", "/.local/share", {"fonts", "icons"}},
};

/// Other variables that name a folder or file, or several behind colons. Without them there are the system's own.
constexpr const char* otherVariables[] = {
    "CUPS_SERVERROOT",
    "FONTCONFIG_FILE",
    "FONTCONFIG_PATH",
    "FONTCONFIG_SYSROOT",
    "ICEAUTHORITY",
    "LIBGL_DRIVERS_PATH",
    "QT_LOGGING_CONF",
    "MESA_SHADER_CACHE_DIR",
    "QT_PLUGIN_PATH",
    "QT_QPA_FONTDIR",
    "QT_XKB_CONFIG_ROOT",
    "QT_QPA_PLATFORM_PLUGIN_PATH",
    "RESOLV_HOST_CONF",
    "TMPDIR",
    "TZ",
    "TZDIR",
    "XAUTHORITY",
    "XCURSOR_PATH",
    "XDG_CONFIG_DIRS",
    "XDG_DATA_DIRS",
    "XDG_RUNTIME_DIR",
    "XKB_CONFIG_ROOT",
    "XLOCALEDIR",
};

/// Folders of the system that no variable replaces.
Paths systemFolders(bool usesGui)
{
    const auto ofQt = [](QLibraryInfo::LibraryLocation location) {
        return QFile::encodeName(QLibraryInfo::location(location));
    };
    Paths folders{"/etc/xdg", ofQt(QLibraryInfo::DataPath)};
    if (usesGui) {
        folders += Paths{"/etc/cups",
                         "/etc/fonts",
                         "/tmp",
                         "/usr/local/share/fonts",
                         "/usr/share/X11",
                         "/usr/share/fonts",
                         "/var/cache/fontconfig",
                         ofQt(QLibraryInfo::PluginsPath)};
    }
    return folders;
}

QByteArray placeOf(const UserFolder& folder)
{
    const QByteArray place = qgetenv(folder.variable);
    return place.isEmpty() ? qgetenv(home.variable) + folder.inHome : place;
}

Paths pathsIn(const UserFolder& folder)
{
    const QByteArray place = placeOf(folder);
    Paths paths{place};
    for (const QByteArray& name : folder.used) {
        paths.append(place + '/' + name);
    }
    return paths;
}

Paths pathsIn(const char* variable)
{
    const QByteArray value = qgetenv(variable);
    // A time zone has a name, or stands in a file.
    const bool isZoneName = qstrcmp(variable, "TZ") == 0 && !value.startsWith('/') && !value.startsWith(":/");
    return value.isEmpty() || isZoneName ? Paths() : value.split(':');
}

/// All that the environment names.
Paths namedPaths()
{
    Paths paths = pathsIn(home);
    for (const UserFolder& folder : foldersInHome) {
        paths += pathsIn(folder);
    }
    for (const char* variable : otherVariables) {
        paths += pathsIn(variable);
    }
    return paths;
}

/// The variables of a process, which can be exchanged as a whole: getenv() and QProcess then know these alone, in their
/// order.
class Environment
{
public:
    Environment()
    {
        for (char** entry = environ; *entry != nullptr; ++entry) {
            entries_.append(*entry);
        }
    }

    void set(const QByteArray& variable, const QByteArray& value)
    {
        remove(variable);
        entries_.append(variable + '=' + value);
    }

    void remove(const QByteArray& variable)
    {
        const QByteArray beginning = variable + '=';
        for (int i = entries_.size() - 1; i >= 0; --i) {
            if (entries_[i].startsWith(beginning)) {
                entries_.removeAt(i);
            }
        }
    }

    /// The variables for @c environ. They live as long as this object, and change no more.
    char** pointers()
    {
        pointers_.clear();
        for (QByteArray& entry : entries_) {
            pointers_.push_back(entry.data());
        }
        pointers_.push_back(nullptr);
        return pointers_.data();
    }

private:
    Paths entries_;
    std::vector<char*> pointers_;
};

/// What the process was started with; null while that is the environment.
char** trueEnvironment = nullptr;
/// The same, but without what the section on folders would look at: settings, which tell where some of the user's
/// folders are, and the folder of temporary files.
char** foldersEnvironment = nullptr;

/// While there is one, the environment is another one.
class EnvironmentChange
{
public:
    /// @param environment null changes nothing
    explicit EnvironmentChange(char** environment)
        : before_(std::exchange(environ, environment == nullptr ? environ : environment))
    {}
    ~EnvironmentChange() { environ = before_; }
    Q_DISABLE_COPY(EnvironmentChange)

private:
    char** const before_;
};

/// Takes silent folders out of variables.
class Avoidance
{
public:
    void avoid(const UserFolder& folder)
    {
        if (fileSystemsAnswer(pathsIn(folder))) {
            return;
        }
        const bool isSet = !qgetenv(folder.variable).isEmpty();
        // What is in a silent home folder is silent as well; nobody needs to hear that.
        if (isSet || !isHomeSilent_) {
            name(folder.variable, placeOf(folder));
        }
        isHomeSilent_ = isHomeSilent_ || &folder == &home;
        environment_.set(folder.variable, noFolder);
    }

    void avoid(const char* variable)
    {
        const Paths paths = pathsIn(variable);
        Paths answering;
        for (const QByteArray& path : paths) {
            if (fileSystemsAnswer({path})) {
                answering.append(path);
            }
        }
        if (answering == paths) {
            return;
        }
        name(variable, qgetenv(variable));
        const QByteArray rest = answering.join(':');
        if (rest.isEmpty()) {
            environment_.remove(variable);
        } else {
            environment_.set(variable, rest);
        }
    }

    Environment& environment() { return environment_; }
    const QStringList& named() const { return named_; }

private:
    void name(const char* variable, const QByteArray& value)
    {
        named_.append(QLatin1String(variable) + QLatin1Char('=') + QFile::decodeName(value));
    }

    Environment environment_;
    bool isHomeSilent_ = false;
    QStringList named_;
};

/// Makes the environment without silent folders the one of the process. What it is made of stays.
void useEnvironmentWithoutSilentFolders()
{
    static auto& avoidance = *new Avoidance;
    avoidance.avoid(home);
    for (const UserFolder& folder : foldersInHome) {
        avoidance.avoid(folder);
    }
    for (const char* variable : otherVariables) {
        avoidance.avoid(variable);
    }
    if (avoidance.named().isEmpty()) {
        return;
    }
    printMessage(QStringLiteral("no file system answers with %1; nothing there is used")
                     .arg(avoidance.named().join(QStringLiteral(", "))));
    // For its cache, Mesa finds the home folder in the list of users as well.
    avoidance.environment().set("MESA_SHADER_CACHE_DISABLE", "true");
    const char* const settings = foldersInHome[0].variable;
    static auto& folders = *new Environment;
    trueEnvironment = std::exchange(environ, avoidance.environment().pointers());
    if (qgetenv(settings) == noFolder) {
        folders.set(settings, noFolder);
    }
    // Qt follows the links on the way to the folder of temporary files.
    if (!qEnvironmentVariableIsSet("TMPDIR")) {
        folders.remove("TMPDIR");
    }
    foldersEnvironment = folders.pointers();
}

} // namespace

bool avoidSilentFolders(bool usesGui, QString& errorMessage)
{
    const Paths needed = systemFolders(usesGui);
    if (fileSystemsAnswer(needed + namedPaths())) {
        return true;
    }
    for (const QByteArray& folder : needed) {
        if (!fileSystemsAnswer({folder})) {
            errorMessage = QStringLiteral("the file system of '%1' does not answer, and Qt looks there")
                               .arg(QFile::decodeName(folder));
            return false;
        }
    }
    useEnvironmentWithoutSilentFolders();
    // Qt reads the rules of its logging when something is logged, which may be in the true environment.
    QLoggingCategory::defaultCategory();
    return true;
}

void inTrueEnvironment(const std::function<void()>& work)
{
    const EnvironmentChange change(trueEnvironment);
    work();
}

SectionFunction sectionInTrueEnvironment(SectionFunction section)
{
    using namespace SystemInfo;
    if (section == qtSystemEnvironment) {
        return [] {
            const EnvironmentChange change(trueEnvironment);
            return qtSystemEnvironment();
        };
    }
    if (section == qtDesktopServices) {
        return [] {
            const EnvironmentChange change(foldersEnvironment);
            return qtDesktopServices();
        };
    }
    // It finds out itself which lists of applications answer, and says nothing where one does not.
    if (section == MacSysInfo::defaultEmailApp) {
        return [] {
            const EnvironmentChange change(trueEnvironment);
            return MacSysInfo::defaultEmailApp();
        };
    }
    return section;
}

} // namespace norvex::Tool
