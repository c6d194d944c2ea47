#pragma once

#include "PluginTest.h"
#include "host/TRootObject.h"
#include "model/TCimHTTPProperty.h"

#include <string>
#include <utility>
#include <vector>

/// Qualifiers of a declaration under test, by name.
using Qualifiers = std::vector<std::pair<std::string, NQORVYX20::TCIMValue>>;

inline NQORVYX20::TCIMValue NullOf(NQORVYX20::TCIMValue::TCIMType type) { return {type, 0}; }

template <typename T>
NQORVYX20::TCIMValue ArrayOf(const std::vector<T>& elements) {
    const std::vector<NQORVYX20::TCIMValue> values(elements.begin(), elements.end());
    return {NQORVYX20::TCIMValue(T()).GetType(), 0, values};
}

inline NQORVYX20::TCIMValue Uint8(unsigned char number) { return {number}; }
inline NQORVYX20::TCIMValue Uint16(unsigned short number) { return {number}; }
inline NQORVYX20::TCIMValue Uint32(unsigned int number) { return {number}; }
inline NQORVYX20::TCIMValue Uint64(unsigned long long number) { return {number}; }

/// A declaration whose look-up of one qualifier fails.
class FailingDecl : public NQORVYX20::TCimHTTPPropertyDecl {
  public:
    struct TFailure : NQORVYX20::TVYXException {
        using TVYXException::TVYXException;
    };

    FailingDecl(const NQORVYX20::TCIMValue& defaultValue, std::string qualifier, std::uint32_t code)
        : TCimHTTPPropertyDecl(boost::shared_ptr<NQORVYX20::TCimHTTPClass>(), "Size", defaultValue),
          qualifier_(std::move(qualifier)),
          code_(code) {}

    using TCimHTTPPropertyDecl::GetQualifier;
    boost::shared_ptr<NQORVYX20::ICIMQualifier> GetQualifier(const std::string& name,
                                                             NQORVYX20::TCIMContext context) const override {
        if (name == qualifier_) {
            throw TFailure(code_);
        }
        return TCimHTTPPropertyDecl::GetQualifier(name, context);
    }

  private:
    std::string qualifier_;
    std::uint32_t code_;
};

/// Properties of declarations without a class, with a logger that keeps its messages.
class PropertyTest : public testing::Test {
  protected:
    PropertyTest() { NQORVYX20::TRootObject::SetCoreLogger(log_); }
    ~PropertyTest() override { NQORVYX20::TRootObject::SetCoreLogger({}); }

    static void AddQualifiers(NQORVYX20::TCimHTTPPropertyDecl& declaration, const Qualifiers& qualifiers) {
        for (const auto& [name, value] : qualifiers) {
            const auto qualifierDecl = boost::make_shared<NQORVYX20::TCimHTTPQualifierDecl>(
                boost::shared_ptr<NQORVYX20::TCimHTTPNamespace>(), name, value,
                NQORVYX20::ICIMQualifierDecl::eScopeProperty, NQORVYX20::ICIMQualifierDecl::eFlavorNone);
            declaration.AddQualifier(declaration.AllocateQualifier(qualifierDecl, value, {}), {});
        }
    }

    /// A declaration that lives until the end of the test.
    boost::shared_ptr<NQORVYX20::TCimHTTPPropertyDecl> Declare(const NQORVYX20::TCIMValue& defaultValue,
                                                               const Qualifiers& qualifiers = {}) {
        decls_.push_back(boost::make_shared<NQORVYX20::TCimHTTPPropertyDecl>(
            boost::shared_ptr<NQORVYX20::TCimHTTPClass>(), "Size", defaultValue));
        AddQualifiers(*decls_.back(), qualifiers);
        return decls_.back();
    }

    /// The display text of a value under a declaration with these qualifiers.
    std::string TextOf(const NQORVYX20::TCIMValue& value, const Qualifiers& qualifiers) {
        return NQORVYX20::TCimHTTPProperty(Declare(NullOf(value.GetType()), qualifiers), value).ToString();
    }

    std::vector<std::string> TextsOf(const NQORVYX20::TCIMValue& value, const Qualifiers& qualifiers) {
        return NQORVYX20::TCimHTTPProperty(Declare(NullOf(value.GetType()), qualifiers), value).ToStringVector();
    }

    boost::shared_ptr<CapturingLogger> log_ = boost::make_shared<CapturingLogger>();
    std::vector<boost::shared_ptr<NQORVYX20::TCimHTTPPropertyDecl>> decls_;
};
