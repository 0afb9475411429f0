#include "viewer/recordings.h"

namespace norvex::Viewer {

bool canReadRecordings()
{
    return false;
}

bool readRecording(const QString& /*fileName*/, QString& /*report*/, QString& /*errorMessage*/)
{
    return false;
}

void askThisMachine(const std::function<void()>& ask)
{
    ask();
}

} // namespace norvex::Viewer
