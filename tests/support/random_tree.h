// Generated trees: what is saved, loaded and written must be the same for all of them. Always the
// same tree for a seed.
#ifndef NORVASK_TESTS_SUPPORT_RANDOM_TREE_H
#define NORVASK_TESTS_SUPPORT_RANDOM_TREE_H

#include <norvask/norvask.h>

#include <random>
#include <string>

#include "support/tree.h"
#include "support/vocabulary.h"

namespace norvask_test {

enum class Content {
    ELEMENTS,  // nothing but elements and attributes
    FAITHFUL,  // everything that a document can carry unchanged
    ANYTHING,  // also what is merged, dropped or normalised on the way
    UNBOUND,   // and prefixes that nothing declares, so that it cannot be loaded
};
enum class Shape {
    PURE,   // an element has only elements in it, or one text, or one binary node
    MIXED,  // anything in any order
};

class CRandomTree {
public:
    CRandomTree(unsigned seed, Content content, Shape shape = Shape::MIXED)
        : m_Random(seed), m_Content(content), m_Shape(shape) {}

    Document Make() {
        Document document = NewDocumentWithRoot(Name());
        Fill(document->GetRoot(), 0);
        return document;
    }

private:
    int Below(int limit) { return static_cast<int>(m_Random() % static_cast<unsigned>(limit)); }
    bool Faithful() const { return m_Content < Content::ANYTHING; }

    const char* Name() {
        static const char* const names[] = {"a",
                                            "item",
                                            "record",
                                            "_1",
                                            "x.y-z",
                                            "a-very-long-name.that-fills-a-register",
                                            "x\xC3\xA9",
                                            "\xC3\xA9l\xC3\xA9ment",
                                            "\xE6\x97\xA5\xE6\x9C\xAC",
                                            "p:x"};
        return names[Below(m_Content == Content::UNBOUND ? 10 : 9)];
    }

    // What is faithful has neither line ends and TABs, nor only blanks, and is not empty.
    std::string Text() {
        static const char* const pieces[] = {
            "word",     " ",  "<",  "&",  "'",    "\"",   "]]>",     "\xC3\xA9", "\xF0\x9F\x98\x80",
            "\xC2\xA0", "\r", "\n", "\t", "\x01", "\xFF", "\xE2\x82"};
        std::string text = Faithful() ? "." : "";
        for (int count = Below(7); count > 0; --count)
            text += pieces[Below(Faithful() ? 10 : 16)];
        if (Below(50) == 0) text += std::string(static_cast<std::size_t>(Below(9000)), 'l');
        return text;
    }
    void AddText(CXMLNode* node) { node->CreateTextChild(Text().c_str()); }
    void AddBytes(CXMLNode* node) {
        std::string bytes(static_cast<std::size_t>(Below(200) + Faithful()), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(Below(256));
        SetBytes(*node->CreateBinChild(), bytes);
    }

    void Fill(CXMLNode* node, int depth) {
        for (int count = Below(4); count > 0; --count)
            node->SetAttribute(Name(), Text().c_str());
        const int only = m_Shape == Shape::PURE && depth > 0 ? Below(5) : 0;
        if (only == 3) AddText(node);
        if (only == 4) AddBytes(node);
        if (only > 2 || depth > 13) return;
        const bool hasElementsOnly = m_Shape == Shape::PURE || m_Content == Content::ELEMENTS;
        bool behindText = false;
        for (int count = Below(7); count > 0 && m_nNodes > 0; --count, --m_nNodes) {
            const int kind = hasElementsOnly ? 0 : Below(4);
            const bool isText = kind == 2 && !(Faithful() && behindText);
            if (isText)
                AddText(node);
            else if (kind == 3)
                AddBytes(node);
            else
                Fill(node->CreateChild(Name(), nullptr), depth + 1);
            behindText = isText;
        }
    }

    std::mt19937 m_Random;
    const Content m_Content;
    const Shape m_Shape;
    int m_nNodes = 200;  // that may still be made
};

}  // namespace norvask_test

#endif
