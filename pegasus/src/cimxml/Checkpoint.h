#pragma once

namespace Pegasus::cimxml {

/// What decoding passes now and then, however long an object is.
class Checkpoint {
  public:
    virtual ~Checkpoint() = default;

    /// Throws when decoding is to end here.
    virtual void pass() const = 0;
};

} // namespace Pegasus::cimxml
