#pragma once

#include <map>
#include <memory>
#include <string>

namespace NQORVYX20 {

/// A parser of XML documents that calls its derived class while it reads. Set a file or a text, then start the parse
/// that goes with it. One parser serves one document at a time on one thread, and may be used again.
class TXmlParser {
  public:
    TXmlParser();
    virtual ~TXmlParser();
    TXmlParser(const TXmlParser&) = delete;
    TXmlParser& operator=(const TXmlParser&) = delete;

    virtual void StartElement(const char* name, std::map<std::string, std::string>& attributes) = 0;
    virtual void EndElement(const char* name) = 0;
    virtual void processingInstruction(const char* target, const char* data) = 0;

    /// Text between the tags, in pieces as they are read; `length` counts bytes, and the text has no terminating null.
    virtual void characters(const char* text, unsigned int length) = 0;

    /// `publicId` and `systemId` are empty texts where the document has none.
    virtual void notationDecl(const char* name, const char* publicId, const char* systemId) = 0;

    /// Called once when the document cannot be read or is not well-formed. The parse then ends and returns false.
    virtual void FatalError(const char* message) = 0;

    /// Parses the file that was set. False after a FatalError.
    virtual bool ParseJSSP();

    /// Parses the text that was set. False after a FatalError.
    virtual bool ParseCharData();

    void SetFileName(const std::string& fileName);

    /// The parser keeps a copy of the text.
    void SetCharData(const std::string& text);

    /// The line, counted from 1, of the event that is being reported; after a parse, the line where it ended. 0 before
    /// the first parse.
    unsigned int GetCurLine() const;

  private:
    class TImpl;
    std::unique_ptr<TImpl> impl_;
};

} // namespace NQORVYX20
