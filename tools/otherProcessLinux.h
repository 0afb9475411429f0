#pragma once

#include <QByteArray>

#include <chrono>
#include <sys/types.h>

namespace norvex::Tool {

/// Another process that asks what could keep this one waiting, or end it. It lives until it is released: some servers
/// restart when their last client goes.
class OtherProcess
{
public:
    /// Runs in the other process and ends with giveAnswer(). A return is a failure, as an exception is.
    using Work = void (*)(int answerTo);

    /// Start it before there is a thread: the other process has only this one.
    explicit OtherProcess(Work work);
    ~OtherProcess();
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    enum class Result { Answered, Failed, Silent, NotStarted };

    /// Waits for the whole answer until then.
    Result wait(std::chrono::steady_clock::time_point deadline, QByteArray& answer);

    /// Answers, and sleeps with everything that the work has made.
    [[noreturn]] static void giveAnswer(int answerTo, const QByteArray& answer);

private:
    pid_t process_ = -1;
    int answerFrom_ = -1;
};

} // namespace norvex::Tool
