#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Handle.h>

namespace Pegasus::detail {

void throwUninitializedObject() { throw UninitializedObjectException(); }

} // namespace Pegasus::detail
