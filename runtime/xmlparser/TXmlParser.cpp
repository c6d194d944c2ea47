#include "host/TXmlParser.h"

#include <expat.h>

#include <cerrno>
#include <cstddef>
#include <exception>
#include <fstream>
#include <new>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

namespace NQORVYX20 {

namespace {

constexpr std::size_t kBlockSize = std::size_t{64} << 10U;
constexpr std::size_t kMaxDocumentSize = std::size_t{16} << 20U; // far beyond any configuration
constexpr unsigned int kMaxDepth = 256;

const char* OrEmpty(const char* text) { return text == nullptr ? "" : text; }

/// One parse of one document. Expat's own limits on the expansion of entities stay as they are.
class TDocument {
  public:
    explicit TDocument(TXmlParser& target) : fTarget(target), fExpat(XML_ParserCreate(nullptr)) {
        if (!fExpat) {
            throw std::bad_alloc();
        }
        XML_SetUserData(fExpat.get(), this);
        XML_SetElementHandler(fExpat.get(), OnStartElement, OnEndElement);
        XML_SetProcessingInstructionHandler(fExpat.get(), OnProcessingInstruction);
        XML_SetCharacterDataHandler(fExpat.get(), OnCharacters);
        XML_SetNotationDeclHandler(fExpat.get(), OnNotationDecl);
    }

    /// Takes the next piece. False when the parse is over because something went wrong.
    bool Feed(const char* data, std::size_t size, bool isLast) {
        if (size > kMaxDocumentSize - fSize) {
            Fail("the document is larger than " + std::to_string(kMaxDocumentSize >> 20U) + " MiB");
            return false;
        }
        fSize += size;
        if (XML_Parse(fExpat.get(), data, static_cast<int>(size), isLast ? 1 : 0) == XML_STATUS_OK) {
            return true;
        }
        if (!HasFailed()) {
            Fail(XML_ErrorString(XML_GetErrorCode(fExpat.get())));
        }
        return false;
    }

    void Fail(std::string error) { fError = std::move(error); }

    unsigned int Line() const { return static_cast<unsigned int>(XML_GetCurrentLineNumber(fExpat.get())); }

    const std::exception_ptr& GetException() const { return fException; }
    const std::optional<std::string>& GetError() const { return fError; }

  private:
    struct TFreeParser {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    bool HasFailed() const { return fException || fError; }

    // Runs one callback. An exception must not cross Expat's C frames: it is kept until they are left. Expat may still
    // report an event or two after it was told to stop; those are dropped.
    template <typename TCallback>
    static void Call(void* userData, TCallback callback) noexcept {
        auto& self = *static_cast<TDocument*>(userData);
        if (self.HasFailed()) {
            return;
        }
        try {
            callback(self);
        } catch (...) {
            self.fException = std::current_exception();
        }
        if (self.HasFailed()) {
            XML_StopParser(self.fExpat.get(), XML_FALSE);
        }
    }

    void StartElement(const char* name, const char** attributes) {
        if (++fDepth > kMaxDepth) {
            return Fail("elements are nested deeper than " + std::to_string(kMaxDepth));
        }
        std::map<std::string, std::string> map;
        for (const char** attribute = attributes; *attribute != nullptr; attribute += 2) {
            map.emplace(attribute[0], attribute[1]);
        }
        fTarget.StartElement(name, map);
    }

    void EndElement(const char* name) {
        --fDepth;
        fTarget.EndElement(name);
    }

    static void OnStartElement(void* userData, const char* name, const char** attributes) {
        Call(userData, [=](TDocument& self) { self.StartElement(name, attributes); });
    }

    static void OnEndElement(void* userData, const char* name) {
        Call(userData, [=](TDocument& self) { self.EndElement(name); });
    }

    static void OnProcessingInstruction(void* userData, const char* target, const char* data) {
        Call(userData, [=](TDocument& self) { self.fTarget.processingInstruction(target, data); });
    }

    static void OnCharacters(void* userData, const char* text, int length) {
        Call(userData, [=](TDocument& self) { self.fTarget.characters(text, static_cast<unsigned int>(length)); });
    }

    static void OnNotationDecl(void* userData, const char* name, const char* /*base*/, const char* systemId,
                               const char* publicId) {
        Call(userData, [=](TDocument& self) { self.fTarget.notationDecl(name, OrEmpty(publicId), OrEmpty(systemId)); });
    }

    TXmlParser& fTarget;
    std::unique_ptr<XML_ParserStruct, TFreeParser> fExpat;
    std::size_t fSize = 0;
    unsigned int fDepth = 0;
    std::exception_ptr fException;
    std::optional<std::string> fError;
};

void FeedFile(TDocument& document, const std::string& fileName) {
    const auto fail = [&](const char* what) {
        document.Fail(what + fileName + ": " + std::generic_category().message(errno));
    };
    std::ifstream file(fileName, std::ios::binary);
    if (!file) {
        return fail("cannot open the file ");
    }
    std::vector<char> block(kBlockSize);
    do {
        file.read(block.data(), static_cast<std::streamsize>(block.size()));
        if (file.bad()) {
            return fail("cannot read the file ");
        }
    } while (document.Feed(block.data(), static_cast<std::size_t>(file.gcount()), file.eof()) && !file.eof());
}

} // namespace

class TXmlParser::TImpl {
  public:
    explicit TImpl(TXmlParser& owner) : fOwner(owner) {}

    template <typename TFeed>
    bool Parse(TFeed feed) {
        TDocument document(fOwner);
        {
            const TRunning running(fRunning, document);
            feed(document);
        }
        fLine = document.Line();
        if (document.GetException()) {
            std::rethrow_exception(document.GetException());
        }
        if (document.GetError()) {
            fOwner.FatalError(document.GetError()->c_str());
        }
        return !document.GetError();
    }

    unsigned int Line() const { return fRunning == nullptr ? fLine : fRunning->Line(); }

    std::string fFileName;
    std::string fText;

  private:
    // Makes the document the running one for as long as this object lives.
    class TRunning {
      public:
        TRunning(const TDocument*& running, const TDocument& document) : fRunning(running) { fRunning = &document; }
        ~TRunning() { fRunning = nullptr; }
        TRunning(const TRunning&) = delete;
        TRunning& operator=(const TRunning&) = delete;

      private:
        const TDocument*& fRunning;
    };

    TXmlParser& fOwner;
    const TDocument* fRunning = nullptr;
    unsigned int fLine = 0;
};

TXmlParser::TXmlParser() : fImpl(std::make_unique<TImpl>(*this)) {}

TXmlParser::~TXmlParser() = default;

bool TXmlParser::ParseJSSP() {
    return fImpl->Parse([this](TDocument& document) { FeedFile(document, fImpl->fFileName); });
}

bool TXmlParser::ParseCharData() {
    return fImpl->Parse([this](TDocument& document) { document.Feed(fImpl->fText.data(), fImpl->fText.size(), true); });
}

void TXmlParser::SetFileName(const std::string& fileName) { fImpl->fFileName = fileName; }

void TXmlParser::SetCharData(const std::string& text) { fImpl->fText = text; }

unsigned int TXmlParser::GetCurLine() const { return fImpl->Line(); }

} // namespace NQORVYX20
