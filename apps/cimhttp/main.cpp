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

/// A reader that has gone, and a file that gets too large, are then errors of writing, about which there is something
/// to do: enumerations are closed at the server, and unfinished files removed.
void IgnoreSignalsOfWriting() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

} // namespace

int main(int argc, char** argv) {
    OccupyStandardStreams();
    IgnoreSignalsOfWriting();
    return cimhttp::RunProgram(argc, argv, std::cout, std::cerr);
}
