// Small documents that hold one of everything, and what is done to them at every place: they are
// cut, bytes are changed and put in, and they are moved so that a buffer's edge lies on each byte.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_SYSTEMATIC_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_SYSTEMATIC_H

#include <cstddef>
#include <string>
#include <vector>

#include "support/plain_lane/mutator.h"

namespace norvask_test {

inline const std::vector<std::string>& SmallDocuments() {
    static const std::vector<std::string> DOCUMENTS = {
        "<a/>",
        "<a></a>",
        "<a>text</a>\n",
        "\xEF\xBB\xBF<a k='v'/>",
        "<?xml version='1.0'?><a/>",
        "<?xml version=\"1.0\" encoding=\"utf-8\" standalone='yes' ?>\r\n<a/>",
        "<!-- c --><?p i?><a/><!-- d --><?q?>",
        "<a>x<!-- c - d -->y</a>",
        "<a><?p data ? ?></a>",
        "<a b='1' c = \"2\"\n d\t=\r'3'/>",
        "<a k=' \t\n\r\r\n&#9;&#10;&#13;&#32; v '/>",
        "<a k='&lt;&gt;&amp;&quot;&apos;&#65;&#x42;'/>",
        "<a>&lt;&gt;&amp;&quot;&apos;&#65;&#x42;</a>",
        "<a>\r\n\r\r\n\n \t</a>",
        "<a> <b> </b>\n<c>\t</c> </a>",
        "<a>x ]] ] ]&gt; ]]&gt; ></a>",
        "<a><![CDATA[QUJD]]></a>",
        "<a>x<![CDATA[ ]] ]> <b>&amp; ]]]>y</a>",
        "<a><![CDATA[]]><![CDATA[\r\nA\r]]></a>",
        "<a xmlns='u'><b xmlns=''/><c/></a>",
        "<p:a xmlns:p='u'><p:b p:k='v' k='w'/></p:a>",
        "<p:a p:k='1' q:k='2' xmlns:q='v' xmlns:p='u'/>",
        "<a xmlns:p='u'><p:b xmlns:p='v'><p:c/></p:b><p:d/></a>",
        "<a xml:lang='en' xml:space='preserve'/>",
        "<a xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:nil='1'/>",
        "<\xC3\xA9 \xE4\xB8\xAD='\xF0\x9F\x98\x80'>\xE2\x82\xAC\xC2\xA0</\xC3\xA9>",
        "<a>&#xE9;&#x20AC;&#x1F600;&#xD7FF;&#xE000;</a>",
        "<a-b.c_d1 _='1'/>",
        "<a><b><c><d/></c></b></a>",
        "<aa><aaa/><aa></aa></aa>",
        "<a>text<b/>tail<b></b> end</a>",
        "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>",
    };
    return DOCUMENTS;
}

// Every beginning.
template <typename Visit>
void ForEachCut(const std::string& document, Visit visit) {
    for (std::size_t length = 1; length < document.size(); ++length)
        visit(document.substr(0, length));
}

// Each byte replaced by each of the telling ones, and each of these put in at every place.
template <typename Visit>
void ForEachByte(const std::string& document, Visit visit) {
    for (std::size_t place = 0; place <= document.size(); ++place) {
        for (const unsigned char byte : TELLING_BYTES) {
            std::string changed = document;
            if (place < document.size()) {
                changed[place] = static_cast<char>(byte);
                visit(changed);
                changed = document;
            }
            changed.insert(place, 1, static_cast<char>(byte));
            visit(changed);
        }
    }
}

// Each byte taken out, and each two that are neighbours in the other order.
template <typename Visit>
void ForEachGap(const std::string& document, Visit visit) {
    for (std::size_t place = 0; place < document.size(); ++place) {
        std::string changed = document;
        changed.erase(place, 1);
        visit(changed);
        if (place + 1 < document.size()) {
            changed = document;
            std::swap(changed[place], changed[place + 1]);
            visit(changed);
        }
    }
}

// What may lie on a buffer's edge, each inside of an element.
inline const std::vector<std::string>& Constructs() {
    static const std::vector<std::string> CONSTRUCTS = {
        "text",
        "\r\n",
        "\r",
        "\n",
        "\r\r\n",
        "a\r\nb",
        " ",
        "&amp;",
        "x&lt;y",
        "&#65;",
        "&#x1F600;",
        "\xC3\xA9",
        "\xE2\x82\xAC",
        "\xF0\x9F\x98\x80",
        "\xF0\x9F\x98\x80\xF0\x9F\x98\x80",
        "x]]&gt;",
        "]]",
        "]] >",
        "<b/>",
        "<b></b>",
        "<bcdef></bcdef>",
        "<b k='v'/>",
        "<b k='\r\n'/>",
        "<b k='\r'/>",
        "<b k='&#10;\n'/>",
        "<b k='\xF0\x9F\x98\x80'/>",
        "<b key1=\"value\" key2='value' key3 = 'value'/>",
        "<p:b xmlns:p='u' p:k='v'></p:b>",
        "<b xmlns='u'><c/></b>",
        "<\xC3\xA9\xE4\xB8\xAD/>",
        "<!-- comment -->",
        "<!--\r\n-->",
        "<?target data?>",
        "<?target\r\ndata?>",
        "<![CDATA[QUJD]]>",
        "<![CDATA[x]]]]>",
        "<![CDATA[\r\n]]>",
        "<![CDATA[\r]]>",
        "<![CDATA[\xF0\x9F\x98\x80]]>",
        // wrong
        "]]>",
        "<!-- -- -->",
        "&",
        "&#0;",
        "<b k='1' k='2'/>",
        "<q:b/>",
        "</b>",
        "\x01",
        "\xC3",
        "\xE2\x82",
        "\xED\xA0\x80",
        "\xEF\xBF\xBF",
        "\xF0\x9F\x98(",
        "\xFF",
        "<![CDATA[\xFF]]>",
        "<b k='\xC3'/>",
    };
    return CONSTRUCTS;
}

// A document in which a construct begins so many bytes behind the start. What is in front of it is
// of one of these kinds; where it is of characters of several bytes, characters and bytes differ.
enum EPadding {
    PAD_TEXT,
    PAD_COMMENT,
    PAD_BLANKS,
    PAD_LINES,
    PAD_VALUE,
    PAD_SECTION,
    PAD_TWO_BYTES,
    PAD_THREE_BYTES,
    PAD_FOUR_BYTES,
    PAD_ELEMENTS,
    PAD_ATTRIBUTES,
    PAD_KINDS
};

inline std::string Repeated(const char* unit, std::size_t length) {
    const std::string one(unit);
    std::string text(length % one.size(), 'x');
    text.reserve(length);
    while (text.size() < length)
        text += one;
    return text;
}

inline std::string PaddedDocument(EPadding padding, std::size_t before,
                                  const std::string& construct) {
    // The bytes around the padding are part of what is in front.
    const auto fill = [&](const std::string& open, const char* unit, const std::string& close) {
        const std::size_t around = open.size() + close.size();
        return open + Repeated(unit, before > around ? before - around : 0) + close;
    };
    std::string document;
    switch (padding) {
        case PAD_TEXT:
            document = fill("<a>", "t", "");
            break;
        case PAD_COMMENT:
            document = fill("<a><!--", "c", "-->");
            break;
        case PAD_BLANKS:
            document = fill("<a", " ", ">");
            document.replace(2, 1, " ");
            for (std::size_t i = 2; document[i] == 'x'; ++i)
                document[i] = ' ';
            break;
        case PAD_LINES:
            document = fill("<a>", "\r\n", "");
            break;
        case PAD_VALUE:
            document = fill("<a k='", "v", "'>");
            break;
        case PAD_SECTION:
            document = fill("<a><![CDATA[", "s", "]]>");
            break;
        case PAD_TWO_BYTES:
            document = fill("<a>", "\xC3\xA9", "");
            break;
        case PAD_THREE_BYTES:
            document = fill("<a>", "\xE2\x82\xAC", "");
            break;
        case PAD_FOUR_BYTES:
            document = fill("<a>", "\xF0\x9F\x98\x80", "");
            break;
        case PAD_ELEMENTS:
            document = fill("<a>", "<b k='v'>t</b>", "");
            break;
        default: {
            document = "<a";
            for (std::size_t i = 0; document.size() + 24 < before; ++i)
                document += " n" + std::to_string(i) + "='v'";
            document.append(before > document.size() ? before - document.size() - 1 : 1, ' ');
            document += '>';
            break;
        }
    }
    return document + construct + "</a>";
}

// The parser decodes 16384 characters at once, from 49152 bytes that it reads at once.
inline const std::vector<std::size_t>& ParsersEdges() {
    static const std::vector<std::size_t> EDGES = {16384, 32768, 49152, 65536, 98304};
    return EDGES;
}

}  // namespace norvask_test

#endif
