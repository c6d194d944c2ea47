#include "live/TerminalKnowledge.h"

#include <unistd.h>

// A file of its own: the macros of term.h take names such as `lines` and `columns`.
#include <curses.h>
#include <term.h>

namespace cimhttp {

bool KnowsTerminal() {
    int outcome = 0;
    if (::setupterm(nullptr, STDOUT_FILENO, &outcome) == ERR) {
        return false;
    }
    const bool canMove = cursor_address != nullptr;
    ::del_curterm(::set_curterm(nullptr));
    return canMove;
}

} // namespace cimhttp
