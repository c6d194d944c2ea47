#include "tls/PemFile.h"

#include "http/SystemError.h"
#include "tls/OpenSslErrors.h"

#include <Pegasus/Common/Exception.h>

#include <openssl/bio.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>
#include <utility>

namespace Pegasus::tls {

using http::systemError;

PemFile::PemFile(std::string what, std::string path) : what_(std::move(what)), path_(std::move(path)) {
    const std::unique_ptr<std::FILE, Freeing<&std::fclose>> file(std::fopen(path_.c_str(), "re"));
    if (!file) {
        failReading(systemError(errno));
    }
    char part[4096];
    for (std::size_t size = 0; (size = std::fread(part, 1, sizeof part, file.get())) > 0;) {
        content_.append(part, size);
    }
    if (std::ferror(file.get()) != 0) {
        failReading(systemError(errno));
    }
}

BioPtr PemFile::open() const {
    BioPtr content(BIO_new_mem_buf(content_.data(), static_cast<int>(content_.size())));
    return content ? std::move(content) : throw std::bad_alloc();
}

void PemFile::failReading(const std::string& text) const {
    throw SSLException(String("cannot read " + this->text() + ": " + text));
}

int PemFile::refusePassphrase(char* /*buffer*/, int /*size*/, int /*isForWriting*/, void* isAsked) {
    if (isAsked != nullptr) {
        *static_cast<bool*>(isAsked) = true;
    }
    return -1;
}

} // namespace Pegasus::tls
