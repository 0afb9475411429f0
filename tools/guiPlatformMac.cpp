#include "tools/guiPlatform.h"

namespace norvex::Tool {

GuiPlatform chooseGuiPlatform(bool)
{
    return {};
}

} // namespace norvex::Tool
