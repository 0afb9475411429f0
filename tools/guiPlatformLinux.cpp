#include "tools/guiPlatform.h"

#include "tools/otherProcessLinux.h"

#include <QGuiApplication>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <memory>
#include <unistd.h>
#include <xcb/xcb.h>

namespace norvex::Tool {

namespace {

using Clock = std::chrono::steady_clock;

/// Enough for the whole start of a plug-in on a busy machine, and for a display at the far end of a slow line.
const std::chrono::milliseconds trialTimeout(2500);
const std::chrono::milliseconds displayTimeout(3000);
/// For both together.
const std::chrono::milliseconds totalTimeout(3600);

/// The platform that the environment makes Qt choose.
enum class RequestedPlatform { None, X11, Offscreen, Minimal, Other };

enum class DisplayState { Answers, Refuses, Silent, Unasked };

bool isSet(const char* variable)
{
    return !qgetenv(variable).isEmpty();
}

RequestedPlatform requestedPlatform()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform.isEmpty()) {
        if (isSet("WAYLAND_DISPLAY") || qgetenv("XDG_SESSION_TYPE") == "wayland") {
            return RequestedPlatform::Other;
        }
        return isSet("DISPLAY") ? RequestedPlatform::X11 : RequestedPlatform::None;
    }
    // Parameters follow a colon, alternatives a semicolon.
    const QByteArray plugin = platform.contains(';') ? platform : platform.split(':').first();
    return plugin == "xcb"         ? RequestedPlatform::X11
           : plugin == "offscreen" ? RequestedPlatform::Offscreen
           : plugin == "minimal"   ? RequestedPlatform::Minimal
                                   : RequestedPlatform::Other;
}

/// Without a display, a desktop's theme can end the process, as gtk_init() does; with a silent one it waits for ever. No
/// section shows anything of the theme, so Qt sees none. The variable keeps its place in the environment.
class ThemeHider
{
public:
    ThemeHider() : theme_(qgetenv(variable_)) { set(QByteArray()); }
    ~ThemeHider() { set(theme_); }
    Q_DISABLE_COPY(ThemeHider)

private:
    void set(const QByteArray& value) const
    {
        if (!theme_.isEmpty()) {
            qputenv(variable_, value);
        }
    }

    static constexpr char variable_[] = "QT_QPA_PLATFORMTHEME";
    const QByteArray theme_;
};

/// What the caller holds.
struct Held
{
    ThemeHider theme;
    std::unique_ptr<OtherProcess> trial;
    std::unique_ptr<OtherProcess> displayClient;
};

void answerDisplayState(int answerTo)
{
    const bool isRefused = xcb_connection_has_error(xcb_connect(nullptr, nullptr)) != 0;
    OtherProcess::giveAnswer(answerTo, isRefused ? "refused" : "");
}

DisplayState askDisplay(Held& held, Clock::time_point deadline)
{
    held.displayClient = std::make_unique<OtherProcess>(answerDisplayState);
    QByteArray refusal;
    switch (held.displayClient->wait(std::min(deadline, Clock::now() + displayTimeout), refusal)) {
    case OtherProcess::Result::Answered:
        return refusal.isEmpty() ? DisplayState::Answers : DisplayState::Refuses;
    case OtherProcess::Result::Failed: return DisplayState::Refuses;
    case OtherProcess::Result::Silent: return DisplayState::Silent;
    case OtherProcess::Result::NotStarted: break;
    }
    return DisplayState::Unasked;
}

void tryQtsChoice(int answerTo)
{
    // A failure leaves no message.
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);

    char name[] = "norvex-systeminfo";
    char* arguments[] = {name, nullptr};
    int count = 1;
    const QGuiApplication application(count, arguments);
    OtherProcess::giveAnswer(answerTo, QByteArray());
}

/// A plug-in that cannot work ends the process, so another process tries what Qt would choose.
bool worksInAnotherProcess(Held& held)
{
    held.trial = std::make_unique<OtherProcess>(tryQtsChoice);
    QByteArray nothing;
    return held.trial->wait(Clock::now() + trialTimeout, nothing) == OtherProcess::Result::Answered;
}

/// Names the variables that ask for a display. Without any, nobody misses one.
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
    const Clock::time_point deadline = Clock::now() + totalTimeout;
    // Qt waits for a session manager without a limit, and no session is to know of this program.
    QCoreApplication::setAttribute(Qt::AA_DisableSessionManager);
    const auto held = std::make_shared<Held>();
    GuiPlatform platform;
    platform.held = held;
    const RequestedPlatform requested = requestedPlatform();
    if (requested == RequestedPlatform::Minimal ||
        (requested == RequestedPlatform::Other && worksInAnotherProcess(*held))) {
        return platform;
    }
    // For OpenGL, the offscreen platform asks the display as well; the minimal platform never does.
    const bool meetsDisplay = requested == RequestedPlatform::X11 || (withOpenGL && isSet("DISPLAY"));
    const DisplayState state = meetsDisplay ? askDisplay(*held, deadline) : DisplayState::Refuses;
    const bool canWait = state == DisplayState::Silent || state == DisplayState::Unasked;
    if ((requested == RequestedPlatform::X11 && state == DisplayState::Answers) ||
        (requested == RequestedPlatform::Offscreen && !canWait)) {
        return platform;
    }
    platform.name = withOpenGL && canWait ? "minimal" : "offscreen";
    platform.notice = noticeAbout(state);
    return platform;
}

} // namespace norvex::Tool
