#pragma once

#include "host/ILogger.h"
#include "host/TXmlParser.h"

#include <map>
#include <string>
#include <vector>

/// Reads the document in which a host names a remote server and the classes that it wants from it:
///
///     <vyx version="1">
///         <network address="server.example"/>
///         <network user="operator"/>
///         <network pass="secret"/>
///         <network ssl="true"/>
///         <class name="CIM_ComputerSystem"/>
///     </vyx>
///
/// Each `network` element gives one setting. Element names are taken without regard to case, attribute names exactly.
///
/// Set a file or a text and parse it as with any NQORVYX20::TXmlParser, then ask for the results; those of several
/// documents add up. What is wrong with the structure of a document goes to the core logger, one line each with its
/// number, and reading goes on; so a document may be parsed with success and yet leave lines in the log.
class TCimHTTPRequestedClassParser : public NQORVYX20::TXmlParser {
  public:
    TCimHTTPRequestedClassParser();
    ~TCimHTTPRequestedClassParser() override;

    void StartElement(const char* name, std::map<std::string, std::string>& attributes) override;
    void EndElement(const char* name) override;

    /// Instructions, text and notations mean nothing here.
    void processingInstruction(const char* target, const char* data) override;
    void characters(const char* text, unsigned int length) override;
    void notationDecl(const char* name, const char* publicId, const char* systemId) override;

    /// Logs an error with the line that is being read. Does not throw, and does not stop the parse.
    void FatalError(const char* message) override;

    // A host that was built on its own links these operations by their signatures: they are not const, and the class is
    // in no namespace.

    /// The settings: the text of "address", "pass", "ssl" and "user", as far as the documents give them. The first one
    /// of a name counts.
    std::map<std::string, std::string> GetRequestedNetworkData();

    /// The names of the classes in the order of the documents, repeated where they repeat them.
    std::vector<std::string> GetRequestedClassData();

    /// Logs a message with the line that is being read.
    void DebugOutput(NQORVYX20::ILogger::EVYXLogSeverity severity, std::string message);

  private:
    void StartRoot(const std::map<std::string, std::string>& attributes);
    void StartNetwork(const std::map<std::string, std::string>& attributes);
    void StartClass(const std::map<std::string, std::string>& attributes);
    void EndNetwork();

    std::map<std::string, std::string> networkData_;
    std::vector<std::string> classNames_;
    std::string element_;      // in lower case
    std::string settingName_;  // of the open network element
    std::string settingValue_; // of the open network element, which counts as closed while this is empty
    std::string className_;    // of the open class element
};
