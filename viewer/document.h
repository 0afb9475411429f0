#pragma once

#include "viewer/job.h"
#include "viewer/outline.h"
#include "viewer/textLines.h"

#include "systeminfo/norvexReport.h"

#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>

namespace norvex {
namespace Viewer {

class MachineReport;

/// A report with all that is needed to show it. The parts share their data.
struct ShownReport
{
    SystemInfo::CReport report;
    std::shared_ptr<const TextLines> lines;
    std::shared_ptr<const Outline> outline; ///< null while the text is looked through

    bool isNull() const { return lines == nullptr; }
};

/// What the identification reader finds in a report.
struct Identification
{
    QStringList macAddresses;
    int processors = -1; ///< -1 where it is not found
    int revision = -1;
    QString errorMessage; ///< empty when all is found
};

/// A report that is open: where it comes from, its text, and its text without private data. All that takes time happens
/// beside the window.
class Document : public QObject
{
    Q_OBJECT

public:
    enum class Origin { ThisMachine, File };
    enum class State { Loading, Ready, Failed };

    /// This machine's report.
    explicit Document(QObject* parent);
    /// The report in a file, or of the machine whose recording it is.
    Document(QObject* parent, const QString& fileName);
    ~Document() override;

    Origin origin() const { return origin_; }
    /// Empty for this machine.
    QString fileName() const { return fileName_; }
    QString title() const;

    State state() const { return state_; }
    /// Why there is no report.
    QString errorMessage() const { return errorMessage_; }
    /// What a reader of the report has to know.
    QStringList notices() const { return notices_; }
    /// Whether the report is being made again, or read, while an older one is shown.
    bool isBusy() const { return busy_; }

    /// The report as it was read.
    const ShownReport& original() const { return original_; }
    /// The report without private data; a null one while nobody made it.
    const ShownReport& redacted() const { return redacted_; }

    /// Calls back when redacted() is there, at once if it is now.
    /// @param context without it there is no call
    /// @param done its argument says whether there was enough memory. Without it, there will not be later, either.
    void makeRedacted(QObject* context, const std::function<void(bool isMade)>& done);
    /// Ends what makeRedacted() started; nobody is called back.
    void cancelRedaction();
    bool isRedactionImpossible() const { return isRedactionImpossible_; }

    /// What the original says, whatever is shown.
    /// @param skipsBraced whether interfaces with a name in braces do not count
    const Identification& identification(bool skipsBraced) const
    {
        return identifications_[skipsBraced ? 1 : 0];
    }

    /// Starts to read the file or to ask this machine, again if it was done before.
    void load();
    /// Ends what load() started; an older report stays.
    void cancel();

signals:
    /// State, text, outline, notices or busyness are others now.
    void changed();
    /// The original has another text now.
    void textChanged();
    void progressed(int percent);
    void redactionProgressed(int percent);

private:
    struct Analysis;

    void readFile();
    void askMachine();
    void takeText(const std::shared_ptr<Analysis>& analysis);
    void analyse();
    void takeAnalysis(const std::shared_ptr<Analysis>& analysis);
    void startRedaction();
    void takeRedacted(const ShownReport& redacted);
    void fail(const QString& message);
    void setBusy(bool isBusy);

    const Origin origin_;
    const QString fileName_;
    State state_ = State::Loading;
    QString errorMessage_;
    QStringList notices_;
    bool busy_ = false;
    bool isRedactionImpossible_ = false;
    ShownReport original_;
    ShownReport redacted_;
    Identification identifications_[2];
    QPointer<Job> loading_;
    QPointer<Job> analysing_;
    QPointer<Job> redacting_;
    QPointer<MachineReport> asking_;
    struct Waiting
    {
        QPointer<QObject> context;
        std::function<void(bool)> done;
    };
    QVector<Waiting> waiting_;
};

} // namespace Viewer
} // namespace norvex
