#include "fleet/ServerLines.h"

#include "output/Json.h"
#include "text/TerminalText.h"

#include <utility>

namespace cimhttp {

namespace {

constexpr std::string_view kProgram = "cimhttp: ";

} // namespace

ServerLines::ServerLines(const std::string& server, Form form, Sink sink)
    : name_(form == Form::kJson ? JsonText(server) : Printable(server)), form_(form), sink_(std::move(sink)) {}

void ServerLines::Append(std::string_view text) {
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        begun_.append(text, 0, end);
        Pass(begun_);
        begun_.clear();
        text.remove_prefix(end + 1);
    }
    begun_.append(text);
}

void ServerLines::End() {
    if (!begun_.empty()) {
        Append("\n");
    }
}

void ServerLines::Pass(std::string_view line) const {
    if (form_ == Form::kJson) {
        sink_("{\"server\":" + name_ + ',' + std::string(line.substr(1)) + '\n');
        return;
    }
    const bool isRemark = form_ == Form::kRemarks && line.substr(0, kProgram.size()) == kProgram;
    const std::string_view before = isRemark ? line.substr(0, kProgram.size()) : std::string_view();
    std::string passed(before);
    if (!line.empty()) {
        passed += name_ + ": ";
    }
    passed += line.substr(before.size());
    sink_(passed += '\n');
}

} // namespace cimhttp
