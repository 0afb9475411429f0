#pragma once

#include "viewer/job.h"
#include "viewer/sectionProcess.h"

#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <memory>

namespace norvex {
namespace SystemInfo {
struct SectionInfo;
} // namespace SystemInfo

namespace Viewer {

/// Makes this machine's report without keeping the window waiting: the sections that any thread may make beside it,
/// the others one by one between events, and the printers and OpenGL in processes of their own. Deleting it ends all
/// that.
class MachineReport : public QObject
{
    Q_OBJECT

public:
    /// How long the printers, OpenGL and the sections beside the window may take. Without an answer the report lacks
    /// them.
    static const int printerPatienceMs = 3000;
    static const char* const printerSection;
    static const int openGLPatienceMs = 10000;
    static const int patienceMs = 30000;

    explicit MachineReport(QObject* parent);
    ~MachineReport() override;

    void start();

signals:
    void progressed(int percent);
    /// @param notices what is missing, and why
    void finished(const QString& report, const QStringList& notices);

private:
    class Results;

    static QString noticeOf(const SectionProcess& process);

    void addProcess(const char* section, int mostMs);
    bool hasProcess(const SystemInfo::SectionInfo& section) const;
    void startSections();
    void makeNextOnGuiThread();
    void takeProgress();
    void finishIfDone();
    QString assembled() const;

    std::shared_ptr<Results> results_;
    QVector<int> guiSections_; // that wait, in their order
    QPointer<Job> job_;
    QVector<SectionProcess*> processes_;
    QTimer limit_;
    QTimer step_;
    QStringList notices_;
    bool isAsking_ = false; // the job
    bool isFinished_ = false;
};

} // namespace Viewer
} // namespace norvex
