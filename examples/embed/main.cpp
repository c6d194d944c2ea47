// The smallest host: shows the instances of one class of a CIM server.
//     embed HOST PORT CLASS [USER]        the password is in the variable CIMHTTP_PASSWORD

#include "cimhttp/Connect.h"
#include "cimhttp/ContextKeys.h"
#include "cimhttp/DisplayTexts.h"
#include "cimhttp/ReadingIncidents.h"
#include "cimhttp/RemoteFailure.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMProperty.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

using namespace NQORVYX20;

namespace {

/// A server's text for a terminal: without control characters, by which it could steer it.
std::string Harmless(std::string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isControl = byte < 0x20 || byte == 0x7f;
        if (isControl || (byte == 0xc2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xa0)) {
            text.replace(i, isControl ? 1 : 2, "?");
        }
    }
    return text;
}

bool Show(const boost::shared_ptr<ICIMInstance>& instance) {
    std::cout << Harmless(instance->BuildPath(TCIMContext()).GetPath()) << '\n';
    const auto showProperty = [&](const boost::shared_ptr<ICIMProperty>& property) {
        const std::string name = property->GetDeclaration(TCIMContext())->GetName(TCIMContext());
        for (const std::string& text : DisplayTexts(*instance, name)) {
            std::cout << "    " << name << ": " << Harmless(text) << '\n';
        }
        return true; // go on
    };
    instance->EnumerateProperties(showProperty, TCIMContext());
    return static_cast<bool>(std::cout); // go on, unless nobody reads any more
}

/// True when nothing of the server's answers was left out.
bool Read(ICIMNamespace& nameSpace, const std::string& className) {
    const auto cls = nameSpace.GetClass(className, TCIMContext()); // throws when the server does not have it
    cls->EnumerateInstances(Show, true, TCIMContext());
    const ReadingIncidents incidents = TakeIncidents(nameSpace);
    for (const ReadingIncident& incident : incidents.First()) {
        std::cerr << "embed: left out: " << Harmless(incident.path + ' ' + incident.reason) << '\n';
    }
    return incidents.Total() == 0;
}

} // namespace

int main(int argc, char** argv) try {
    const int port = argc > 2 ? std::atoi(argv[2]) : 0;
    if (argc < 4 || argc > 5 || port <= 0) {
        std::cerr << "usage: embed HOST PORT CLASS [USER]\n";
        return 2;
    }
    const char* const password = std::getenv("CIMHTTP_PASSWORD");
    const auto nameSpace = AllocateRemoteNamespace({{kReadingKey, TCIMValue(kFaithfulReading)}});
    try {
        ConnectNamespace(*nameSpace, argv[1], argc > 4 ? argv[4] : "", password != nullptr ? password : "", port);
        const bool isWhole = Read(*nameSpace, argv[3]);
        return std::cout.flush() && isWhole ? 0 : 1;
    } catch (const TVYXException&) {
        const auto failure = LastFailure(*nameSpace); // empty when it was not the server
        if (!failure) {
            throw;
        }
        std::cerr << "embed: " << Harmless(failure->text) << '\n';
        return 1;
    }
} catch (const std::exception& error) {
    std::cerr << "embed: " << error.what() << '\n';
    return 1;
}
