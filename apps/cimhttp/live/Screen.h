#pragma once

#include "live/Picture.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace cimhttp {

/// A key that was pressed, or what else has come from the terminal.
struct Key {
    enum class Kind {
        kNone, ///< nothing within the time
        kCharacter,
        kUp,
        kDown,
        kLeft,
        kRight,
        kPageUp,
        kPageDown,
        kHome,
        kEnd,
        kEnter,
        kBackspace,
        kEscape,
        kEraseLine, ///< Ctrl-U
        kResize,    ///< the terminal has another size, or has to be drawn anew
        kEndInput,  ///< the keyboard has gone
        kInterrupt  ///< Ctrl-C, or a signal that is to end the program
    };

    Kind kind = Kind::kNone;
    std::string character = {}; ///< in UTF-8
};

struct ScreenSize {
    std::size_t columns = 0;
    std::size_t lines = 0;
};

/// The whole terminal, which is as it was before when the object goes. For the main thread.
class Screen {
  public:
    Screen() = default;
    virtual ~Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    virtual ScreenSize Size() const = 0;
    virtual void Show(const Picture& picture) = 0;

    /// Waits for a key, but no longer than this. Ctrl-Z stops the program meanwhile, with the terminal as it was.
    virtual Key NextKey(std::chrono::milliseconds time) = 0;
};

/// What draws on terminals, in a library of its own: other commands do not load what it needs for that.
class ScreenLibrary {
  public:
    virtual ~ScreenLibrary() = default;

    /// Whether the terminal of TERM is known, and can be written to at any place.
    virtual bool KnowsTerminal() const = 0;

    /// Takes the terminal over; null where it cannot. While the screen lives, there must be no other.
    virtual std::unique_ptr<Screen> Open() const = 0;
};

/// The one function that the library exports. The object lives as long as the process.
using ScreenFunction = const ScreenLibrary*();
constexpr const char* kScreenFunction = "CimhttpScreen";
constexpr const char* kScreenLibrary = "libcimhttp-screen.so";

} // namespace cimhttp
