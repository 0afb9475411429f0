#include "systeminfo/mac/fileQueries.h"
#include "systeminfo/mac/frameworks.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/sectionText.h"

#include <cerrno>
#include <limits>

namespace norvex::SystemInfo::MacSysInfo {

using namespace Internal;

namespace {

using Count = unsigned long long;

constexpr Count unknownCount = std::numeric_limits<std::uint64_t>::max();
constexpr auto unknownBlockSize = std::numeric_limits<std::uint32_t>::max();

QString caseText(int sensitivity)
{
    switch (sensitivity) {
    case 0: return QStringLiteral("not case sensitive");
    case 1: return QStringLiteral("case sensitive");
    case 2: return QStringLiteral("case preserving");
    default: return QStringLiteral("---");
    }
}

QString nodesText(Count count)
{
    return count == unknownCount ? QStringLiteral("-") : QString::number(count);
}

void appendSize(SectionText& section, const char* label, Count blocks, Count blockSize)
{
    if (blocks != unknownCount) {
        section.line(label, diskSizeConvertUserFriendly(blocks * blockSize));
    }
}

void appendVolume(SectionText& section, const QString& path, const FileSystemRecord& info)
{
    section.line("  Mount to:         ", QString::fromUtf8(info.f_mntonname))
        .line("  Mount from:       ", QString::fromUtf8(info.f_mntfromname))
        .line("  Type:             ", QString::fromUtf8(info.f_fstypename))
        .line("  Case sensitivity: ", caseText(getFileSystemCaseSensitivity(path)))
        .line("  Block size:       ", QString::number(info.f_bsize))
        .line("  Blocks total:     ", QString::number(Count(info.f_blocks)))
        .line("  Blocks free:      ", QString::number(Count(info.f_bfree)))
        .line("  Blocks avail:     ", QString::number(Count(info.f_bavail)))
        .line("  File nodes total: ", nodesText(info.f_files))
        .line("  File nodes free:  ", nodesText(info.f_ffree));
    if (info.f_bsize != unknownBlockSize) {
        appendSize(section, "  Size:             ", info.f_blocks, info.f_bsize);
        appendSize(section, "  Free:             ", info.f_bfree, info.f_bsize);
        appendSize(section, "  Avail:            ", info.f_bavail, info.f_bsize);
    }
}

} // namespace

bool getFileSystemInfo(const QString& path, FileSystemRecord* info)
{
    return info != nullptr && statfs(path.toUtf8().constData(), info) == 0;
}

int getFileSystemCaseSensitivity(const QString& path)
{
    const QByteArray name = path.toUtf8();
    errno = 0;
    const long isSensitive = pathconf(name.constData(), _PC_CASE_SENSITIVE);
    if (isSensitive == -1) {
        return errno == EINVAL ? 1 : -1;
    }
    if (isSensitive != 0) {
        return 1;
    }
    return pathconf(name.constData(), _PC_CASE_PRESERVING) > 0 ? 2 : 0;
}

QString listFileSystemVolumesInfo()
{
    SectionText section(sNewLine);
    section.line("Volumes");
    const QStringList paths = volumeEntries();
    for (const QString& path : paths) {
        FileSystemRecord info = {};
        section.line(path);
        if (getFileSystemInfo(path, &info)) {
            appendVolume(section, path, info);
        }
    }
    return section.text();
}

} // namespace norvex::SystemInfo::MacSysInfo
