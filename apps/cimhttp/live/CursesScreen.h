#pragma once

#include "live/Screen.h"

#include <memory>

namespace cimhttp {

/// A screen by ncurses.
class CursesScreen : public Screen {
  public:
    /// See ScreenLibrary.
    static std::unique_ptr<Screen> Open();

    ~CursesScreen() override;

    ScreenSize Size() const override;
    void Show(const Picture& picture) override;
    Key NextKey(std::chrono::milliseconds time) override;

  private:
    class Locale;
    class Signals;

    CursesScreen(std::unique_ptr<Locale> locale, std::unique_ptr<Signals> signals, void* terminal);

    std::unique_ptr<Locale> locale_;
    std::unique_ptr<Signals> signals_;
    void* terminal_; // ncurses' SCREEN
};

} // namespace cimhttp
