#pragma once

#include <string>
#include <string_view>

namespace cimhttp {

/// A file of the folder pages, or of the chart library, as the program has it in itself.
struct PageFile {
    std::string_view name; ///< `app.js`
    std::string_view content;
};

/// Null where there is none of that name.
const PageFile* FindPageFile(std::string_view name);

/// What kind of file it is, for browsers, by its name.
std::string MediaTypeOf(std::string_view name);

} // namespace cimhttp
