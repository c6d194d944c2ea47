#pragma once

namespace cimhttp {

/// The forms in which commands write what they show.
enum class OutputFormat {
    kTable, ///< aligned columns, for people
    kPlain, ///< lines, for people and simple tools
    kJson,
    kCsv, ///< RFC 4180
    kMof,
    kDot ///< the language of Graphviz
};

} // namespace cimhttp
