// Prints a digest of what the client library makes of many answers: of the given files, each changed in COUNT ways that
// depend on nothing but its bytes, cut into pieces, read strictly and leniently. Objects, messages and findings are all
// part of it, so that two versions of the library with the same digest decode alike.
//   decoding-digest COUNT FILE-OR-FOLDER...

#include "CutInput.h"
#include "Description.h"
#include "cimxml/Findings.h"
#include "cimxml/ObjectDecoder.h"
#include "cimxml/ResponseDecoder.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Pegasus;

namespace {

namespace fs = std::filesystem;

struct DescribingSink : cimxml::ReturnValueSink {
    void onClass(const CIMClass& cimClass) override { description.Add(cimClass); }
    void onInstance(const CIMInstance& instance) override { description.Add(instance); }
    void onInstanceAlone(const CIMInstance& instance) override { description.Add(instance); }
    void onObject(const CIMObject& object) override { description.Add(object); }
    void onClassName(const CIMName& name) override { description.Add(name); }
    void onInstanceName(const CIMObjectPath& name) override { description.Add(name); }
    void onObjectPath(const CIMObjectPath& path) override { description.Add(path); }
    void onQualifierDecl(const CIMQualifierDecl& declaration) override { description.Add(declaration); }
    void onInstancePath(const CIMObjectPath& path) override { description.Add(path); }
    void onValueText(const String& text) override { description.Add(CIMValue(text)); }
    void onOutputText(const String& /*name*/, const String& text) override { description.Add(CIMValue(text)); }
    void onOutputClass(const String& /*name*/, const CIMClass& cimClass) override { description.Add(cimClass); }

    Description description;
};

/// FNV-1a.
class Digest {
  public:
    void Add(std::string_view text) {
        for (const char c : text) {
            state_ = (state_ ^ static_cast<unsigned char>(c)) * 0x100000001B3;
        }
    }
    std::uint64_t Value() const { return state_; }

  private:
    std::uint64_t state_ = 0xCBF29CE484222325;
};

/// The operation that an answer says it is for, so that it is not refused at once.
std::string OperationIn(std::string_view body) {
    constexpr std::string_view kBefore = "<IMETHODRESPONSE NAME=\"";
    const std::size_t before = body.find(kBefore);
    if (before == std::string_view::npos) {
        return "EnumerateInstances";
    }
    const std::string_view name = body.substr(before + kBefore.size());
    return std::string(name.substr(0, name.find('"')));
}

void AddOutcome(std::string_view body, std::string_view sizes, bool lenient,
                const std::shared_ptr<cimxml::ObjectDecoder>& objects, Digest& digest) {
    DescribingSink sink;
    cimxml::Findings findings;
    cimxml::ResponseDecoder decoder("1001", OperationIn(body), sink, objects, {}, nullptr,
                                    lenient ? &findings : nullptr);
    try {
        Pieces pieces(body, sizes);
        for (auto piece = pieces.Next(); !piece.empty(); piece = pieces.Next()) {
            decoder.feed(piece);
        }
        decoder.finish();
    } catch (const Exception& exception) {
        digest.Add(exception.getMessage().view());
    }
    digest.Add(sink.description.Text());
    for (const LenientFinding& finding : findings.take().first) {
        digest.Add(std::to_string(finding.kind) + std::to_string(finding.offset));
        for (const String& part : {finding.className, finding.path, finding.element, finding.text, finding.reason}) {
            digest.Add(part.view());
        }
    }
}

/// Changes a text in some places: bytes that mean something in XML, parts left out, repeated or exchanged.
class Mutator {
  public:
    explicit Mutator(std::uint64_t seed) : random_(seed) {}

    std::string Mutant(std::string text) {
        for (std::size_t changes = 1 + Below(4); changes != 0 && !text.empty(); --changes) {
            Change(text);
        }
        return text;
    }
    std::size_t Below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }

  private:
    void Change(std::string& text) {
        static const std::vector<std::string> kParts = {"<",
                                                        ">",
                                                        "/",
                                                        "&",
                                                        "&amp;",
                                                        "&#0;",
                                                        "&#13;",
                                                        "\r",
                                                        "\n ",
                                                        "\"",
                                                        "<VALUE>",
                                                        "</VALUE>",
                                                        "<VALUE/>",
                                                        "<VALUE.NULL/>",
                                                        "<!--x-->",
                                                        "<![CDATA[y]]>",
                                                        "\xC3\xA4",
                                                        "\xFF",
                                                        "*",
                                                        "-",
                                                        "9999999999999999999",
                                                        " "};
        const std::size_t at = Below(text.size());
        const std::size_t length = std::min(Below(40), text.size() - at);
        switch (Below(5)) {
        case 0:
            text.replace(at, 1, kParts[Below(kParts.size())]);
            break;
        case 1:
            text.insert(at, kParts[Below(kParts.size())]);
            break;
        case 2:
            text.erase(at, length);
            break;
        case 3:
            text.insert(at, text.substr(Below(text.size()), length));
            break;
        default:
            text[at] = static_cast<char>(text[at] ^ (1U << Below(8)));
        }
    }

    std::mt19937_64 random_;
};

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<fs::path> FilesOf(int count, char** names) {
    std::vector<fs::path> files;
    for (int i = 0; i < count; ++i) {
        if (fs::is_directory(names[i])) {
            files.insert(files.end(), fs::directory_iterator(names[i]), fs::directory_iterator());
        } else {
            files.emplace_back(names[i]);
        }
    }
    std::sort(files.begin(), files.end(),
              [](const fs::path& a, const fs::path& b) { return a.filename() < b.filename(); });
    return files;
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc < 3) {
            throw std::runtime_error("use: decoding-digest COUNT FILE-OR-FOLDER...");
        }
        const std::size_t count = std::stoul(argv[1]);
        Digest digest;
        std::size_t mutants = 0;
        const auto objects = std::make_shared<cimxml::ObjectDecoder>(); // what one answer leaves behind meets the next
        for (const fs::path& file : FilesOf(argc - 2, argv + 2)) {
            const std::string content = Content(file) + '\n';
            // The inputs of fuzzers have a line before the answer, of which CutInput says what it means.
            const std::size_t line = content.front() == '<' ? 0 : content.find('\n') + 1;
            const std::string body = content.substr(line);
            Mutator mutator(content.size());
            for (std::size_t i = 0; i < count; ++i, ++mutants) {
                const std::string mutant = i == 0 ? body : mutator.Mutant(body);
                AddOutcome(mutant, "", false, objects, digest);
                AddOutcome(mutant, mutator.Below(2) == 0 ? "_" : "@CEGIKMOQSUWY", false, objects, digest);
                AddOutcome(mutant, "", true, objects, digest);
            }
        }
        std::cout << mutants << " mutants, digest " << std::hex << digest.Value() << '\n';
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "decoding-digest: " << error.what() << '\n';
        return 1;
    }
}
