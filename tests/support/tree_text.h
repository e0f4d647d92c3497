// A whole tree as one line of text, for comparison with what a document must load to.
//
//   r k="v"("text", a(), #00ff, p:b x="1"(" "))
//
// An element is its name, its attributes and its children in parentheses; a text stands in double
// quotes, a binary node is # and its bytes in hexadecimal. In texts and values a backslash stands
// in front of " and \, control characters are \n, \t, \r or \xNN, everything else is shown as it
// is. What contradicts the rules of a tree (a wrong parent, a leaf with a name) is marked by "!".
#ifndef NORVASK_TESTS_SUPPORT_TREE_TEXT_H
#define NORVASK_TESTS_SUPPORT_TREE_TEXT_H

#include <norvask/norvask.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

namespace norvask_test {

inline std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (c == '\n') {
            quoted += "\\n";
        } else if (c == '\t') {
            quoted += "\\t";
        } else if (c == '\r') {
            quoted += "\\r";
        } else if (byte < 32 || byte == 127) {
            char escape[5];
            std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(byte));
            quoted += escape;
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

inline std::string Hexadecimal(const unsigned char* data, std::size_t length) {
    static const char digits[] = "0123456789abcdef";
    std::string text = "#";
    for (std::size_t i = 0; i < length; ++i) {
        text += digits[data[i] >> 4];
        text += digits[data[i] & 15];
    }
    return text;
}

inline std::string TreeText(norvask::CXMLNode* node) {
    if (!node) return "none";
    if (node->GetNodeType() != norvask::CXMLNode::NODE_ELEMENT) {
        std::string line;
        if (*node->GetTagName()) line += "!named ";
        if (node->GetFirstChild()) line += "!children ";
        if (node->GetAttributes()[0]) line += "!attributes ";
        if (node->GetNodeType() == norvask::CXMLNode::NODE_TEXT)
            return line + Quoted(dynamic_cast<norvask::CXMLTextNode&>(*node).GetText());
        const unsigned char* data = nullptr;
        std::size_t length = 0;
        dynamic_cast<norvask::CXMLBinNode&>(*node).GetData(data, length);
        if (!data != (length == 0)) line += "!data and length disagree ";
        return line + Hexadecimal(data, data ? length : 0);
    }
    std::string line = node->GetTagName();
    for (norvask::CXMLAttribut** attribute = node->GetAttributes(); *attribute; ++attribute) {
        line += std::string(" ") + (*attribute)->GetName() + "=";
        line += Quoted((*attribute)->GetValue());
    }
    line += '(';
    norvask::CXMLNode** children = node->GetChildren();
    if (children[0] != node->GetFirstChild()) line += "!first child ";
    for (std::size_t i = 0; children[i]; ++i) {
        if (i > 0) line += ", ";
        if (children[i]->GetParentNode() != node) line += "!parent ";
        line += TreeText(children[i]);
    }
    return line + ')';
}

inline std::string TreeText(norvask::CXMLDocument& document) {
    norvask::CXMLNode* root = document.GetRoot();
    return (root && root->GetParentNode() ? "!parent " : "") + TreeText(root);
}
template <typename Deleter>
std::string TreeText(const std::unique_ptr<norvask::CXMLDocument, Deleter>& document) {
    return document ? TreeText(*document) : "no document";
}

}  // namespace norvask_test

#endif
