// What the tests of the streaming writer share: documents in one call, arrays of attributes,
// Base64.
#ifndef NORVASK_TESTS_SUPPORT_WRITING_H
#define NORVASK_TESTS_SUPPORT_WRITING_H

#include <norvask/norvask.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/tree.h"
#include "support/vocabulary.h"

namespace norvask_test {

// For documents that are too long for a failure message: shows where they part.
inline ::testing::AssertionResult SameBytes(const std::string& got, const std::string& expected) {
    if (got == expected) return ::testing::AssertionSuccess();
    const std::size_t shorter = std::min(got.size(), expected.size());
    std::size_t place = 0;
    while (place < shorter && got[place] == expected[place])
        ++place;
    const std::size_t from = place < 20 ? 0 : place - 20;
    return ::testing::AssertionFailure()
           << "they part at byte " << place << "\n  got      "
           << ::testing::PrintToString(got.substr(from, 60)) << "\n  expected "
           << ::testing::PrintToString(expected.substr(from, 60));
}

// Attributes as a writer takes them.
class CAttributes {
public:
    CAttributes(std::initializer_list<std::pair<const char*, const char*>> attributes) {
        m_Attributes.reserve(attributes.size());
        for (const auto& attribute : attributes)
            m_Attributes.emplace_back(attribute.first, attribute.second);
        Point();
    }
    explicit CAttributes(const std::vector<std::pair<std::string, std::string>>& attributes) {
        m_Attributes.reserve(attributes.size());
        for (const auto& attribute : attributes)
            m_Attributes.emplace_back(attribute.first.c_str(), attribute.second.c_str());
        Point();
    }
    CAttributes(const CAttributes&) = delete;
    CAttributes& operator=(const CAttributes&) = delete;

    // Ended by a NULL.
    CXMLAttribut** Get() { return m_Pointers.data(); }

private:
    void Point() {
        for (CXMLAttribut& attribute : m_Attributes)
            m_Pointers.push_back(&attribute);
        m_Pointers.push_back(nullptr);
    }

    std::vector<CXMLAttribut> m_Attributes;
    std::vector<CXMLAttribut*> m_Pointers;
};

// Base64 in lines of 60 characters, each ended by a line feed, as the parser's encoder breaks them.
inline std::string Base64(const std::string& bytes) {
    static const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    std::size_t inLine = 0;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        unsigned long bits = 0;
        for (std::size_t j = i; j < i + 3; ++j)
            bits = bits << 8 | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0u);
        const std::size_t present = bytes.size() - i < 3 ? bytes.size() - i : 3;
        for (std::size_t digit = 0; digit < 4; ++digit)
            text += digit <= present ? digits[bits >> (18 - 6 * digit) & 63] : '=';
        inLine += 4;
        if (inLine == 60 || i + 3 >= bytes.size()) {
            text += '\n';
            inLine = 0;
        }
    }
    return text;
}

// One call of a writer, and what the calls write behind the declaration of a document of their own.
using Step = std::function<void(CXMLSaxWriter&)>;

template <typename Work>
std::string Written(const Work& work, bool format = false) {
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, format, false);
    work(writer);
    writer.EndDocument();
    return Body(out.str());
}

inline void WriteElement(CXMLSaxWriter& writer, const char* name, const char* text = nullptr) {
    writer.StartElement(name, nullptr);
    if (text) writer.Characters(text);
    writer.EndElement();
}

inline void WriteData(CXMLSaxWriter& writer, const std::string& bytes, bool cdata) {
    writer.Data(reinterpret_cast<const unsigned char*>(bytes.data()),
                static_cast<long>(bytes.size()), cdata);
}

// A file that cannot be opened, and then no document.
inline void ExpectFileRefused(CXMLSaxWriter& writer, const std::string& name) {
    EXPECT_SAVING_ERROR(writer.StartDocument(name.c_str(), true), name);
    EXPECT_NOT_OPEN(writer.EndDocument());
}

}  // namespace norvask_test

#endif
