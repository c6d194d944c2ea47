// Runs one fuzzer on every file of the given folders, without the fuzzing engine. A folder that is missing or empty is
// a failure: nothing would be tested.

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

void Replay(const fs::path& path) {
    std::cout << path.filename().string() << std::endl; // flushed, so that the last line names what fails
    const std::string content = Content(path);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
}

std::size_t ReplayFolder(const fs::path& folder) {
    std::size_t count = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            Replay(entry.path());
            ++count;
        }
    }
    if (count == 0) {
        throw std::runtime_error("no input in " + folder.string());
    }
    return count;
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc < 2) {
            throw std::runtime_error("name the folders to replay");
        }
        std::size_t count = 0;
        for (int i = 1; i < argc; ++i) {
            count += ReplayFolder(argv[i]);
        }
        std::cout << count << " inputs replayed" << std::endl;
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "replay: " << error.what() << std::endl;
        return 1;
    }
}
