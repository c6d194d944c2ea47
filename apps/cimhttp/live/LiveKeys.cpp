#include "live/LiveKeys.h"

#include "text/Utf8.h"

#include <cstddef>
#include <limits>
#include <string>

namespace cimhttp {

namespace {

using Kind = Key::Kind;
using Mode = LiveView::Mode;

constexpr std::ptrdiff_t kAll = std::numeric_limits<std::ptrdiff_t>::max() / 2;
constexpr std::size_t kLongestFilter = 200;

std::ptrdiff_t Page(const LiveView& view) { return static_cast<std::ptrdiff_t>(view.RoomForRows()); }

/// How far a key moves in a list; 0 for other keys.
std::ptrdiff_t WayOf(const Key& key, const LiveView& view) {
    switch (key.kind) {
    case Kind::kUp:
        return -1;
    case Kind::kDown:
        return 1;
    case Kind::kPageUp:
        return -Page(view);
    case Kind::kPageDown:
        return Page(view);
    case Kind::kHome:
        return -kAll;
    case Kind::kEnd:
        return kAll;
    default:
        return 0;
    }
}

void EditFilter(const Key& key, LiveView& view) {
    std::string text = view.Filter();
    switch (key.kind) {
    case Kind::kEnter:
        view.SetMode(Mode::kRows);
        return;
    case Kind::kEscape:
        text.clear();
        view.SetMode(Mode::kRows);
        break;
    case Kind::kEraseLine:
        text.clear();
        break;
    case Kind::kBackspace:
        while (!text.empty() && IsContinuation(text.back())) {
            text.pop_back();
        }
        if (!text.empty()) {
            text.pop_back();
        }
        break;
    case Kind::kCharacter:
        if (text.size() >= kLongestFilter) {
            return;
        }
        text += key.character;
        break;
    default:
        view.Scroll(WayOf(key, view));
        return;
    }
    view.SetFilter(text);
}

void ChooseColumns(const Key& key, LiveView& view) {
    const bool isDone = key.kind == Kind::kEnter || key.kind == Kind::kEscape || key.character == "c";
    if (isDone) {
        view.SetMode(Mode::kRows);
    } else if (key.character == " ") {
        view.ToggleColumn();
    } else {
        view.MoveCursor(WayOf(key, view));
    }
}

void PressInRows(const Key& key, LiveView& view) {
    if (key.kind == Kind::kLeft || key.character == "<") {
        view.MoveSort(-1);
    } else if (key.kind == Kind::kRight || key.character == ">") {
        view.MoveSort(1);
    } else if (key.character == "r") {
        view.Reverse();
    } else if (key.character == "/") {
        view.SetMode(Mode::kFilter);
    } else if (key.character == "p") {
        view.TogglePause();
    } else if (key.character == "c") {
        view.SetMode(Mode::kColumns);
    } else if (key.character == "?" || key.character == "h") {
        view.SetMode(Mode::kHelp);
    } else if (key.kind == Kind::kEscape) {
        view.SetFilter({});
    } else {
        view.Scroll(WayOf(key, view));
    }
}

} // namespace

bool PressKey(const Key& key, LiveView& view) {
    if (key.kind == Kind::kInterrupt || key.kind == Kind::kEndInput) {
        return false;
    }
    const Mode mode = view.CurrentMode();
    if (mode == Mode::kFilter) {
        EditFilter(key, view);
        return true;
    }
    if (key.character == "q") {
        return false;
    }
    if (mode == Mode::kColumns) {
        ChooseColumns(key, view);
    } else if (mode == Mode::kHelp) {
        if (key.kind != Kind::kNone && key.kind != Kind::kResize) {
            view.SetMode(Mode::kRows);
        }
    } else {
        PressInRows(key, view);
    }
    return true;
}

} // namespace cimhttp
