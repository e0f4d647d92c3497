// A load as bytes that can be compared: what callbacks are told, and what a tree holds.
//
// Both are for very many small documents. They append to a block that is used again, and ask for no
// memory once it is large enough. Each item is a letter and strings with a zero byte behind each.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_EVENT_LOG_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_EVENT_LOG_H

#include <norvask/norvask.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include "foundation/known_text.h"
#include "tree/memory/tree_string.h"

namespace norvask_test {

using namespace norvask;

// A string that is not there reads as this one, which no document of XML 1.0 contains.
inline void AppendString(std::string& bytes, const char* text) {
    if (text == nullptr) text = "\x01NULL";
    bytes.append(text, std::strlen(text) + 1);
}

// A string of a tree, and "!" where what the tree knows of it is not true. Callers may never see
// that, but what relies on it would go wrong.
inline void AppendTreeString(std::string& bytes, const char* text) {
    AppendString(bytes, text);
    const SKnownText known = CTreeString::At(text).Known();
    if (known.length != std::strlen(text)) bytes += "!length";
    const unsigned int judged = JudgeText(text).known;
    if ((known.known & (KNOWN_ASCII | KNOWN_UTF8) & ~judged) != 0) bytes += "!known";
    if (known.Is(KNOWN_NAME) && !JudgeName(text).Is(KNOWN_NAME)) bytes += "!name";
}

// Every event with all of its strings.
class CEventLog : public CXMLSaxHandler {
public:
    void Clear() noexcept {
        m_Bytes.clear();
        m_nEvents = 0;
    }
    const std::string& Bytes() const noexcept { return m_Bytes; }
    std::size_t Events() const noexcept { return m_nEvents; }
    // Takes the bytes, and leaves none.
    std::string Take() {
        std::string taken = m_Bytes;
        Clear();
        return taken;
    }

    void StartDocument() override { Begin('['); }
    void EndDocument() override { Begin(']'); }
    void StartElement(const char* uri, const char* localName, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        Begin('<');
        Append(uri, localName, qName);
        if (attributes == nullptr) {
            m_Bytes += '!';
            return;
        }
        for (; *attributes != nullptr; ++attributes) {
            CXMLSaxAttribut& attribute = **attributes;
            m_Bytes += '@';
            Append(attribute.GetUri(), attribute.GetLocalName(), attribute.GetQName());
            AppendString(m_Bytes, attribute.GetValue());
        }
    }
    void EndElement(const char* uri, const char* localName, const char* qName) override {
        Begin('>');
        Append(uri, localName, qName);
    }
    void Characters(const char* text) override {
        Begin('T');
        AppendString(m_Bytes, text);
    }
    void StartCDATA() override { Begin('{'); }
    void EndCDATA() override { Begin('}'); }
    void StartDTD(const char* name, const char* publicId, const char* systemId) override {
        Begin('D');
        Append(name, publicId, systemId);
    }
    void StartNamespace(const char* prefix, const char* uri) override {
        Begin('N');
        AppendString(m_Bytes, prefix);
        AppendString(m_Bytes, uri);
    }
    void EndNamespace(const char* prefix) override {
        Begin('n');
        AppendString(m_Bytes, prefix);
    }

protected:
    // Called in front of each event.
    virtual void Meet(std::size_t) {}
    // Adds something else to what is told.
    void Note(const std::string& text) {
        m_Bytes += '#';
        m_Bytes += text;
        m_Bytes += '\0';
    }

private:
    void Begin(char kind) {
        Meet(m_nEvents++);
        m_Bytes += kind;
    }
    void Append(const char* first, const char* second, const char* third) {
        AppendString(m_Bytes, first);
        AppendString(m_Bytes, second);
        AppendString(m_Bytes, third);
    }

    std::string m_Bytes;
    std::size_t m_nEvents = 0;
};

// A stream buffer that appends to a string.
class CAppendingBuffer : public std::streambuf {
public:
    explicit CAppendingBuffer(std::string& bytes) noexcept : m_Bytes(bytes) {}

protected:
    int_type overflow(int_type c) override {
        if (c != traits_type::eof()) m_Bytes += static_cast<char>(c);
        return c;
    }
    std::streamsize xsputn(const char* text, std::streamsize length) override {
        m_Bytes.append(text, static_cast<std::size_t>(length));
        return length;
    }

private:
    std::string& m_Bytes;
};

// Appends a whole tree: its shape and its strings, what asking by name finds, and what saving
// writes, which also depends on what the tree knows of its strings. Does not recurse.
class CTreeDump {
public:
    static void Append(std::string& bytes, CXMLDocument* document) {
        if (document == nullptr) {
            bytes += "no document";
            return;
        }
        AppendString(bytes, document->GetDTDName());
        AppendString(bytes, document->GetDTDPath());
        AppendNodes(bytes, document->GetRoot());
        bytes += '\n';
        CAppendingBuffer buffer(bytes);
        std::ostream out(&buffer);
        try {
            document->Save(out, false);
        } catch (CXMLException& e) {
            bytes += "saving: ";
            AppendString(bytes, e.GetMessage());
        }
    }

private:
    static void AppendNodes(std::string& bytes, CXMLNode* root) {
        if (root == nullptr) {
            bytes += "no root";
            return;
        }
        if (root->GetParentNode() != nullptr) bytes += "!parent";
        // The children that are still to come, of each open element.
        thread_local std::vector<CXMLNode**> open;
        open.clear();
        AppendNode(bytes, root);
        open.push_back(root->GetChildren());
        while (!open.empty()) {
            CXMLNode* const node = *open.back();
            if (node == nullptr) {
                open.pop_back();
                bytes += '>';
                continue;
            }
            ++open.back();
            AppendNode(bytes, node);
            if (node->GetNodeType() == CXMLNode::NODE_ELEMENT) {
                CXMLNode** const children = node->GetChildren();
                if (*children != nullptr && (*children)->GetParentNode() != node)
                    bytes += "!parent";
                open.push_back(children);
            }
        }
    }
    static void AppendNode(std::string& bytes, CXMLNode* node) {
        switch (node->GetNodeType()) {
            case CXMLNode::NODE_TEXT:
                bytes += 'T';
                AppendTreeString(bytes, static_cast<CXMLTextNode*>(node)->GetText());
                return;
            case CXMLNode::NODE_BINARY: {
                const unsigned char* data = nullptr;
                std::size_t length = 0;
                static_cast<CXMLBinNode*>(node)->GetData(data, length);
                bytes += 'B';
                bytes += std::to_string(length);
                bytes += ':';
                bytes.append(reinterpret_cast<const char*>(data), length);
                return;
            }
            default:
                break;
        }
        bytes += '<';
        AppendTreeString(bytes, node->GetTagName());
        for (CXMLAttribut** at = node->GetAttributes(); *at != nullptr; ++at) {
            bytes += '@';
            AppendTreeString(bytes, (*at)->GetName());
            AppendTreeString(bytes, (*at)->GetValue());
            AppendString(bytes, node->GetAttributeValue((*at)->GetName()));
        }
    }
};

// The bytes for people: control characters, zeros among them, as escapes.
inline std::string Readable(const std::string& bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == 0) {
            text += '|';
        } else if (byte < 32 || byte == 127) {
            char escape[5];
            std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(byte));
            text += escape;
        } else {
            text += c;
        }
    }
    return text;
}

}  // namespace norvask_test

#endif
