#pragma once

#include "cimxml/ResponseDecoder.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What a ResponseDecoder delivers for one body.
struct DecodedAnswer : Pegasus::cimxml::ReturnValueSink {
    void onClass(const Pegasus::CIMClass& cimClass) override { classes.push_back(cimClass); }
    void onInstance(const Pegasus::CIMInstance& instance) override { instances.push_back(instance); }
    void onClassName(const Pegasus::CIMName& name) override { classNames.push_back(name); }
    void onQualifierDecl(const Pegasus::CIMQualifierDecl& decl) override { qualifierDecls.push_back(decl); }

    std::vector<Pegasus::CIMClass> classes;
    std::vector<Pegasus::CIMInstance> instances;
    std::vector<Pegasus::CIMName> classNames;
    std::vector<Pegasus::CIMQualifierDecl> qualifierDecls;
};

/// Decodes the answer to request 1001, fed in pieces of `pieceSize` bytes.
inline DecodedAnswer decode(const std::string& method, std::string_view body, std::size_t pieceSize = 4096,
                            const std::shared_ptr<Pegasus::cimxml::ObjectDecoder>& objects = nullptr) {
    DecodedAnswer answer;
    Pegasus::cimxml::ResponseDecoder decoder("1001", method, answer, objects);
    for (; !body.empty(); body.remove_prefix(std::min(pieceSize, body.size()))) {
        decoder.feed(body.substr(0, pieceSize));
    }
    decoder.finish();
    return answer;
}
