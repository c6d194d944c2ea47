#include "text/PathFault.h"

#include <strings.h>

#include <algorithm>
#include <cctype>

namespace cimhttp {

namespace {

constexpr unsigned char kFirstBeyondAscii = 0x80;

bool BeginsName(unsigned char letter) {
    return std::isalpha(letter) != 0 || letter == '_' || letter >= kFirstBeyondAscii;
}

bool ContinuesName(unsigned char letter) { return BeginsName(letter) || std::isdigit(letter) != 0; }

bool IsBareValue(const std::string& text) {
    const bool is_number = !text.empty() &&
                           text.find_first_not_of("+-.0123456789abcdefABCDEFxX") == std::string::npos &&
                           text.find_first_of("0123456789") != std::string::npos;
    return is_number || ::strcasecmp(text.c_str(), "true") == 0 || ::strcasecmp(text.c_str(), "false") == 0;
}

/// Reads a path from the left up to what is wrong.
class PathReader {
  public:
    explicit PathReader(const std::string& path) : path_(path), place_(BeginOfClass(path)) {}

    std::string Fault() {
        if (place_ > 0 && !IsNamespace(NamespaceIn(path_.substr(0, place_ - 1)))) {
            return "before '" + path_.substr(place_ - 1) + "' there should be a namespace such as root/cimv2";
        }
        if (!SkipName()) {
            return Expected("the name of a class");
        }
        if (place_ == path_.size()) {
            return {};
        }
        const bool isUnnamed = Skip('=');
        if (!isUnnamed && !Skip('.')) {
            return Expected("a point and the keys");
        }
        std::string fault = isUnnamed ? ValueFault() : KeyFault();
        while (fault.empty() && Skip(',')) {
            fault = KeyFault();
        }
        return !fault.empty() || place_ == path_.size() ? fault : Expected("a comma or the end");
    }

  private:
    /// Behind the server and the namespace, `//server/root/cimv2:`, whose address may have a port.
    static std::size_t BeginOfClass(const std::string& path) {
        const std::size_t keys = path.find_first_of("=\"");
        const std::size_t colon = path.rfind(':', keys);
        return colon == std::string::npos ? 0 : colon + 1;
    }

    /// The namespace behind the server, if there is one: in `//server/root/cimv2`, `http://server/root/cimv2`,
    /// `server:5988/root/cimv2`, `/root/cimv2` and `root/cimv2`.
    static std::string NamespaceIn(const std::string& head) {
        const std::size_t slashes = head.find("//");
        if (slashes == 0 || (slashes != std::string::npos && head[slashes - 1] == ':')) {
            return BehindSlash(head, slashes + 2);
        }
        const bool hasPort = head.find(':') != std::string::npos;
        return hasPort || head.rfind('/', 0) == 0 ? BehindSlash(head, 0) : head;
    }

    static std::string BehindSlash(const std::string& text, std::size_t begin) {
        const std::size_t slash = text.find('/', begin);
        return slash == std::string::npos ? std::string() : text.substr(slash + 1);
    }

    /// Names with slashes between them.
    static bool IsNamespace(const std::string& text) {
        bool is_begin = true;
        for (const char letter : text) {
            const auto byte = static_cast<unsigned char>(letter);
            if (letter == '/' ? is_begin : !(is_begin ? BeginsName(byte) : ContinuesName(byte))) {
                return false;
            }
            is_begin = letter == '/';
        }
        return !is_begin;
    }

    std::string KeyFault() {
        if (!SkipName()) {
            return Expected("the name of a key");
        }
        if (!Skip('=')) {
            return Expected("an equals sign");
        }
        return ValueFault();
    }

    std::string ValueFault() {
        if (Skip('"')) {
            return SkipQuoted() ? std::string() : Expected("the quote that ends the text");
        }
        const std::size_t end = std::min(path_.find(',', place_), path_.size());
        if (!IsBareValue(path_.substr(place_, end - place_))) {
            return Expected("a text in double quotes (which a shell takes away unless single ones are around them), a "
                            "number, true or false");
        }
        place_ = end;
        return {};
    }

    bool Skip(char letter) {
        const bool isThere = place_ < path_.size() && path_[place_] == letter;
        place_ += isThere ? 1 : 0;
        return isThere;
    }

    bool SkipName() {
        if (place_ == path_.size() || !BeginsName(static_cast<unsigned char>(path_[place_]))) {
            return false;
        }
        while (place_ < path_.size() && ContinuesName(static_cast<unsigned char>(path_[place_]))) {
            ++place_;
        }
        return true;
    }

    /// The rest of a text in quotes, where a backslash takes the meaning from the next character.
    bool SkipQuoted() {
        while (place_ < path_.size() && path_[place_] != '"') {
            place_ = std::min(place_ + (path_[place_] == '\\' ? 2 : 1), path_.size());
        }
        return Skip('"');
    }

    std::string Expected(const std::string& thing) const {
        return (place_ == 0 ? "at its begin" : "behind '" + path_.substr(0, place_) + "'") + " there should be " +
               thing;
    }

    const std::string& path_;
    std::size_t place_;
};

} // namespace

std::string PathFault(const std::string& path) { return PathReader(path).Fault(); }

} // namespace cimhttp
