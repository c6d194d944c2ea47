#pragma once

#include <string>
#include <string_view>

namespace cimhttp {

/// Takes the JSON that is written about one of several servers, piece by piece, and makes records of it that name the
/// server: each element of an array, or what else stands there, becomes an object whose first member is `server`.
///
///     [{"name":"CIM_Fan"},{}]   becomes   {"server":"rack1","name":"CIM_Fan"},
///                                         {"server":"rack1"}
///     ["CIM_Fan"]               becomes   {"server":"rack1","value":"CIM_Fan"}
class JsonRecords {
  public:
    explicit JsonRecords(const std::string& server);

    /// `json` must be JSON, of which several documents may follow each other.
    void Append(std::string_view json);

    /// What is new of the records, with a comma and a line end between two.
    std::string TakeSoFar();

    /// The rest of the last one. What is appended after it begins anew.
    std::string End();

  private:
    enum class State { kOutside, kInObject, kInScalar };

    void Take(char character);
    void Begin(char first);
    void Continue(char character);
    void EndScalar();

    std::string head_; ///< `{"server":"rack1"`
    std::string records_;
    State state_ = State::kOutside;
    std::size_t depth_ = 0; ///< of the braces and brackets in a record
    bool isInText_ = false;
    bool isEscaped_ = false;
    bool isFirst_ = true;         ///< there is no record yet
    bool needsSeparator_ = false; ///< between the member `server` and the others
    bool isInArray_ = false;
};

} // namespace cimhttp
