#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

#include <string>
#include <string_view>

/// Writes objects down with all that they hold, and so reads every part of them. Two descriptions agree exactly when
/// the objects do. Ends the program for a value that does not keep what its interface promises.
class Description {
  public:
    void Add(const Pegasus::CIMClass& cimClass);
    void Add(const Pegasus::CIMInstance& instance);
    void Add(const Pegasus::CIMName& name);
    void Add(const Pegasus::CIMObject& object);
    void Add(const Pegasus::CIMObjectPath& path);
    void Add(const Pegasus::CIMQualifierDecl& declaration);
    void Add(const Pegasus::CIMValue& value);

    const std::string& Text() const { return text_; }

  private:
    void Word(std::string_view word);
    void Flag(bool flag) { Word(flag ? "yes" : "no"); }
    void Number(Pegasus::Uint64 number) { Word(std::to_string(number)); }

    void Add(const Pegasus::CIMConstMethod& method);
    void Add(const Pegasus::CIMConstParameter& parameter);
    void Add(const Pegasus::CIMConstProperty& property);
    void Add(const Pegasus::CIMConstQualifier& qualifier);

    template <class T>
    void AddContent(const Pegasus::CIMValue& value);
    template <class T>
    void AddItem(const T& item);
    template <class Owner>
    void AddQualifiers(const Owner& owner);
    template <class Owner>
    void AddProperties(const Owner& owner);

    std::string text_;
};
