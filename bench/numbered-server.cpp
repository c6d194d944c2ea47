// A CIM server with one class of five properties, of which there are as many instances as it is told, none of them
// before it is asked for: numbered-server ADDRESS COUNT. It serves port 5988 until its standard input ends.

#include "NumberedItems.h"
#include "server/HttpListener.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <limits>
#include <string>

namespace {

constexpr int kPort = 5988;
void Serve(const std::string& address, std::uint64_t count) {
    const demo::CimService service = bench::NumberedItems(count);
    const demo::Users users;
    const demo::HttpListener listener(service, users, nullptr, address, kPort, nullptr);
    std::cout << "ready" << std::endl;
    std::cin.ignore(std::numeric_limits<std::streamsize>::max());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: numbered-server ADDRESS COUNT\n";
        return EXIT_FAILURE;
    }
    try {
        Serve(argv[1], std::stoull(argv[2]));
    } catch (const std::exception& error) {
        std::cerr << "numbered-server: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
