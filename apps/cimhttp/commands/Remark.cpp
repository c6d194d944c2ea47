#include "commands/Remark.h"

#include "Failure.h"
#include "commands/Command.h"
#include "text/TerminalText.h"

#include <ostream>

namespace cimhttp {

int ReportRemark(const std::string& remark, const CommandContext& context) {
    if (remark.empty()) {
        return 0;
    }
    context.output.flush();
    context.errors << "cimhttp: " << Printable(remark) << std::endl;
    return Failure::kIncomplete;
}

} // namespace cimhttp
