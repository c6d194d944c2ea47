#pragma once

#include <Pegasus/Common/String.h>

#include <gtest/gtest.h>

#include <string>

inline std::string Text(const Pegasus::String& text) { return std::string(text.view()); }

/// The message of the exception of type E that an action throws.
template <typename E, typename Action>
std::string MessageOf(Action action) {
    try {
        action();
    } catch (const E& error) {
        return Text(error.getMessage());
    }
    ADD_FAILURE() << "the expected exception did not come";
    return {};
}
