#pragma once

#include "support/ScriptedServer.h"

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// An INSTANCENAME (see PathXml) with host and namespace around it (DSP0201).
std::string WholePathXml(const std::string& path, const std::string& host = "server.example",
                         const std::string& nameSpace = "root/cimv2");

/// The INSTANCENAME of an association with two references as keys: `From` and `To`, each the XML of a path.
std::string LinkXml(const std::string& cls, const std::string& from, const std::string& to);

/// A server that answers by the method and the value of the object's first key, or the name of a class where there is
/// no key; in one namespace only where that stands before it, as in `interop:CIM_Namespace`. What it has no answer for
/// is CIM_ERR_NOT_FOUND.
class LinkServer {
  public:
    struct Call {
        std::string method;
        std::string nameSpace;
        std::string object;
        std::string body;
    };

    LinkServer();

    void Answer(const std::string& method, const std::string& object, const std::string& returnValue);
    void Fail(const std::string& method, const std::string& object, unsigned code);

    /// Lets two objects of TEST_Node be associated: each tells of it when it is asked for its ReferenceNames. Without
    /// another association an object has none.
    void Link(const std::string& cls, const std::string& from, const std::string& to);

    const std::string& Address() const { return server_.Address(); }
    std::vector<Call> Calls() const;
    std::size_t CountOf(const std::string& method) const;

  private:
    std::string AnswerTo(const std::string& body);

    mutable std::mutex mutex_;
    std::map<std::pair<std::string, std::string>, std::string> answers_;
    std::map<std::pair<std::string, std::string>, unsigned> errors_;
    std::vector<Call> calls_;
    support::ScriptedServer server_;
};
