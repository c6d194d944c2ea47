#pragma once

#include "server/DemoServer.h"
#include "support/LoopbackAddress.h"

#include <gtest/gtest.h>

#include <cstddef>

/// A server on the real ports of this process's address, with this machine's instances and some volumes.
class ServerFixture : public testing::Test {
  protected:
    static constexpr std::size_t kVolumes = 3;

    static demo::DemoServerOptions Options() {
        demo::DemoServerOptions options;
        options.address = support::LoopbackAddress();
        options.volumes = kVolumes;
        return options;
    }

  private:
    demo::DemoServer server_{Options()};
};
