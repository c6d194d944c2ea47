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
    explicit TDocument(TXmlParser& target) : target_(target), expat_(XML_ParserCreate(nullptr)) {
        if (!expat_) {
            throw std::bad_alloc();
        }
        XML_SetUserData(expat_.get(), this);
        XML_SetElementHandler(expat_.get(), OnStartElement, OnEndElement);
        XML_SetProcessingInstructionHandler(expat_.get(), OnProcessingInstruction);
        XML_SetCharacterDataHandler(expat_.get(), OnCharacters);
        XML_SetNotationDeclHandler(expat_.get(), OnNotationDecl);
    }

    /// Takes the next piece. False when the parse is over because something went wrong.
    bool Feed(const char* data, std::size_t size, bool isLast) {
        if (size > kMaxDocumentSize - size_) {
            Fail("the document is larger than " + std::to_string(kMaxDocumentSize >> 20U) + " MiB");
            return false;
        }
        size_ += size;
        if (XML_Parse(expat_.get(), data, static_cast<int>(size), isLast ? 1 : 0) == XML_STATUS_OK) {
            return true;
        }
        if (!HasFailed()) {
            Fail(XML_ErrorString(XML_GetErrorCode(expat_.get())));
        }
        return false;
    }

    void Fail(std::string error) { error_ = std::move(error); }

    unsigned int Line() const { return static_cast<unsigned int>(XML_GetCurrentLineNumber(expat_.get())); }

    const std::exception_ptr& GetException() const { return exception_; }
    const std::optional<std::string>& GetError() const { return error_; }

  private:
    struct TFreeParser {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    bool HasFailed() const { return exception_ || error_; }

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
            self.exception_ = std::current_exception();
        }
        if (self.HasFailed()) {
            XML_StopParser(self.expat_.get(), XML_FALSE);
        }
    }

    void StartElement(const char* name, const char** attributes) {
        if (++depth_ > kMaxDepth) {
            return Fail("elements are nested deeper than " + std::to_string(kMaxDepth));
        }
        std::map<std::string, std::string> map;
        for (const char** attribute = attributes; *attribute != nullptr; attribute += 2) {
            map.emplace(attribute[0], attribute[1]);
        }
        target_.StartElement(name, map);
    }

    void EndElement(const char* name) {
        --depth_;
        target_.EndElement(name);
    }

    static void OnStartElement(void* userData, const char* name, const char** attributes) {
        Call(userData, [=](TDocument& self) { self.StartElement(name, attributes); });
    }

    static void OnEndElement(void* userData, const char* name) {
        Call(userData, [=](TDocument& self) { self.EndElement(name); });
    }

    static void OnProcessingInstruction(void* userData, const char* target, const char* data) {
        Call(userData, [=](TDocument& self) { self.target_.processingInstruction(target, data); });
    }

    static void OnCharacters(void* userData, const char* text, int length) {
        Call(userData, [=](TDocument& self) { self.target_.characters(text, static_cast<unsigned int>(length)); });
    }

    static void OnNotationDecl(void* userData, const char* name, const char* /*base*/, const char* systemId,
                               const char* publicId) {
        Call(userData, [=](TDocument& self) { self.target_.notationDecl(name, OrEmpty(publicId), OrEmpty(systemId)); });
    }

    TXmlParser& target_;
    std::unique_ptr<XML_ParserStruct, TFreeParser> expat_;
    std::size_t size_ = 0;
    unsigned int depth_ = 0;
    std::exception_ptr exception_;
    std::optional<std::string> error_;
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
    explicit TImpl(TXmlParser& owner) : owner_(owner) {}

    template <typename TFeed>
    bool Parse(TFeed feed) {
        TDocument document(owner_);
        {
            const TRunning running(running_, document);
            feed(document);
        }
        line_ = document.Line();
        if (document.GetException()) {
            std::rethrow_exception(document.GetException());
        }
        if (document.GetError()) {
            owner_.FatalError(document.GetError()->c_str());
        }
        return !document.GetError();
    }

    unsigned int Line() const { return running_ == nullptr ? line_ : running_->Line(); }

    std::string fileName;
    std::string text;

  private:
    // Makes the document the running one for as long as this object lives.
    class TRunning {
      public:
        TRunning(const TDocument*& running, const TDocument& document) : running_(running) { running_ = &document; }
        ~TRunning() { running_ = nullptr; }
        TRunning(const TRunning&) = delete;
        TRunning& operator=(const TRunning&) = delete;

      private:
        const TDocument*& running_;
    };

    TXmlParser& owner_;
    const TDocument* running_ = nullptr;
    unsigned int line_ = 0;
};

TXmlParser::TXmlParser() : impl_(std::make_unique<TImpl>(*this)) {}

TXmlParser::~TXmlParser() = default;

bool TXmlParser::ParseJSSP() {
    return impl_->Parse([this](TDocument& document) { FeedFile(document, impl_->fileName); });
}

bool TXmlParser::ParseCharData() {
    return impl_->Parse([this](TDocument& document) { document.Feed(impl_->text.data(), impl_->text.size(), true); });
}

void TXmlParser::SetFileName(const std::string& fileName) { impl_->fileName = fileName; }

void TXmlParser::SetCharData(const std::string& text) { impl_->text = text; }

unsigned int TXmlParser::GetCurLine() const { return impl_->Line(); }

} // namespace NQORVYX20
