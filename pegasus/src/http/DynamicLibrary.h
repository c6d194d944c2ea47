#pragma once

#include <string>

namespace Pegasus::http {

/// A shared library that is loaded at run time, and stays loaded until the process ends.
class DynamicLibrary {
  public:
    /// Loads a library by its file name: beside the library or the program that this code is part of, or else where the
    /// loader searches. Whether that succeeded, function() shows.
    explicit DynamicLibrary(const std::string& name);

    /// The function of that name; null where there is none, or no library.
    template <class Function>
    Function* function(const char* name) const {
        return reinterpret_cast<Function*>(find(name));
    }

    /// Why the library, or else the function that was asked for last in this thread, is not there.
    static std::string error();

  private:
    void* find(const char* name) const;

    void* const handle_; // null: it was not loaded
};

} // namespace Pegasus::http
