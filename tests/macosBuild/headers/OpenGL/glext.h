#include <GL/glext.h>
