#include "access/PluginAccess.h"

#include "convert/RemoteText.h"
#include "provider/TCimHTTPNamespace.h"

namespace cimhttp {

namespace {

using NQORVYX20::ICIMNamespace;
using NQORVYX20::TCimHTTPNamespace;

constexpr const char* kRemoteNamespace = "root/cimv2";

class LinkedPluginAccess : public PluginAccess {
  public:
    void Connect(ICIMNamespace& name_space, const std::string& host, const std::string& user,
                 const std::string& password, int port) const override {
        dynamic_cast<TCimHTTPNamespace&>(name_space).connect(host, user, password, port);
    }

    std::vector<std::string> ClassNames(ICIMNamespace& name_space) const override {
        Pegasus::Array<Pegasus::CIMName> names;
        dynamic_cast<TCimHTTPNamespace&>(name_space).EnumerateClassNames(kRemoteNamespace, "", names);
        std::vector<std::string> texts;
        texts.reserve(names.size());
        for (Pegasus::Uint32 i = 0; i < names.size(); ++i) {
            texts.push_back(NQORVYX20::ToStdString(names[i]));
        }
        return texts;
    }
};

} // namespace

} // namespace cimhttp

extern "C" const cimhttp::PluginAccess* CimhttpPluginAccess() {
    static const cimhttp::LinkedPluginAccess access;
    return &access;
}
