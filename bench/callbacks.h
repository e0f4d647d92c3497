// Documents read as callbacks, without a tree: what a client that does nothing costs, and one that
// reads all that it is given.
//
// The classes have the shape of CParserAlone: the constructor reads the document and throws
// std::runtime_error if the library refuses it.
#ifndef NORVASK_BENCH_CALLBACKS_H
#define NORVASK_BENCH_CALLBACKS_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "documents.h"

namespace norvask_bench {

// Sums of the bytes that a client was given. Blanks count nothing, since the libraries differ in
// how much layout they report; so the same document gives the same sums.
struct SReading {
    std::size_t elements = 0;
    std::uint64_t localNames = 0;  // of elements, at their start and end, and of attributes
    std::uint64_t uris = 0;        // of the same
    std::uint64_t values = 0;
    std::uint64_t text = 0;
    std::uint64_t others = 0;  // what not every library has
};

inline std::uint64_t Weight(char byte) {
    const unsigned char weight = static_cast<unsigned char>(byte);
    return weight > ' ' ? weight : 0;
}

inline std::uint64_t Sum(const char* begin, const char* end) {
    std::uint64_t sum = 0;
    for (; begin != end; ++begin) {
        sum += Weight(*begin);
    }
    return sum;
}

// Of a string that may be NULL.
inline std::uint64_t Sum(const char* text) {
    if (text == nullptr) return 0;
    std::uint64_t sum = 0;
    for (; *text != '\0'; ++text) {
        sum += Weight(*text);
    }
    return sum;
}

// Every callback overridden, and empty.
class CNorvaskIdle {
public:
    explicit CNorvaskIdle(const std::string& text);
};

// Every byte of every string is read.
class CNorvaskReading {
public:
    explicit CNorvaskReading(const std::string& text);
    const SReading& Sums() const { return m_Sums; }

private:
    SReading m_Sums;
};

// The parser alone with the same client, which reads UTF-16 here.
class CParserReading {
public:
    explicit CParserReading(const std::string& text);

private:
    SReading m_Sums;
};

// The sums of what the parser gives its client, as they are in UTF-8: they compare with those of
// the others.
SReading ReadByParserInUtf8(const std::string& text);

// libxml2's SAX2 interface; the same two clients.
class CLibxml2Idle {
public:
    explicit CLibxml2Idle(const std::string& text);
};

class CLibxml2Reading {
public:
    explicit CLibxml2Reading(const std::string& text);
    const SReading& Sums() const { return m_Sums; }

private:
    SReading m_Sums;
};

// Throws std::runtime_error unless all reading clients were given the document's elements and the
// same names, values and text.
void CheckCallbacks(const SDocument& document, std::size_t elements);

}  // namespace norvask_bench

#endif
