#pragma once

namespace Pegasus::xml {

/// What a reader calls now and then, however long its text is.
class Checkpoint {
  public:
    virtual ~Checkpoint() = default;

    /// Throws where reading is to end here.
    virtual void pass() const = 0;
};

} // namespace Pegasus::xml
