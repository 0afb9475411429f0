#include "machelpers/applicationServices.h"

namespace norvex {

namespace {
ApplicationServices* replacement = nullptr;
}

ApplicationServices& applicationServices()
{
    return replacement ? *replacement : platformApplicationServices();
}

void setApplicationServices(ApplicationServices* services)
{
    replacement = services;
}

} // namespace norvex
