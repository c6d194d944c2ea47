#pragma once

namespace Pegasus::xml {

/// A reader calls it at intervals while it reads a long text.
class Checkpoint {
  public:
    virtual ~Checkpoint() = default;

    /// Throws when reading is to end.
    virtual void pass() const = 0;
};

} // namespace Pegasus::xml
