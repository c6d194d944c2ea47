#include "output/ShortReferences.h"

#include "access/ReferenceKeys.h"
#include "host/TCIMReference.h"

#include <algorithm>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

TCIMReference WithKeys(const TCIMReference& reference, const KeyPredicate& isWanted) {
    TCIMReference result({}, TCIMContext());
    result.SetClassName(reference.GetClassName());
    reference.EnumerateKeyValues([&](const std::string& name, const TCIMValue& value) {
        if (isWanted(name, value)) {
            result.AddKeyValue(name, value);
        }
        return true;
    });
    return result;
}

/// The keys that two references have with the same values.
TCIMReference InCommon(const TCIMReference& one, const TCIMReference& other) {
    return WithKeys(one, [&](const std::string& name, const TCIMValue& value) {
        return !value.IsNull() && other.GetKeyValue(name) == value;
    });
}

/// The keys that `other` does not have.
TCIMReference Without(const TCIMReference& one, const TCIMReference& other) {
    return WithKeys(one, [&](const std::string& name, const TCIMValue&) { return other.GetKeyValue(name).IsNull(); });
}

bool HoldsReference(const Cell& cell) { return cell.value.IsReference() && !cell.value.IsNull(); }

bool HasReferences(const Listing& listing) {
    return std::any_of(listing.Rows().begin(), listing.Rows().end(),
                       [](const auto& row) { return std::any_of(row.begin(), row.end(), HoldsReference); });
}

/// The cells of a column that hold references.
std::vector<Cell*> ReferenceCells(std::vector<std::vector<Cell>>& rows, std::size_t column) {
    std::vector<Cell*> cells;
    for (auto& row : rows) {
        if (HoldsReference(row[column])) {
            cells.push_back(&row[column]);
        }
    }
    return cells;
}

/// Where the object is, without its keys.
std::string HeadText(const TCIMReference& reference) {
    TCIMReference head({}, TCIMContext());
    head.SetHost(reference.GetHost());
    head.SetNamespaceName(reference.GetNamespaceName());
    head.SetClassName(reference.GetClassName());
    return head.GetPath();
}

/// True when there was something to leave out.
bool Shorten(const std::vector<Cell*>& cells) {
    if (cells.size() < 2) {
        return false;
    }
    TCIMReference common = cells.front()->value.GetReference();
    for (const Cell* const cell : cells) {
        common = InCommon(common, cell->value.GetReference());
    }
    const auto stays = [&](const Cell* cell) { return HasKeys(Without(cell->value.GetReference(), common)); };
    if (!HasKeys(common) || !std::all_of(cells.begin(), cells.end(), stays)) {
        return false;
    }
    for (Cell* const cell : cells) {
        cell->text = TextWithKeys(cell->value.GetReference(), [&](const std::string& name, const TCIMValue&) {
            return common.GetKeyValue(name).IsNull();
        });
    }
    return true;
}

} // namespace

std::string TextWithKeys(const TCIMReference& reference, const KeyPredicate& isWanted) {
    TCIMReference keys = WithKeys(reference, isWanted); // with the class, which the head has
    keys.SetClassName(std::string());
    const std::string head = HeadText(reference);
    return (head.empty() ? "…," : head + ".…,") + keys.GetPath();
}

std::optional<Listing> WithShortReferences(const Listing& listing) {
    if (!HasReferences(listing)) {
        return std::nullopt;
    }
    auto rows = listing.Rows();
    bool isShorter = false;
    for (std::size_t i = 0; i < listing.Columns().size(); ++i) {
        isShorter = Shorten(ReferenceCells(rows, i)) || isShorter;
    }
    if (!isShorter) {
        return std::nullopt;
    }
    Listing shorter(listing.Columns());
    for (auto& row : rows) {
        shorter.AddRow(std::move(row));
    }
    return shorter;
}

} // namespace cimhttp
