#include "output/DescriptorBuffer.h"

#include <unistd.h>

#include <cerrno>

namespace cimhttp {

DescriptorBuffer::DescriptorBuffer(int descriptor) : descriptor_(descriptor) {
    setp(block_.data(), block_.data() + block_.size());
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type character) {
    if (sync() != 0) {
        return traits_type::eof();
    }
    return traits_type::eq_int_type(character, traits_type::eof()) ? traits_type::not_eof(character)
                                                                   : sputc(traits_type::to_char_type(character));
}

int DescriptorBuffer::sync() {
    for (const char* begin = pbase(); begin != pptr() && error_ == 0;) {
        const ssize_t size = ::write(descriptor_, begin, static_cast<std::size_t>(pptr() - begin));
        if (size >= 0) {
            begin += size;
        } else if (errno != EINTR) {
            error_ = errno;
        }
    }
    setp(block_.data(), block_.data() + block_.size());
    return error_ == 0 ? 0 : -1;
}

} // namespace cimhttp
