#include "live/CursesScreen.h"
#include "live/TerminalKnowledge.h"

namespace cimhttp {

namespace {

class LinkedScreen : public ScreenLibrary {
  public:
    bool KnowsTerminal() const override { return cimhttp::KnowsTerminal(); }
    std::unique_ptr<Screen> Open() const override { return CursesScreen::Open(); }
};

} // namespace

} // namespace cimhttp

extern "C" const cimhttp::ScreenLibrary* CimhttpScreen();

const cimhttp::ScreenLibrary* CimhttpScreen() {
    static const cimhttp::LinkedScreen library;
    return &library;
}
