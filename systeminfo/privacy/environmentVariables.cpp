#include "systeminfo/privacy/environmentVariables.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace norvex::Privacy {

namespace {

/// docs/privacy.md has the same list. A name that ends in "*" stands for all that begin like it.
const char* const harmless[] = {
    // language and time
    "LANG",
    "LANGUAGE",
    "LC_*",
    "TZ",
    // terminal and shell
    "TERM",
    "TERM_PROGRAM",
    "TERM_PROGRAM_VERSION",
    "COLORTERM",
    "NO_COLOR",
    "SHELL",
    "SHLVL",
    // desktop and display
    "DESKTOP_SESSION",
    "WAYLAND_DISPLAY",
    "XDG_CURRENT_DESKTOP",
    "XDG_SEAT",
    "XDG_SESSION_CLASS",
    "XDG_SESSION_DESKTOP",
    "XDG_SESSION_TYPE",
    "XDG_VTNR",
    "XCURSOR_SIZE",
    "KDE_FULL_SESSION",
    "KDE_SESSION_VERSION",
    "GDK_BACKEND",
    "GDK_DPI_SCALE",
    "GDK_SCALE",
    // Qt and OpenGL
    "QT_*",
    "QML_*",
    "QSG_*",
    "GALLIUM_*",
    "LIBGL_*",
    "LIBVA_DRIVER_NAME",
    "MESA_*",
    "VDPAU_DRIVER",
    "__EGL_VENDOR_LIBRARY_FILENAMES",
    "__GLX_VENDOR_LIBRARY_NAME",
    // macOS and Windows
    "__CF_USER_TEXT_ENCODING",
    "ComSpec",
    "NUMBER_OF_PROCESSORS",
    "OS",
    "PATHEXT",
    "PROCESSOR_*",
    "SESSIONNAME",
    "SystemDrive",
    "SystemRoot",
    "windir",
};

const struct
{
    const char* name;
    PrivateKind kind;
} others[] = {
    {"USER", PrivateKind::Person},
    {"LOGNAME", PrivateKind::Person},
    {"USERNAME", PrivateKind::Person},
    {"SUDO_USER", PrivateKind::Person},
    {"HOST", PrivateKind::Host},
    {"HOSTNAME", PrivateKind::Host},
    {"COMPUTERNAME", PrivateKind::Host},
    {"USERDOMAIN", PrivateKind::Domain},
    {"DISPLAY", PrivateKind::DisplayServer},
    {"HOME", PrivateKind::HomeFolder},
    {"USERPROFILE", PrivateKind::HomeFolder},
};

/// Windows does not mind the letter case of a name.
QString compared(const char* name)
{
    return QString::fromLatin1(name).toUpper();
}

struct Variables
{
    Variables();

    QHash<QString, PrivateKind> kinds;
    QStringList harmlessBegins;
};

Variables::Variables()
{
    for (const char* name : harmless) {
        const QString upper = compared(name);
        if (upper.endsWith(QLatin1Char('*'))) {
            harmlessBegins += upper.left(upper.size() - 1);
        } else {
            kinds.insert(upper, PrivateKind::None);
        }
    }
    for (const auto& row : others) {
        kinds.insert(compared(row.name), row.kind);
    }
}

} // namespace

PrivateKind kindOfVariable(const QString& name)
{
    static const Variables variables;
    const QString upper = name.toUpper();
    const auto known = variables.kinds.find(upper);
    if (known != variables.kinds.end()) {
        return *known;
    }
    const bool isHarmless = std::any_of(variables.harmlessBegins.begin(), variables.harmlessBegins.end(),
                                        [&upper](const QString& begin) { return upper.startsWith(begin); });
    // An application has variables of its own there: "QT_ACME_TOKEN".
    const bool isSecret = privateKindOf(name.toUtf8()) == PrivateKind::Serial;
    return isHarmless && !isSecret ? PrivateKind::None : PrivateKind::Token;
}

} // namespace norvex::Privacy
