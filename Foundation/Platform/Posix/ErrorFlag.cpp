#include "Foundation/Platform/ErrorFlag.h"

namespace platform {

FOUNDATION_THREAD_LOCAL bool error_flag = false;

}  // namespace platform
