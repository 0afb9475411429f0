#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace norvex {
namespace Viewer {

struct JobLink;

/// What a job's work may do: tell how far it is, and ask whether anybody still waits for it. Any thread.
class JobControl
{
public:
    explicit JobControl(std::shared_ptr<JobLink> link) : link_(std::move(link)) {}

    bool isCancelled() const;
    /// @param percent of the work that is done. The job tells it in its own thread.
    void setProgress(int percent) const;

private:
    const std::shared_ptr<JobLink> link_;
};

/// Work beside the window. The work runs on a thread of its own, and the rest in the job's: the window stays alive
/// whatever the work waits for. Deleting the job forgets the work, which may still run to its end; it must therefore
/// hold all that it uses.
class Job : public QObject
{
    Q_OBJECT

public:
    using Work = std::function<void(const JobControl&)>;
    /// @param isOutOfMemory whether std::bad_alloc ended the work
    using Done = std::function<void(bool isOutOfMemory)>;

    /// Starts the work. `done` is called once behind it, unless the job is deleted before.
    Job(QObject* parent, Work work, Done done);
    ~Job() override;

signals:
    void progressed(int percent);

private:
    Q_INVOKABLE void tellProgress();
    Q_INVOKABLE void finish();

    const std::shared_ptr<JobLink> link_;
    const Done done_;
};

/// Waits for the work that still runs, but not for long.
/// @return whether all work has ended. If not, the process must end without destructors of static objects, which that
///         work may use.
bool waitForJobs(int milliseconds);

} // namespace Viewer
} // namespace norvex
