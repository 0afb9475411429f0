#include "systeminfo/mac/platform/live/desktopFiles.h"

#include "systeminfo/mac/platform/live/fileSystemQuery.h"
#include "systeminfo/mac/platform/live/kernelFiles.h"
#include "systeminfo/mac/platform/live/regularFile.h"

#include <QFile>
#include <QList>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <sys/stat.h>

namespace norvex {

namespace {

using Names = QList<QByteArray>;

/// The last value of a key in the groups of a name; empty when there is none.
QByteArray valueInGroup(const QByteArray& text, const QByteArray& group, const QByteArray& key)
{
    QByteArray value;
    bool isInGroup = false;
    for (const QByteArray& line : text.split('\n')) {
        if (line.startsWith('[')) {
            isInGroup = line.trimmed() == '[' + group + ']';
        } else if (isInGroup) {
            value = valueOfKey(line, key, '=').value_or(value);
        }
    }
    return value;
}

Names namesInGroup(const QByteArray& text, const QByteArray& group, const QByteArray& key)
{
    Names names = valueInGroup(text, group, key).split(';');
    names.removeAll(QByteArray());
    return names;
}

/// The folders of a kind, the user's own first.
QList<QByteArray> foldersOf(QStandardPaths::StandardLocation kind)
{
    QList<QByteArray> folders;
    for (const QString& folder : QStandardPaths::standardLocations(kind)) {
        folders.append(QFile::encodeName(folder) + '/');
    }
    return folders;
}

/// The names of the lists of chosen applications in a folder: those of the user's desktop, then that of all.
Names namesOfLists()
{
    Names names;
    for (const QByteArray& desktop : qgetenv("XDG_CURRENT_DESKTOP").toLower().split(':')) {
        if (!desktop.isEmpty()) {
            names.append(desktop + "-mimeapps.list");
        }
    }
    return names << "mimeapps.list";
}

/// Whether all lists of applications can be read. One may be a symbolic link out of its folder.
bool listsAnswer()
{
    const Names lists = namesOfLists() << "mimeinfo.cache";
    QList<QByteArray> files;
    for (const QByteArray& folder :
         foldersOf(QStandardPaths::GenericConfigLocation) + foldersOf(QStandardPaths::ApplicationsLocation)) {
        for (const QByteArray& list : lists) {
            files.append(folder + list);
        }
    }
    return fileSystemsAnswer(files);
}

/// @param program a name, or a path
bool isThere(const QString& program)
{
    const QByteArray name = QFile::encodeName(program);
    QList<QByteArray> files{name};
    if (!name.contains('/')) {
        files = qgetenv("PATH").split(':');
        for (QByteArray& file : files) {
            file += '/' + name;
        }
    }
    return fileSystemsAnswer(files) && !QStandardPaths::findExecutable(program).isEmpty();
}

/// Whether a desktop file stands for an application that can be started.
bool isUsable(const QByteArray& desktopFile)
{
    const auto value = [&desktopFile](const char* key) {
        return valueInGroup(desktopFile, "Desktop Entry", key);
    };
    if (value("Type") != "Application" || value("Hidden") == "true") {
        return false;
    }
    const QString needed = QString::fromUtf8(value("TryExec"));
    const QStringList command = QProcess::splitCommand(QString::fromUtf8(value("Exec")));
    // An application that the session bus starts has no command.
    return (needed.isEmpty() || isThere(needed)) && (command.isEmpty() || isThere(command.first()));
}

struct DesktopFile
{
    QByteArray folder; ///< of applications
    QByteArray path;
    QByteArray text; ///< empty when its file system does not answer
};

bool isFolder(const QByteArray& path)
{
    struct stat64 status = {};
    return fileSystemsAnswer({path}) && ::stat64(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Finds a desktop file below a folder. Hyphens in its name may stand for folders: "kde-4-mail.desktop" may be
/// kde-4/mail.desktop.
std::optional<DesktopFile> fileBelow(const QByteArray& folder, const QByteArray& name)
{
    const QByteArray path = folder + name;
    if (!fileSystemsAnswer({path})) {
        return DesktopFile{folder, path, QByteArray()};
    }
    if (const auto text = regularFileContents(path)) {
        return DesktopFile{folder, path, *text};
    }
    for (int hyphen = name.indexOf('-'); hyphen >= 0; hyphen = name.indexOf('-', hyphen + 1)) {
        const QByteArray inner = name.left(hyphen);
        if (inner.isEmpty() || inner == "." || inner == ".." || !isFolder(folder + inner)) {
            continue;
        }
        if (auto file = fileBelow(folder + inner + '/', name.mid(hyphen + 1))) {
            return file;
        }
    }
    return std::nullopt;
}

/// The desktop file of a name. One in a user's folder stands in front of one of the same name in the system's, which it
/// hides, whatever it says.
std::optional<DesktopFile> desktopFileOf(const QByteArray& name)
{
    if (name.contains('/')) {
        return std::nullopt;
    }
    for (const QByteArray& folder : foldersOf(QStandardPaths::ApplicationsLocation)) {
        if (auto file = fileBelow(folder, name)) {
            file->folder = folder;
            return file;
        }
    }
    return std::nullopt;
}

/// The applications that say, or of which somebody says, that they open a type, the preferred ones first.
Names associatedNames(const QByteArray& type)
{
    Names names;
    Names removed;
    const auto add = [&](const Names& found) {
        for (const QByteArray& name : found) {
            if (!removed.contains(name)) {
                names.append(name);
            }
        }
    };
    for (const QByteArray& folder :
         foldersOf(QStandardPaths::GenericConfigLocation) + foldersOf(QStandardPaths::ApplicationsLocation)) {
        const QByteArray chosen = regularFileContents(folder + "mimeapps.list").value_or(QByteArray());
        add(namesInGroup(chosen, "Added Associations", type));
        removed += namesInGroup(chosen, "Removed Associations", type);
        // The cache holds what the desktop files in its own folder say.
        const QByteArray cache = regularFileContents(folder + "mimeinfo.cache").value_or(QByteArray());
        Names stated = namesInGroup(cache, "MIME Cache", type);
        const auto saysOtherwise = [&folder](const QByteArray& name) {
            const auto file = desktopFileOf(name);
            return !file || file->folder != folder;
        };
        stated.erase(std::remove_if(stated.begin(), stated.end(), saysOtherwise), stated.end());
        add(stated);
    }
    return names;
}

Names defaultNames(const QByteArray& type)
{
    Names names;
    for (const QByteArray& folder :
         foldersOf(QStandardPaths::GenericConfigLocation) + foldersOf(QStandardPaths::ApplicationsLocation)) {
        for (const QByteArray& list : namesOfLists()) {
            const QByteArray chosen = regularFileContents(folder + list).value_or(QByteArray());
            names += namesInGroup(chosen, "Default Applications", type);
        }
    }
    return names;
}

/// desktopFilePath() where the lists answer.
std::optional<QByteArray> usableFile(const QByteArray& name)
{
    const auto file = desktopFileOf(name);
    return file && isUsable(file->text) ? std::make_optional(file->path) : std::nullopt;
}

std::optional<QByteArray> firstDesktopFile(const Names& names)
{
    for (const QByteArray& name : names) {
        if (auto path = usableFile(name)) {
            return path;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> desktopFilePath(const QByteArray& name)
{
    return listsAnswer() ? usableFile(name) : std::nullopt;
}

std::optional<QByteArray> urlHandlerPath(const QByteArray& scheme)
{
    if (scheme.isEmpty() || !listsAnswer()) {
        return std::nullopt;
    }
    const QByteArray type = "x-scheme-handler/" + scheme.toLower();
    auto path = firstDesktopFile(defaultNames(type));
    return path ? path : firstDesktopFile(associatedNames(type));
}

} // namespace norvex
