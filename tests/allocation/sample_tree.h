// The tree that the allocation tests work on, and texts that make it allocate.
#ifndef NORVASK_TESTS_ALLOCATION_SAMPLE_TREE_H
#define NORVASK_TESTS_ALLOCATION_SAMPLE_TREE_H

#include <norvask/norvask.h>

#include <cstddef>
#include <string>

#include "support/tree_text.h"
#include "support/vocabulary.h"

namespace norvask_test {

inline const std::string kLong(3000, 'l');
inline const std::string kLonger = "\xC3\xA9\xE2\x82" + std::string(3000, 'm');  // not quite UTF-8

// The tree that operations run on: an element "target" with attributes and children behind `filled`
// others, and a text and a binary node to be changed.
struct STree {
    explicit STree(int filled) : document(NewDocument("r", "r.dtd")) {
        root = document->CreateRoot("r");
        root->CreateTextChild(std::string(static_cast<std::size_t>(filled % 4 * 16), '.').c_str());
        for (int i = 0; i < filled / 4; ++i)
            root->CreateChild("filling", nullptr)->SetAttribute("k", "v");
        target = root->CreateChild("target", nullptr);
        target->SetAttribute("a", "1");
        target->SetAttribute("b", "2");
        target->CreateChild("c", nullptr)->SetAttribute("k", "v");
        text = target->CreateTextChild("text");
        binary = target->CreateBinChild();
        binary->SetData(reinterpret_cast<const unsigned char*>("data"), 4);
        simple = target->CreateChild("simple", nullptr);
        simple->CreateTextChild("simple text");
    }

    Document document;
    norvask::CXMLNode* root = nullptr;
    norvask::CXMLNode* target = nullptr;
    norvask::CXMLNode* simple = nullptr;
    norvask::CXMLTextNode* text = nullptr;
    norvask::CXMLBinNode* binary = nullptr;
};

// The document and what stands in it besides the tree.
inline std::string Whole(STree& tree) {
    const char* name = tree.document->GetDTDName();
    const char* path = tree.document->GetDTDPath();
    return std::string(name ? name : "-") + " " + (path ? path : "-") + " " +
           TreeText(tree.document);
}

}  // namespace norvask_test

#endif
