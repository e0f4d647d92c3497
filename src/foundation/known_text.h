// Internal. SKnownText: a text with its length and what is known of it.
//
// A text is judged once, where it comes in; what was found travels with it, into the tree and out
// again, so that nobody downstream looks at the characters to learn the same. What is not known may
// be true all the same.
#ifndef NORVASK_FOUNDATION_KNOWN_TEXT_H
#define NORVASK_FOUNDATION_KNOWN_TEXT_H

#include <cstddef>
#include <cstring>

namespace norvask {

// What can be known of a text. Well-formed UTF-8, where narrow strings are UTF-8, can be written as
// it stands.
const unsigned int KNOWN_UTF8 = 1;
const unsigned int KNOWN_ASCII = 2;                              // ASCII characters only
const unsigned int KNOWN_NAME = 4;                               // an XML 1.0 name
const unsigned int KNOWN_PLAIN_NAME = KNOWN_NAME | KNOWN_ASCII;  // needs no escaping either

struct SKnownText {
    const char* text;  // terminated, never NULL
    std::size_t length;
    unsigned int known;  // KNOWN_...

    bool Is(unsigned int facts) const noexcept { return (known & facts) == facts; }
    bool IsEmpty() const noexcept { return length == 0; }
};

// A text of which nothing is known but its length. NULL counts as empty.
inline SKnownText Unjudged(const char* text) noexcept {
    return text == nullptr ? SKnownText{"", 0, 0} : SKnownText{text, std::strlen(text), 0};
}

// Looks whether a text is UTF-8 or ASCII. NULL counts as empty.
SKnownText JudgeText(const char* text) noexcept;

// Looks whether a text is a name. NULL counts as empty, which is none. Throws std::bad_alloc.
SKnownText JudgeName(const char* text);

// A text that must be a name. Throws CXMLException (invalid name) for NULL and for what is none,
// and std::bad_alloc.
SKnownText RequireName(const char* text);

// A text that must be one that can be written. NULL counts as empty. Throws the parser's
// transcoding exception for what UTF-8 cannot express, and std::bad_alloc.
SKnownText RequireWritable(const char* text);

}  // namespace norvask

#endif
