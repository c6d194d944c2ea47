#include "MofReader.h"

#include <cctype>
#include <stdexcept>

namespace {

/// Cuts a text into names, numbers, literals and single characters; drops comments.
class Reader {
  public:
    explicit Reader(const std::string& text) : text_(text) { Next(); }

    MofClass Class() {
        MofClass cls;
        Qualifiers();
        Expect("class");
        cls.name = Name();
        if (Accept(":")) {
            cls.superclass = Name();
        }
        Expect("{");
        while (!Accept("}")) {
            Feature(cls);
        }
        Expect(";");
        if (!token_.empty()) {
            Fail("nothing more");
        }
        return cls;
    }

  private:
    [[noreturn]] void Fail(const std::string& wanted) const {
        throw std::runtime_error(wanted + " wanted, but there is '" + token_ + "' before: " + text_.substr(at_, 80));
    }

    void SkipBlanks() {
        for (;;) {
            while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_])) != 0) {
                ++at_;
            }
            if (text_.compare(at_, 2, "//") != 0) {
                return;
            }
            at_ = text_.find('\n', at_);
        }
    }

    void Next() {
        SkipBlanks();
        const std::size_t begin = at_;
        if (at_ == text_.size()) {
            token_.clear();
        } else if (text_[at_] == '"' || text_[at_] == '\'') {
            const char quote = text_[at_];
            for (++at_; text_.at(at_) != quote; ++at_) {
                if (text_[at_] == '\n') {
                    throw std::runtime_error("a literal goes over the end of a line");
                }
                at_ += text_[at_] == '\\' ? 1 : 0;
            }
            token_ = text_.substr(begin, ++at_ - begin);
        } else {
            while (at_ < text_.size() && IsPartOfWord(text_[at_])) {
                ++at_;
            }
            at_ += at_ == begin ? 1 : 0;
            token_ = text_.substr(begin, at_ - begin);
        }
    }

    static bool IsPartOfWord(char character) {
        return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_' || character == '-' ||
               character == '+' || character == '.';
    }

    bool Accept(const std::string& token) {
        if (token_ != token) {
            return false;
        }
        Next();
        return true;
    }

    void Expect(const std::string& token) {
        if (!Accept(token)) {
            Fail('\'' + token + '\'');
        }
    }

    std::string Name() {
        const std::string name = token_;
        if (name.empty() || (std::isalpha(static_cast<unsigned char>(name[0])) == 0 && name[0] != '_')) {
            Fail("a name");
        }
        Next();
        return name;
    }

    static std::string Unescaped(const std::string& literal) {
        std::string text;
        for (std::size_t i = 1; i + 1 < literal.size(); ++i) {
            if (literal[i] != '\\') {
                text += literal[i];
                continue;
            }
            switch (literal[++i]) {
            case 'n':
                text += '\n';
                break;
            case 't':
                text += '\t';
                break;
            case '"':
            case '\'':
            case '\\':
                text += literal[i];
                break;
            default:
                throw std::runtime_error(std::string("an escape that the demo server has no use for: ") + literal[i]);
            }
        }
        return text;
    }

    /// A constant; adjacent strings are one.
    std::string Value() {
        std::string text;
        if (token_[0] != '"') {
            if (!IsPartOfWord(token_[0]) && token_[0] != '\'') {
                Fail("a value");
            }
            text = token_;
            Next();
            return text;
        }
        for (; token_[0] == '"'; Next()) {
            text += Unescaped(token_);
        }
        return text;
    }

    void Array() {
        if (!Accept("}")) {
            do {
                Value();
            } while (Accept(","));
            Expect("}");
        }
    }

    std::map<std::string, std::string> Qualifiers() {
        std::map<std::string, std::string> qualifiers;
        if (!Accept("[")) {
            return qualifiers;
        }
        do {
            std::string& value = qualifiers[Name()];
            if (Accept("(")) {
                value = Value();
                Expect(")");
            } else if (Accept("{")) {
                Array();
            }
            if (Accept(":")) {
                while (token_ != "," && token_ != "]") {
                    Name();
                }
            }
        } while (Accept(","));
        Expect("]");
        return qualifiers;
    }

    MofFeature Declaration() {
        MofFeature feature;
        feature.qualifiers = Qualifiers();
        feature.type = Name();
        if (Accept("REF")) {
            feature.type += " REF";
        }
        feature.name = Name();
        if (Accept("[")) {
            feature.isArray = true;
            if (!Accept("]")) {
                Value();
                Expect("]");
            }
        }
        return feature;
    }

    void Feature(MofClass& cls) {
        MofFeature feature = Declaration();
        if (Accept("(")) {
            if (!Accept(")")) {
                do {
                    Declaration();
                } while (Accept(","));
                Expect(")");
            }
            cls.methods.push_back(std::move(feature));
        } else {
            if (Accept("=")) {
                if (Accept("{")) {
                    Array();
                } else {
                    Value();
                }
            }
            cls.properties.push_back(std::move(feature));
        }
        Expect(";");
    }

    const std::string& text_;
    std::size_t at_ = 0;
    std::string token_;
};

} // namespace

MofClass ReadMofClass(const std::string& text) { return Reader(text).Class(); }
