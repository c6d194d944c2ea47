#pragma once

#include "host/TVYXException.h"

#include <gtest/gtest.h>

/// Expects the statement to throw a TVYXException with that status code. A macro, so that a failure shows the
/// statement.
#define EXPECT_STATUS(code, statement)                                                                                 \
    do {                                                                                                               \
        try {                                                                                                          \
            (void)(statement);                                                                                         \
            ADD_FAILURE() << #statement << " throws nothing";                                                          \
        } catch (const NQORVYX20::TVYXException& exception) {                                                          \
            EXPECT_EQ(exception.GetStatusCode().GetCode(), static_cast<std::uint32_t>(code)) << #statement;            \
        }                                                                                                              \
    } while (false)
