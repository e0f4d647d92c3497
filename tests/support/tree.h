// Looking at trees: what the NULL-terminated arrays hold, as one line of text.
#ifndef NORVASK_TESTS_SUPPORT_TREE_H
#define NORVASK_TESTS_SUPPORT_TREE_H

#include <norvask/norvask.h>

#include <cstddef>
#include <sstream>
#include <string>

namespace norvask_test {

// Whether both point to the same place, rather than to equal texts.
inline bool Same(const void* a, const void* b) { return a == b; }

// The number of entries in front of the terminator.
template <typename T>
std::size_t Count(T* const* entries) {
    std::size_t count = 0;
    while (entries[count])
        ++count;
    return count;
}

inline std::string Bytes(norvask::CXMLBinNode& node) {
    const unsigned char* data = nullptr;
    std::size_t length = 0;
    node.GetData(data, length);
    if (!data) return length == 0 ? std::string() : std::string("no data but a length");
    return std::string(reinterpret_cast<const char*>(data), length);
}

inline std::string Described(norvask::CXMLNode& node) {
    if (auto* text = dynamic_cast<norvask::CXMLTextNode*>(&node))
        return std::string("'") + text->GetText() + "'";
    if (auto* binary = dynamic_cast<norvask::CXMLBinNode*>(&node))
        return "[" + Bytes(*binary) + "]";
    return node.GetTagName();
}

// The nodes of an array, separated by blanks: tag names, texts as 'text', bytes as [bytes].
inline std::string Listed(norvask::CXMLNode* const* nodes) {
    std::string line;
    for (; *nodes; ++nodes) {
        if (!line.empty()) line += ' ';
        line += Described(**nodes);
    }
    return line;
}

// The children of a node in the same form.
inline std::string Children(norvask::CXMLNode& node) { return Listed(node.GetChildren()); }

// The attributes of a node as p=1 q=2.
inline std::string Attributes(norvask::CXMLNode& node) {
    std::string line;
    for (norvask::CXMLAttribut** attributes = node.GetAttributes(); *attributes; ++attributes) {
        if (!line.empty()) line += ' ';
        line += std::string((*attributes)->GetName()) + "=" + (*attributes)->GetValue();
    }
    return line;
}

inline void SetBytes(norvask::CXMLBinNode& node, const std::string& bytes) {
    node.SetData(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

// Bytes in which every value occurs, zero included.
inline std::string AllByteValues(std::size_t length = 256) {
    std::string bytes(length, '\0');
    for (std::size_t i = 0; i < length; ++i)
        bytes[i] = static_cast<char>(i % 256);
    return bytes;
}

inline const std::string DECLARATION = "<?xml version=\"1.0\"?>";

// What stands behind the declaration.
inline std::string Body(const std::string& bytes) {
    return bytes.compare(0, DECLARATION.size(), DECLARATION) == 0 ? bytes.substr(DECLARATION.size())
                                                                  : "no declaration: " + bytes;
}

// What saving without formatting writes there.
inline std::string SavedBody(norvask::CXMLDocument& document) {
    std::ostringstream out;
    document.Save(out, false);
    return Body(out.str());
}

}  // namespace norvask_test

#endif
