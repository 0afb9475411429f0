#include "viewer/job.h"

#include <QMutex>
#include <QMutexLocker>
#include <QRunnable>
#include <QThreadPool>

#include <atomic>
#include <new>

namespace norvex {
namespace Viewer {

/// What a job and its work share; either may outlive the other.
struct JobLink
{
    QMutex mutex; // of `job`
    Job* job = nullptr;
    std::atomic<bool> isCancelled{false};
    std::atomic<bool> isOutOfMemory{false};
    std::atomic<int> percent{0};

    void call(const char* method)
    {
        QMutexLocker lock(&mutex);
        if (job != nullptr) {
            QMetaObject::invokeMethod(job, method, Qt::QueuedConnection);
        }
    }
};

namespace {

/// Work that waits for a file server must not keep other work waiting.
const int mostThreads = 64;

QThreadPool& threads()
{
    static QThreadPool* const pool = [] {
        auto* const made = new QThreadPool; // never deleted: that would wait without a limit
        made->setMaxThreadCount(mostThreads);
        return made;
    }();
    return *pool;
}

class JobRunnable : public QRunnable
{
public:
    JobRunnable(Job::Work work, std::shared_ptr<JobLink> link)
        : work_(std::move(work)), link_(std::move(link))
    {}

    void run() override
    {
        try {
            work_(JobControl(link_));
        } catch (const std::bad_alloc&) {
            link_->isOutOfMemory = true;
        }
        work_ = nullptr; // what it holds is gone before anybody hears of its end
        link_->call("finish");
    }

private:
    Job::Work work_;
    const std::shared_ptr<JobLink> link_;
};

} // namespace

bool JobControl::isCancelled() const
{
    return link_->isCancelled;
}

void JobControl::setProgress(int percent) const
{
    if (link_->percent.exchange(percent) != percent) {
        link_->call("tellProgress");
    }
}

Job::Job(QObject* parent, Work work, Done done)
    : QObject(parent), link_(std::make_shared<JobLink>()), done_(std::move(done))
{
    link_->job = this;
    threads().start(new JobRunnable(std::move(work), link_));
}

Job::~Job()
{
    link_->isCancelled = true;
    QMutexLocker lock(&link_->mutex);
    link_->job = nullptr;
}

void Job::tellProgress()
{
    emit progressed(link_->percent);
}

void Job::finish()
{
    deleteLater();
    done_(link_->isOutOfMemory);
}

bool waitForJobs(int milliseconds)
{
    return threads().waitForDone(milliseconds);
}

} // namespace Viewer
} // namespace norvex
