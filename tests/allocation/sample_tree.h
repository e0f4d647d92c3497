// The tree and the document that the allocation tests work on, and texts that make them allocate.
#ifndef NORVASK_TESTS_ALLOCATION_SAMPLE_TREE_H
#define NORVASK_TESTS_ALLOCATION_SAMPLE_TREE_H

#include <norvask/norvask.h>

#include <cstddef>
#include <string>

#include "support/tree_text.h"
#include "support/vocabulary.h"

namespace norvask_test {

inline const std::string LONG(3000, 'l');
inline const std::string LONGER = "\xC3\xA9\xE2\x82" + std::string(3000, 'm');  // not quite UTF-8

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
    CXMLNode* root = nullptr;
    CXMLNode* target = nullptr;
    CXMLNode* simple = nullptr;
    CXMLTextNode* text = nullptr;
    CXMLBinNode* binary = nullptr;
};

// The document and what stands in it besides the tree.
inline std::string Whole(STree& tree) {
    const char* name = tree.document->GetDTDName();
    const char* path = tree.document->GetDTDPath();
    return std::string(name ? name : "-") + " " + (path ? path : "-") + " " +
           TreeText(tree.document);
}

// A document with everything that a load distinguishes.
inline std::string RichDocument(int items = 60) {
    std::string xml =
        "<!DOCTYPE r [<!ENTITY e 'an entity &#38;amp; more'><!ATTLIST r d CDATA 'default'>]>\n"
        "<r xmlns='urn:default' xmlns:p='urn:p' k='v' p:k='a value that is no short string'>"
        "text<p:a l='1'/>\n\t<b>&e;<![CDATA[AAECAwQF]]><![CDATA[]]><![CDATA[no Base64!]]></b>"
        "<c \xC3\xA9='\xF0\x9F\x98\x80'>  </c>";
    for (int i = 0; i < items; ++i) {
        xml += "<item id='" + std::to_string(i) + "'><name>number " + std::to_string(i) +
               "</name><n" + std::to_string(i) + "/></item>";
    }
    xml += "<d>" + std::string(5000, 'x') + "</d><d e='" + std::string(700, 'y') + "'/>";
    return xml + "<m a='1' b='2' c='3' d='4' e='5' f='6'/><m a='7' b='8' c='9'/></r>";
}

}  // namespace norvask_test

#endif
