#include <Pegasus/Common/Handle.h>

#include <Pegasus/Common/Exception.h>

namespace Pegasus::detail {

void throwUninitializedObject() { throw UninitializedObjectException(); }

} // namespace Pegasus::detail
