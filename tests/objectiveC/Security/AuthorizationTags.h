#pragma once

#define kAuthorizationRightExecute "system.privilege.admin"
