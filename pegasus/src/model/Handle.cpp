#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Handle.h>

namespace Pegasus {
inline namespace bundled {
namespace detail {

void throwUninitializedObject() { throw UninitializedObjectException(); }

} // namespace detail
} // namespace bundled
} // namespace Pegasus
