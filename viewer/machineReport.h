#pragma once

#include "viewer/job.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <memory>

namespace norvex {
namespace Viewer {

/// Makes this machine's report without keeping the window waiting: the sections that any thread may make beside it, the
/// others one by one between events, and the printers in a process of their own, because a silent print server holds its
/// caller for minutes. Deleting it ends all that.
class MachineReport : public QObject
{
    Q_OBJECT

public:
    /// How long the printers, and the sections beside the window, may take. Without an answer the report lacks them.
    static const int printerPatienceMs = 3000;
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

    void startSections();
    void startPrinters();
    void makeNextOnGuiThread();
    void takeProgress();
    void endPrinters(const QString& reason);
    void finishIfDone();
    QString assembled() const;

    std::shared_ptr<Results> results_;
    QVector<int> guiSections_; // that wait, in their order
    QPointer<Job> job_;
    QProcess printers_;
    QTimer printerLimit_;
    QTimer limit_;
    QTimer step_;
    QStringList notices_;
    bool isAsking_ = false;         // the job
    bool isAskingPrinters_ = false; // the process
    bool isFinished_ = false;
};

/// Whether the arguments ask this program for a section in place of a window, as MachineReport starts it. If so, it is
/// printed.
bool answersSection(int argc, char* argv[]);

} // namespace Viewer
} // namespace norvex
