#include "Program.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

namespace {

/// Takes the places of standard streams that the program was started without. Otherwise a connection to a server would
/// get such a place, and with it what is written to the stream. Writing fails as it did.
void OccupyStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) < 0) {
            ::open("/dev/null", O_RDONLY);
        }
    }
}

/// A file that gets too large is then an error of writing, about which there is something to say, and not the end.
void IgnoreFileSizeSignal() { std::signal(SIGXFSZ, SIG_IGN); }

} // namespace

int main(int argc, char** argv) {
    OccupyStandardStreams();
    IgnoreFileSizeSignal();
    return cimhttp::RunProgram(argc, argv, std::cout, std::cerr);
}
