#include "Foundation/Platform/ErrorFlag.h"

namespace zelkor::platform {

ZELKOR_THREAD_LOCAL bool error_flag = false;

}  // namespace zelkor::platform
