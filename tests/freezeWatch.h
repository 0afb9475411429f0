#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <algorithm>
#include <ctime>

#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
const bool isOptimised = true;
#else
const bool isOptimised = false;
#endif
/// A window that answers later is felt to be frozen. Only the build that users have must be that fast.
const qint64 longestFreezeMs = isOptimised ? 200 : 1000;

/// The milliseconds that something takes. While other processes have the processors, this one's work does not go on: then
/// its processor time counts.
class WorkTimer
{
public:
    WorkTimer() { restart(); }

    void restart()
    {
        wallClock_.start();
        processorClock_ = std::clock();
    }

    qint64 elapsed() const
    {
        const std::clock_t processorTime = std::clock() - processorClock_;
        return std::min(wallClock_.elapsed(), static_cast<qint64>(processorTime) * 1000 / CLOCKS_PER_SEC);
    }

private:
    QElapsedTimer wallClock_;
    std::clock_t processorClock_ = 0;
};

/// How long work kept the event loop waiting at most.
class FreezeWatch : public QObject
{
public:
    FreezeWatch() { startTimer(5); }

    qint64 longest() const { return std::max(longest_, since_.elapsed()); }

protected:
    void timerEvent(QTimerEvent* /*event*/) override
    {
        longest_ = longest();
        since_.restart();
    }

private:
    WorkTimer since_;
    qint64 longest_ = 0;
};
