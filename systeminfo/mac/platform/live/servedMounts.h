#pragma once

/// @file
/// The mounts for which a server, a program or the host of a virtual machine answers, or does not.

#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QByteArray>
#include <QList>
#include <QSet>

#include <memory>

namespace norvex {

/// The mounts at a moment, and which of them are served.
///
/// Served is a file system of such a type, and one that is stored on a served one: an overlay of folders there, or what a
/// loop device shows of a file there. Where a container's host has these, the container cannot tell. The root folder is
/// never served: where it does not answer, nothing runs.
class ServedMounts
{
public:
    /// @param mountInfo a mountinfo text
    /// @param files where the loop devices are looked up
    explicit ServedMounts(const QByteArray& mountInfo, const KernelFiles& files = KernelFiles());

    /// Those of now. The table is read again only if the kernel says that it has changed, so that asking about each of
    /// many mounts does not take a time that grows with their square. For that a descriptor stays open.
    static std::shared_ptr<const ServedMounts> current();

    const QByteArray& mountInfo() const { return mountInfo_; }
    /// Where they are mounted.
    const QList<QByteArray>& points() const { return points_; }

    /// The mount point of the served file system that a path leads to or through; empty when there is none. Follows
    /// symbolic links, and asks no served file system.
    QByteArray pointOnWayTo(const QByteArray& path) const;

private:
    void add(const QByteArray& point);
    void addStoredOnServed(const KernelFiles& files);
    QByteArray innermostPoint(QByteArray path) const;

    QByteArray mountInfo_;
    QList<QByteArray> points_;
    QSet<QByteArray> pointSet_;
};

} // namespace norvex
