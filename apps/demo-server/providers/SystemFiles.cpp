#include "providers/SystemFiles.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

namespace demo {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return std::string(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

} // namespace

SystemFiles::SystemFiles(std::string root) : root_(std::move(root)) {
    if (root_.empty() || root_.back() != '/') {
        root_ += '/';
    }
}

std::string SystemFiles::Path(std::string_view path) const {
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    return root_ + std::string(path);
}

std::string SystemFiles::Text(std::string_view path) const {
    std::ifstream stream(Path(path), std::ios::binary);
    // Through operator<<, which does not throw where reading fails.
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<std::string> SystemFiles::Lines(std::string_view path) const {
    std::ifstream stream(Path(path), std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::optional<std::string> SystemFiles::Line(std::string_view path) const {
    const auto lines = Lines(path);
    return lines.empty() ? std::nullopt : std::optional(Trimmed(lines.front()));
}

std::optional<std::uint64_t> SystemFiles::Number(std::string_view path) const {
    return LeadingNumber(Line(path).value_or(""));
}

std::map<std::string, std::string> SystemFiles::Fields(std::string_view path, char separator) const {
    std::map<std::string, std::string> fields;
    for (const auto& line : Lines(path)) {
        const auto end = line.find(separator);
        if (end != std::string::npos) {
            fields.emplace(Trimmed(std::string_view(line).substr(0, end)),
                           Trimmed(std::string_view(line).substr(end + 1)));
        }
    }
    return fields;
}

std::vector<std::string> SystemFiles::List(std::string_view path) const {
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(Path(path), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<std::uint64_t> LeadingNumber(std::string_view text) {
    std::uint64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() ? std::optional(number) : std::nullopt;
}

std::vector<std::string> Words(std::string_view text) {
    std::istringstream stream{std::string(text)};
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

} // namespace demo
