#include "errors/Marked.h"
#include "model/NameCharacters.h"
#include "text/Ascii.h"

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>
#include <string>

namespace Pegasus {
inline namespace bundled {

namespace {

bool precedes(const CIMKeyBinding& a, const CIMKeyBinding& b) noexcept {
    const std::string_view left = a.getName().getString().view();
    const std::string_view right = b.getName().getString().view();
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), [](char x, char y) {
        return static_cast<Uint8>(text::lowered(x)) < static_cast<Uint8>(text::lowered(y));
    });
}

Array<CIMKeyBinding> sorted(Array<CIMKeyBinding> keys) {
    std::stable_sort(keys.begin(), keys.end(), precedes);
    return keys;
}

template <class Number>
std::optional<Number> wholeNumber(std::string_view text, int base = 10) noexcept {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && last == end ? std::optional<Number>(number) : std::nullopt;
}

/// An integer as sign and magnitude, so that the whole range of sint64 and uint64 fits.
struct Integer {
    bool negative;
    Uint64 magnitude;

    friend bool operator==(const Integer& a, const Integer& b) noexcept {
        return a.magnitude == b.magnitude && (a.negative == b.negative || a.magnitude == 0);
    }
};

std::optional<Integer> integerIn(std::string_view text) noexcept {
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    const bool hexadecimal = text.size() > 2 && text[0] == '0' && text::lowered(text[1]) == 'x';
    const auto magnitude = hexadecimal ? wholeNumber<Uint64>(text.substr(2), 16) : wholeNumber<Uint64>(text);
    return magnitude ? std::optional<Integer>(Integer{negative, *magnitude}) : std::nullopt;
}

bool isNumber(std::string_view text) noexcept {
    double real = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, real);
    return integerIn(text) || (error != std::errc::invalid_argument && last == end);
}

bool sameNumber(const String& a, const String& b) noexcept {
    const auto left = integerIn(a.view());
    return left && left == integerIn(b.view());
}

/// The path in a text, nothing when it is none.
std::optional<CIMObjectPath> pathIn(const String& text) {
    try {
        return CIMObjectPath(text);
    } catch (const Exception&) {
        return std::nullopt;
    }
}

bool samePath(const String& a, const String& b) {
    const auto left = pathIn(a);
    return left && left == pathIn(b);
}

void appendQuoted(std::string& out, std::string_view text) {
    out += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        out += c;
    }
    out += '"';
}

void appendKey(std::string& out, const CIMKeyBinding& key) {
    const bool quoted = key.getType() == CIMKeyBinding::STRING || key.getType() == CIMKeyBinding::REFERENCE;
    out.append(key.getName().getString().view()).append("=");
    if (quoted) {
        appendQuoted(out, key.getValue().view());
    } else {
        out.append(key.getValue().view());
    }
}

/// Reads the text form of a path from left to right.
class PathParser {
  public:
    explicit PathParser(const String& text) : text_(text), rest_(text.view()) {}

    CIMObjectPath parse() {
        const String host = parseHost();
        const CIMNamespaceName nameSpace = parseNamespace();
        const CIMName className = parseName(MalformedPath::CLASS_NAME);
        return CIMObjectPath(host, nameSpace, className, parseKeys());
    }

  private:
    /// Reports what was expected where the rest begins.
    [[noreturn]] void fail(MalformedPath::Expected expected) const {
        failAt(expected, text_.view().size() - rest_.size());
    }

    [[noreturn]] void failAt(MalformedPath::Expected expected, std::size_t position) const {
        throw errors::Marked<MalformedObjectNameException, MalformedPath>(
            text_, MalformedPath(expected, static_cast<Uint32>(position)));
    }

    /// Reports a missing namespace at the colon that should follow it, or at the end where there is no colon.
    [[noreturn]] void failForNamespace() const {
        const std::string_view text = text_.view();
        failAt(MalformedPath::NAMESPACE, std::min(text.rfind(':', text.find_first_of("=\"")), text.size()));
    }

    /// The next characters, up to `length`, or all of them.
    std::string_view take(std::size_t length) {
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    bool skip(std::string_view expected) {
        if (rest_.substr(0, expected.size()) != expected) {
            return false;
        }
        rest_.remove_prefix(expected.size());
        return true;
    }

    String parseHost() {
        if (!skip("//")) {
            return String();
        }
        String host(take(rest_.find('/')));
        if (host.empty() || !skip("/")) {
            failForNamespace();
        }
        return host;
    }

    CIMNamespaceName parseNamespace() {
        const std::size_t end = rest_.find_first_of(":.=\"");
        if (end == std::string_view::npos || rest_[end] != ':') {
            return CIMNamespaceName();
        }
        const String nameSpace(rest_.substr(0, end));
        if (!CIMNamespaceName::legal(nameSpace)) {
            failForNamespace();
        }
        rest_.remove_prefix(end + 1);
        return CIMNamespaceName(nameSpace);
    }

    CIMName parseName(MalformedPath::Expected expected) {
        const std::size_t size = detail::nameSize(rest_);
        if (size == 0) {
            fail(expected);
        }
        return CIMName(String(take(size)));
    }

    Array<CIMKeyBinding> parseKeys() {
        Array<CIMKeyBinding> keys;
        if (rest_.empty()) {
            return keys;
        }
        if (skip("=")) {
            keys.append(parseValue(CIMName()));
        } else {
            if (!skip(".")) {
                fail(MalformedPath::KEYS);
            }
            do {
                keys.append(parseKey());
            } while (skip(","));
        }
        if (!rest_.empty()) {
            fail(keys[0].getName().isNull() ? MalformedPath::END : MalformedPath::COMMA_OR_END);
        }
        return keys;
    }

    CIMKeyBinding parseKey() {
        const CIMName name = parseName(MalformedPath::KEY_NAME);
        if (!skip("=")) {
            fail(MalformedPath::EQUALS_SIGN);
        }
        return parseValue(name);
    }

    CIMKeyBinding parseValue(const CIMName& name) {
        if (skip("\"")) {
            const String value = parseQuoted();
            const auto path = pathIn(value);
            const bool reference = path && path->getKeyBindings().size() != 0;
            return CIMKeyBinding(name, value, reference ? CIMKeyBinding::REFERENCE : CIMKeyBinding::STRING);
        }
        const String value(rest_.substr(0, rest_.find(',')));
        const bool isBoolean = String::equalNoCase(value, "TRUE") || String::equalNoCase(value, "FALSE");
        if (!isBoolean && !isNumber(value.view())) {
            fail(MalformedPath::VALUE);
        }
        rest_.remove_prefix(value.view().size());
        return CIMKeyBinding(name, value, isBoolean ? CIMKeyBinding::BOOLEAN : CIMKeyBinding::NUMERIC);
    }

    /// Begins after the opening quote; takes the closing one, too.
    String parseQuoted() {
        std::string value;
        while (!skip("\"")) {
            skip("\\");
            if (rest_.empty()) {
                fail(MalformedPath::CLOSING_QUOTE);
            }
            value += take(1);
        }
        return String(std::string_view(value));
    }

    const String& text_;
    std::string_view rest_;
};

} // namespace

bool operator==(const CIMKeyBinding& a, const CIMKeyBinding& b) {
    if (a.name_ != b.name_ || a.type_ != b.type_) {
        return false;
    }
    if (String::equal(a.value_, b.value_)) {
        return true;
    }
    switch (a.type_) {
    case CIMKeyBinding::BOOLEAN:
        return String::equalNoCase(a.value_, b.value_);
    case CIMKeyBinding::NUMERIC:
        return sameNumber(a.value_, b.value_);
    case CIMKeyBinding::REFERENCE:
        return samePath(a.value_, b.value_);
    case CIMKeyBinding::STRING:
        break;
    }
    return false;
}

struct CIMObjectPath::Rep : detail::RefCounted {
    Rep() = default;
    Rep(String itsHost, CIMNamespaceName itsNameSpace, CIMName itsClassName, Array<CIMKeyBinding> itsKeys)
        : host(std::move(itsHost)),
          nameSpace(std::move(itsNameSpace)),
          className(std::move(itsClassName)),
          keyBindings(std::move(itsKeys)) {}

    String host;
    CIMNamespaceName nameSpace;
    CIMName className;
    Array<CIMKeyBinding> keyBindings;
};

CIMObjectPath::CIMObjectPath(String host, CIMNamespaceName nameSpace, CIMName className,
                             Array<CIMKeyBinding> keyBindings)
    : rep_(detail::Handle<Rep>::make(std::move(host), std::move(nameSpace), std::move(className),
                                     sorted(std::move(keyBindings)))) {}

CIMObjectPath::CIMObjectPath(const String& text) : CIMObjectPath(PathParser(text).parse()) {}

CIMObjectPath::CIMObjectPath(const char* text) : CIMObjectPath(String(text)) {}

const CIMObjectPath::Rep& CIMObjectPath::rep() const noexcept {
    static const Rep kEmpty;
    return rep_ ? *rep_ : kEmpty;
}

const String& CIMObjectPath::getHost() const noexcept { return rep().host; }
const CIMNamespaceName& CIMObjectPath::getNameSpace() const noexcept { return rep().nameSpace; }
const CIMName& CIMObjectPath::getClassName() const noexcept { return rep().className; }
const Array<CIMKeyBinding>& CIMObjectPath::getKeyBindings() const noexcept { return rep().keyBindings; }

String CIMObjectPath::toString() const {
    std::string text;
    if (!getHost().empty()) {
        text.append("//").append(getHost().view()).append("/");
    }
    if (!getNameSpace().isNull()) {
        text.append(getNameSpace().getString().view()).append(":");
    }
    text.append(getClassName().getString().view());

    const char* separator = ".";
    for (const CIMKeyBinding& key : getKeyBindings()) {
        if (!key.getName().isNull()) {
            text += separator;
        }
        appendKey(text, key);
        separator = ",";
    }
    return String(std::string_view(text));
}

Boolean CIMObjectPath::identical(const CIMObjectPath& other) const {
    return rep_ == other.rep_ ||
           (String::equalNoCase(getHost(), other.getHost()) && getNameSpace() == other.getNameSpace() &&
            getClassName() == other.getClassName() && getKeyBindings() == other.getKeyBindings());
}

void CIMObjectPath::setHost(const String& host) {
    *this = CIMObjectPath(host, getNameSpace(), getClassName(), getKeyBindings());
}
void CIMObjectPath::setNameSpace(const CIMNamespaceName& nameSpace) {
    *this = CIMObjectPath(getHost(), nameSpace, getClassName(), getKeyBindings());
}
void CIMObjectPath::setClassName(const CIMName& className) {
    *this = CIMObjectPath(getHost(), getNameSpace(), className, getKeyBindings());
}
void CIMObjectPath::setKeyBindings(const Array<CIMKeyBinding>& keyBindings) {
    *this = CIMObjectPath(getHost(), getNameSpace(), getClassName(), keyBindings);
}

/// Without the values of keys that are no texts: equal ones may be written differently.
Uint32 CIMObjectPath::makeHashCode() const {
    std::string text(getHost().view());
    text.append("/").append(getNameSpace().getString().view()).append(":").append(getClassName().getString().view());
    for (const CIMKeyBinding& key : getKeyBindings()) {
        text.append(".").append(key.getName().getString().view());
        if (key.getType() == CIMKeyBinding::STRING) {
            text.append("=").append(key.getValue().view());
        }
    }
    std::transform(text.begin(), text.end(), text.begin(), text::lowered);
    return static_cast<Uint32>(std::hash<std::string>()(text));
}

} // namespace bundled
} // namespace Pegasus
