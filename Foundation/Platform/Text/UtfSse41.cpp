// The kernels for processors with SSSE3, SSE4.1 and population counts.
#define UTF_INSTRUCTIONS "sse4.1,popcnt"

#include "Foundation/Platform/Text/Internal/UtfSse41.h"

namespace zelkor::platform::detail {

constinit const UtfKernels kSse41Kernels = KernelsOver<VectorSse41>();

}  // namespace zelkor::platform::detail
