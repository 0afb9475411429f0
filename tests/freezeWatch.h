#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <algorithm>

/// How long the event loop was kept waiting at most.
class FreezeWatch : public QObject
{
public:
    FreezeWatch()
    {
        since_.start();
        startTimer(5);
    }

    qint64 longest() const { return std::max(longest_, since_.elapsed()); }

protected:
    void timerEvent(QTimerEvent* /*event*/) override { longest_ = std::max(longest_, since_.restart()); }

private:
    QElapsedTimer since_;
    qint64 longest_ = 0;
};
