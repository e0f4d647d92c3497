// Names that are XML 1.0 names and names that are none.
#ifndef NORVASK_TESTS_SUPPORT_NAMES_H
#define NORVASK_TESTS_SUPPORT_NAMES_H

#include <string>
#include <vector>

namespace norvask_test {

inline std::vector<std::string> ValidNames() {
    return {
        "a",
        "_",
        ":",
        "a:b",
        "a:b:c",
        ":a",
        "xmlns:",
        "xml",
        "_x-1.2",
        "a-.9",
        "\xC3\xA9",       // a letter of two bytes
        "\xD0\x96",       // Cyrillic
        "\xE4\xB8\xAD",   // an ideograph
        "a\xCC\x80",      // a combining mark behind a letter
        "a\xC2\xB7",      // the middle dot
        "a\xFF",          // an invalid byte counts as U+FFFD, which is a name character
        "\xFF",           // in front too
        "a\xC3",          // a character cut off
        "a\xED\xA0\x80",  // a surrogate
        std::string(1000, 'n'),
    };
}

// Without NULL, which is refused like the empty name.
inline std::vector<std::string> InvalidNames() {
    return {
        "",
        " ",
        "1a",
        "-a",
        ".a",
        "a b",
        " a",
        "a ",
        "a\n",
        "a\t",
        "a<",
        "a>b",
        "a&b",
        "a/b",
        "a=b",
        "a\"",
        "a'",
        "<a",
        "a\x01",
        "\xCC\x80",          // a combining mark in front
        "\xC2\xB7",          // the middle dot in front
        "a\xC3\x97",         // the multiplication sign
        "\xF0\x90\x80\x80",  // outside the first plane
        "\xEF\xBF\xBE",      // U+FFFE
        std::string(254, 'n') + ' ',
        "%s%n",
    };
}

}  // namespace norvask_test

#endif
