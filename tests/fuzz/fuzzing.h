// What the fuzz targets have in common: which documents they load, and how they complain.
#ifndef NORVASK_TESTS_FUZZ_FUZZING_H
#define NORVASK_TESTS_FUZZ_FUZZING_H

#include <norvask/norvask.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace norvask_fuzz {

// Ends the program, which makes the input a finding.
inline void Fail(const char* what, const std::string& one, const std::string& other) {
    std::fprintf(stderr, "%s:\n[%s]\n[%s]\n", what, one.c_str(), other.c_str());
    std::abort();
}
inline void RequireSame(const char* what, const std::string& one, const std::string& other) {
    if (one != other) Fail(what, one, other);
}
inline void Require(bool holds, const char* what) {
    if (!holds) Fail(what, "", "");
}

inline std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

// Documents that the parser must not be given here:
// - such as name files and addresses, because it would read them;
// - such as expand a few bytes to very many. It does that without a limit, so a fuzzer finds
//   nothing else: a document of 1 KiB of nested entities needs hours. With two entities and thirty
//   references a document grows to at most some hundred times its size.
// - in an encoding in which the markup of these two could hide.
inline bool IsRefused(const std::uint8_t* data, std::size_t size) {
    std::string text;  // UTF-16 and UTF-32 become readable without their zeros
    std::copy_if(data, data + size, std::back_inserter(text),
                 [](std::uint8_t byte) { return byte != 0; });
    if (text.empty() || text.find("SYSTEM") != std::string::npos ||
        text.find("PUBLIC") != std::string::npos || text.find("ocation") != std::string::npos)
        return true;
    if (CountOf(text, "<!ENTITY") > 2 || CountOf(text, "&") > 30 || CountOf(text, "%") > 4)
        return true;
    if (text[0] == '\x4C') return true;  // the "<" of EBCDIC
    static const char* const encodings[] = {"\"UTF-8\"", "\"UTF-16\"", "\"ISO-8859-1\"", "'utf-8'"};
    std::size_t known = 0;
    for (const char* encoding : encodings)
        known += CountOf(text, std::string("encoding=") + encoding);
    return CountOf(text, "encoding") != known;
}

struct SDelete {
    void operator()(norvask::CXMLDocument* document) const { document->Delete(); }
};
using Document = std::unique_ptr<norvask::CXMLDocument, SDelete>;

// From a block of exactly the document's size, so that a read behind its end is found. NULL when
// the document does not load.
inline Document Load(const std::string& xml, bool keepPrefixes, bool validate) {
    std::vector<unsigned char> bytes(xml.begin(), xml.end());
    try {
        return Document(norvask::CXMLManager::GetInstance().LoadDocument(
            bytes.data(), static_cast<unsigned int>(bytes.size()), validate, false, nullptr, false,
            keepPrefixes));
    } catch (norvask::CXMLException& e) {
        Require(*e.GetMessage() != '\0', "an error without a message");
        return nullptr;
    }
}

// What saving writes, or the message with which it ends.
inline std::string Saved(norvask::CXMLDocument& document, bool format) {
    std::ostringstream out;
    try {
        document.Save(out, format);
    } catch (norvask::CXMLException& e) {
        return std::string("error: ") + e.GetMessage();
    }
    return out.str();
}
inline bool IsError(const std::string& saved) { return saved.compare(0, 7, "error: ") == 0; }

}  // namespace norvask_fuzz

#endif
