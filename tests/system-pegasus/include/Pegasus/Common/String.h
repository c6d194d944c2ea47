#pragma once

#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>

#include <iosfwd>

namespace Pegasus {

class CString {
  public:
    CString();
    CString(const CString& other);
    ~CString();
    CString& operator=(const CString& other);
    operator const char*() const;

  private:
    char* bytes_;
};

class String {
  public:
    static const String EMPTY;

    String();
    String(const String& other);
    String(const char* utf8);
    String(const char* utf8, Uint32 bytes);
    ~String();
    String& operator=(const String& other);

    Uint32 size() const;
    CString getCString() const;

    String& append(const String& text);
    String& assign(const String& text);
    void clear();
    void reserveCapacity(Uint32 capacity);
    void remove(Uint32 index, Uint32 length = PEG_NOT_FOUND);
    String subString(Uint32 index, Uint32 length = PEG_NOT_FOUND) const;
    Uint32 find(Char16 character) const;
    Uint32 find(Uint32 from, Char16 character) const;
    Uint32 find(const String& text) const;
    Uint32 reverseFind(Char16 character) const;
    void toLower();
    void toUpper();

    static int compare(const String& a, const String& b);
    static int compare(const String& a, const String& b, Uint32 length);
    static int compareNoCase(const String& a, const String& b);
    static Boolean equal(const String& a, const String& b);
    static Boolean equalNoCase(const String& a, const String& b);

  private:
    void* rep_;
};

bool operator==(const String& a, const String& b);
bool operator!=(const String& a, const String& b);
bool operator<(const String& a, const String& b);
bool operator<=(const String& a, const String& b);
bool operator>(const String& a, const String& b);
bool operator>=(const String& a, const String& b);
String operator+(const String& a, const String& b);
std::ostream& operator<<(std::ostream& out, const String& text);

} // namespace Pegasus
