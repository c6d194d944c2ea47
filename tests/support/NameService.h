#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace support {

/// Stands between this process and the system's name service: while the object lives, what getaddrinfo() finds for
/// certain names is what a test says, and nobody is asked over the network. Other names go to the system. There is one
/// such object at a time; it may be used while other threads look names up.
class NameService {
  public:
    NameService();
    /// Ends the silences, and waits until no lookup of a silent name is under way.
    ~NameService();
    NameService(const NameService&) = delete;
    NameService& operator=(const NameService&) = delete;

    /// From now on the name has these addresses, as literals, in this order. Without any it does not exist.
    void Answer(const std::string& name, std::vector<std::string> addresses);

    /// From now on lookups of the name last as long as the object.
    void BeSilentAbout(const std::string& name);

    /// Waits until so many lookups of silent names are under way.
    void WaitForLookups(std::size_t count);

    /// The size of the stack of the thread in which a silent name was looked up last, in bytes.
    std::size_t StackOfLookup() const;
};

} // namespace support
