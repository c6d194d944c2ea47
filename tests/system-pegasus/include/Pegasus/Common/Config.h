#pragma once

// As an installed OpenPegasus, which does not compile without knowing the platform.
#if !defined(PEGASUS_PLATFORM_LINUX_X86_64_GNU) && !defined(PEGASUS_PLATFORM_LINUX_AARCH64_GNU)
#error "a PEGASUS_PLATFORM_... macro has to be defined"
#endif

namespace Pegasus {

typedef bool Boolean;
typedef unsigned char Uint8;
typedef signed char Sint8;
typedef unsigned short Uint16;
typedef short Sint16;
typedef unsigned int Uint32;
typedef int Sint32;
typedef unsigned long long Uint64;
typedef long long Sint64;
typedef float Real32;
typedef double Real64;

const Uint32 PEG_NOT_FOUND = ~Uint32(0);

} // namespace Pegasus
