#pragma once

#include "host/TCIMContext.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace NQORVYX20 {

class ICIMNamespace;

/// An object path: a host, a namespace, a class name, and key values. Key values keep the order in which they were
/// added. Copying and moving are defined in TCIMValue.h.
class TCIMReference {
  public:
    /// A path without a class name. The entries of `keys` become its first key values; the namespace, which may be
    /// empty, is not kept alive.
    TCIMReference(boost::shared_ptr<ICIMNamespace> nameSpace, TCIMContext keys);
    TCIMReference(const TCIMReference& other);
    TCIMReference(TCIMReference&& other) noexcept;
    TCIMReference& operator=(const TCIMReference& other);
    TCIMReference& operator=(TCIMReference&& other) noexcept;
    ~TCIMReference();

    /// Adds one key value. A key of that name (without regard to case) gets the new value and keeps its place.
    void AddKeyValue(const std::string& name, const TCIMValue& value);

    /// The value of a key, found without regard to case; a null value when there is none.
    TCIMValue GetKeyValue(const std::string& name) const;

    /// Calls back once per key value, in the order in which they were added, until the callback returns false.
    void EnumerateKeyValues(const boost::function<bool(const std::string&, const TCIMValue&)>& callback) const;

    void SetClassName(const std::string& name) { className_ = name; }

    /// The class that the path names, empty for none.
    const std::string& GetClassName() const { return className_; }

    /// Where the object is, as a server writes it: its host, perhaps with a port, and its namespace, such as
    /// `root/cimv2`. Both are empty for a path that does not say.
    void SetHost(const std::string& host) { host_ = host; }
    const std::string& GetHost() const { return host_; }
    void SetNamespaceName(const std::string& name) { namespaceName_ = name; }
    const std::string& GetNamespaceName() const { return namespaceName_; }

    /// The namespace, or an empty pointer when there is none or it has gone.
    boost::shared_ptr<ICIMNamespace> GetNamespace() const { return namespace_.lock(); }

    /// The path as text, `Class.key1="text",key2=3`: keys in the order of their normalised names; numbers and booleans
    /// bare; arrays as `{"a","b"}`; a null value as `NULL`; all other values quoted, with `\` before `"` and `\`.
    /// Before it stands the namespace, `root/cimv2:Class…`, or host and namespace, `//host/root/cimv2:Class…`, of a
    /// path that has them. A key without a name is written `Class="text"`. Without a class name, the keys alone. Equal
    /// references have equal texts.
    std::string GetPath() const;

    /// References are compared by their text.
    friend bool operator==(const TCIMReference& left, const TCIMReference& right);
    friend bool operator!=(const TCIMReference& left, const TCIMReference& right) { return !(left == right); }
    friend bool operator<(const TCIMReference& left, const TCIMReference& right);

  private:
    using TKeyValue = std::pair<std::string, TCIMValue>;

    /// The place of a key in the list, or the list's size when there is none.
    std::size_t FindKey(const std::string& name) const;
    void ExtendIndex();

    boost::weak_ptr<ICIMNamespace> namespace_;
    std::string host_;
    std::string namespaceName_;
    std::string className_;
    std::vector<TKeyValue> keyValues_;
    std::map<std::string, std::size_t> index_; // the places of the keys by normalised name; empty while they are few
};

} // namespace NQORVYX20
