#pragma once

#include <string>

namespace password_hash {

/// Makes of a password what crypt(5) makes of it with the scheme, the cost and the salt that a hash names; empty if it
/// is no hash that the system knows.
std::string HashLike(const std::string& hash, const std::string& password);

/// Compares in a time that does not depend on how much of the texts is equal, or on their lengths.
bool AreEqualInConstantTime(const std::string& a, const std::string& b);

} // namespace password_hash
