#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Config.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace Pegasus::cimxml {

/// The names of an object's properties while it is decoded, to find one that comes twice. As long as the hashes of the
/// names differ, it costs next to nothing, whatever the number of properties.
class PropertyNames {
  public:
    /// Equal for names that differ in the case of the letters A to Z only.
    static std::size_t hashOf(const CIMName& name) noexcept;

    /// Takes the name of the property that `owner` gets next. Returns the index of the one of that name which it has;
    /// PEG_NOT_FOUND, as a rule, when it has none.
    template <class Owner>
    Uint32 add(const Owner& owner, const CIMName& name, std::size_t hash) {
        if (takeHash(hash) && indices_.empty()) {
            return PEG_NOT_FOUND;
        }
        return addKnownHash(owner, name);
    }

    /// Says that the property at an index no longer counts.
    void replace(Uint32 index) { replaced_.push_back(index); }
    /// The indexes of properties that no longer count, in no order.
    const std::vector<Uint32>& replaced() const noexcept { return replaced_; }

  private:
    static constexpr Uint32 kFew = 64;

    /// Whether no earlier name had this hash.
    bool takeHash(std::size_t hash) noexcept {
        std::uint64_t& word = hashes_[hash / 64 % hashes_.size()];
        const std::uint64_t bit = std::uint64_t{1} << hash % 64;
        const bool isNew = (word & bit) == 0;
        word |= bit;
        return isNew;
    }

    template <class Owner>
    Uint32 addKnownHash(const Owner& owner, const CIMName& name) {
        const Uint32 count = owner.getPropertyCount();
        if (indices_.empty()) {
            if (count <= kFew && owner.findProperty(name) == PEG_NOT_FOUND) {
                return PEG_NOT_FOUND;
            }
            for (Uint32 i = 0; i < count; ++i) {
                note(owner.getProperty(i).getName(), i);
            }
        }
        return note(name, count);
    }

    Uint32 note(const CIMName& name, Uint32 index);

    std::array<std::uint64_t, 8> hashes_{};
    std::unordered_map<std::string, Uint32> indices_; // by the name in lower case; empty until it is needed
    std::vector<Uint32> replaced_;
};

} // namespace Pegasus::cimxml
