// The client library alone: lists the classes of a CIM server, or the instances of one of them.
//     client HOST PORT [CLASS [USER]]     the password is in the variable CIMHTTP_PASSWORD

#include <Pegasus/Client/CIMClient.h>

#include <cstdlib>
#include <iostream>
#include <string>

using namespace Pegasus;

namespace {

const CIMNamespaceName kNamespace("root/cimv2");

/// A server's text for a terminal: whatever is not a printable character of ASCII is a question mark.
std::string Harmless(const String& text) {
    std::string shown(text.view());
    for (char& c : shown) {
        c = c < ' ' || c > '~' ? '?' : c;
    }
    return shown;
}

void ListClasses(CIMClient& client) {
    const auto names = client.enumerateClassNames(kNamespace, CIMName(), true);
    for (Uint32 i = 0; i < names.size(); ++i) {
        std::cout << Harmless(names[i].getString()) << '\n';
    }
}

void ListInstances(CIMClient& client, const CIMName& className) {
    const auto instances = client.enumerateInstances(kNamespace, className, true, false);
    for (Uint32 i = 0; i < instances.size(); ++i) {
        std::cout << Harmless(instances[i].getPath().toString()) << '\n';
        for (Uint32 j = 0; j < instances[i].getPropertyCount(); ++j) {
            const auto property = instances[i].getProperty(j);
            std::cout << "    " << Harmless(property.getName().getString()) << ": "
                      << Harmless(property.getValue().toString()) << '\n';
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    const int port = argc > 2 ? std::atoi(argv[2]) : 0;
    if (argc < 3 || argc > 5 || port <= 0) {
        std::cerr << "usage: client HOST PORT [CLASS [USER]]\n";
        return 2;
    }
    const char* const password = std::getenv("CIMHTTP_PASSWORD");
    try {
        CIMClient client;
        client.connect(argv[1], static_cast<Uint32>(port), argc > 4 ? argv[4] : "",
                       password != nullptr ? password : "");
        if (argc > 3) {
            ListInstances(client, CIMName(argv[3]));
        } else {
            ListClasses(client);
        }
    } catch (const Exception& failure) {
        std::cerr << "client: " << Harmless(failure.getMessage()) << '\n';
        return 1;
    }
    return std::cout.flush() ? 0 : 1;
}
