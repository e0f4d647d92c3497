/// @file
/// @class norvask::CWideCharToString
/// Turns the parser's UTF-16 strings into the narrow strings that callers see.
///
/// **Role:** the manager holds one converter and asks it for every name, value, text and parser
/// message of a load. Derive from this class, override Convert and install the object with
/// CXMLManager::SetWideCharToStringConverter to receive another encoding than UTF-8.
///
/// **Owner:** the application owns the converters that it installs and keeps them alive while they
/// are installed. Threads: one installed converter serves all loads of the process, so an override
/// that keeps state must guard it if loads run on several threads.
///
/// Narrow strings are in the encoding of the parser's local transcoder. In Debian's build of the
/// parser that is UTF-8 under every locale, in both directions. Invalid input is not refused there:
///
/// - an unpaired UTF-16 surrogate becomes U+FFFD (EF BF BD);
/// - each invalid UTF-8 sequence becomes U+FFFD when a narrow string is written or checked.
#ifndef NORVASK_WIDE_CHAR_TO_STRING_H
#define NORVASK_WIDE_CHAR_TO_STRING_H

#include <cstddef>

#include "norvask/export.h"

namespace norvask {

// Deliberate: the destructor is not virtual, and a client need not hear of it.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class NORVASK_API CWideCharToString {
public:
    /// Converters hold nothing, so copies are alike.
    CWideCharToString() noexcept;
    CWideCharToString(const CWideCharToString& other) noexcept;
    CWideCharToString(CWideCharToString&& other) noexcept;

    /// Converters hold nothing, so nothing changes.
    CWideCharToString& operator=(const CWideCharToString& other) noexcept;
    CWideCharToString& operator=(CWideCharToString&& other) noexcept;

    /// Destroys the object.
    ~CWideCharToString() = default;

    /// Converts a zero-terminated UTF-16 string to a new narrow string.
    /// `source`: read up to its terminator; NULL gives NULL. The library never passes NULL.
    /// `length`: the number of units before the terminator, given for the convenience of overrides
    /// and ignored here.
    /// The result belongs to the caller. Release it with delete[], which matches AllocString; an
    /// override must allocate its result with AllocString or new char[]. An override may return
    /// NULL, which counts as an empty name, value or text.
    /// Throws std::bad_alloc; an exception of an override ends the load and passes to its caller.
    ///
    /// Deliberate: char16_t, not wchar_t. The parser's strings are UTF-16 on every platform, while
    /// wchar_t has 32 bits on Linux.
    virtual char* Convert(const char16_t* source, std::size_t length);

protected:
    /// A block of `bytes` bytes, released with FreeString or delete[]. Throws std::bad_alloc.
    char* AllocString(std::size_t bytes);

    /// Releases a block of AllocString. NULL is allowed.
    void FreeString(char* s);
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace norvask

#endif
