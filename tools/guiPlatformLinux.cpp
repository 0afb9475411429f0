#include "tools/guiPlatform.h"

#include <QGuiApplication>
#include <QStringList>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <future>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <xcb/xcb.h>

namespace norvex::Tool {

namespace {

// Enough for a display at the far end of a slow line.
const std::chrono::seconds displayPatience(3);
// Enough for the whole start of a plugin on a busy machine.
const int trialPatienceMs = 5000;

// What the environment makes Qt choose.
enum class Wish { Nothing, X11, Offscreen, Minimal, Other };

enum class DisplayState { Answers, Refuses, Silent };

bool isSet(const char* variable)
{
    return !qgetenv(variable).isEmpty();
}

Wish wishOfEnvironment()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform.isEmpty()) {
        if (isSet("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland") {
            return Wish::Other;
        }
        return isSet("DISPLAY") ? Wish::X11 : Wish::Nothing;
    }
    // Parameters follow a colon, alternatives a semicolon.
    const QByteArray plugin = platform.contains(';') ? platform : platform.split(':').first();
    return plugin == "xcb"         ? Wish::X11
           : plugin == "offscreen" ? Wish::Offscreen
           : plugin == "minimal"   ? Wish::Minimal
                                   : Wish::Other;
}

// A server can keep its client waiting for ever, so a thread connects; it ends with the process. The caller keeps the
// connection, because some servers restart when their last client goes.
DisplayState askDisplay(std::shared_ptr<void>& connection)
{
    using Connection = std::shared_ptr<xcb_connection_t>;
    std::packaged_task<Connection()> connect(
        [] { return Connection(xcb_connect(nullptr, nullptr), xcb_disconnect); });
    std::future<Connection> answer = connect.get_future();
    std::thread(std::move(connect)).detach();
    if (answer.wait_for(displayPatience) != std::future_status::ready) {
        return DisplayState::Silent;
    }
    const Connection result = answer.get();
    if (xcb_connection_has_error(result.get()) != 0) {
        return DisplayState::Refuses;
    }
    connection = result;
    return DisplayState::Answers;
}

[[noreturn]] void tryQtsChoice(int reportTo)
{
    // A failure leaves no message and no core file, and nothing outlives the tool.
    prctl(PR_SET_DUMPABLE, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);

    char name[] = "norvex-systeminfo";
    char* arguments[] = {name, nullptr};
    int count = 1;
    const QGuiApplication application(count, arguments);
    if (write(reportTo, "", 1) == 1) {
        pause();
    }
    _exit(0);
}

// A plugin that cannot work ends the process, so another process tries what Qt would choose. It stays alive while the
// caller holds it, for the same reason as the connection above.
bool worksInAnotherProcess(std::shared_ptr<void>& process)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    const pid_t child = fork();
    if (child == 0) {
        tryQtsChoice(ends[1]);
    }
    close(ends[1]);
    bool works = false;
    if (child > 0) {
        process = std::shared_ptr<void>(nullptr, [child](void*) {
            kill(child, SIGKILL);
            waitpid(child, nullptr, 0);
        });
        pollfd news = {ends[0], POLLIN, 0};
        char byte = 0;
        works = poll(&news, 1, trialPatienceMs) == 1 && read(ends[0], &byte, 1) == 1;
    }
    close(ends[0]);
    return works;
}

// Names the variables that ask for a display. Without any, nobody misses one.
QString noticeAbout(DisplayState state)
{
    QStringList settings;
    for (const char* variable : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"}) {
        if (isSet(variable)) {
            settings +=
                QLatin1String(variable) + QLatin1Char('=') + QString::fromLocal8Bit(qgetenv(variable));
        }
    }
    if (settings.isEmpty()) {
        return QString();
    }
    return QStringLiteral("no display %1 with %2; screens and OpenGL are reported as without one")
        .arg(state == DisplayState::Silent ? QStringLiteral("answers") : QStringLiteral("can be used"),
             settings.join(QStringLiteral(", ")));
}

} // namespace

GuiPlatform chooseGuiPlatform(bool withOpenGL)
{
    GuiPlatform platform;
    const Wish wish = wishOfEnvironment();
    if (wish == Wish::Minimal || (wish == Wish::Other && worksInAnotherProcess(platform.held))) {
        return platform;
    }
    // For OpenGL, the offscreen platform asks the display as well; the minimal platform never does.
    const bool meetsDisplay = wish == Wish::X11 || (withOpenGL && isSet("DISPLAY"));
    const DisplayState state = meetsDisplay ? askDisplay(platform.held) : DisplayState::Refuses;
    if ((wish == Wish::X11 && state == DisplayState::Answers) ||
        (wish == Wish::Offscreen && state != DisplayState::Silent)) {
        return platform;
    }
    platform.name = withOpenGL && state == DisplayState::Silent ? "minimal" : "offscreen";
    platform.notice = noticeAbout(state);
    return platform;
}

} // namespace norvex::Tool
