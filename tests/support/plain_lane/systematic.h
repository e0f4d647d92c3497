// Small documents that hold one of everything, and what is done to them at every place: they are
// cut, bytes are changed and put in, and they are moved so that a buffer's edge lies on each byte.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_SYSTEMATIC_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_SYSTEMATIC_H

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "support/plain_lane/document_pieces.h"
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

// Small document types that declare elements and attributes only, each with a root that meets what
// is declared; some that just miss being plain.
inline const std::vector<std::string>& SmallTypedDocuments() {
    static const std::vector<std::string> DOCUMENTS = {
        "<!DOCTYPE a[]><a/>",
        "<!DOCTYPE a [<!ELEMENT a ANY>]><a>x</a>",
        "<!DOCTYPE a [<!ELEMENT a (b|c)*><!ATTLIST b k (v|w) #REQUIRED>]><a><b k='v'/><c/></a>",
        "<!DOCTYPE a [<!ATTLIST a k CDATA 'v'>]><a><a k='w'/></a>",
        "<!DOCTYPE p:a [\n<!ATTLIST p:a k CDATA \"v w\">\r\n] ><p:a xmlns:p='u'>t</p:a>",
        "<!DOCTYPE a [<!-- ]> --><?p ]> ?><!ATTLIST a k CDATA '>' l CDATA \"'\">]><a l=''/>",
        "<!DOCTYPE a [<!ATTLIST a xmlns CDATA 'u' xmlns:p CDATA 'v'>]><a xmlns='u' xmlns:p='v'/>",
        "<!DOCTYPE \xC3\xA9 [<!ATTLIST \xC3\xA9 k CDATA '\xE2\x82\xAC'>]><\xC3\xA9/>",
        "<!DOCTYPE a [<!ATTLIST a k CDATA 'v'><!ATTLIST a k NMTOKENS ' w '>]><a/>",
        "<!DOCTYPE a [<!ATTLIST a k NMTOKENS 'x'>]><a k='v'><a k=' v'/></a>",
        "<!DOCTYPE a [<!ATTLIST a k CDATA ' \t\r\nv '>]><a l='1' m='2'/>",
    };
    return DOCUMENTS;
}

// A document type has to be small in proportion before the lane looks at it; a comment in front
// makes it so, whatever becomes of what follows.
inline std::string LongComment(std::size_t length) {
    return "<!--" + std::string(length, 'c') + "-->";
}
inline std::string BehindComment(const std::string& typed) {
    return LongComment(20 * typed.size() + 400) + typed;
}

// The comment before the type, behind it and behind the root; and a declaration in front.
template <typename Visit>
void ForEachPlaceOfComment(const std::string& typed, Visit visit) {
    const std::string comment = LongComment(20 * typed.size() + 400);
    const std::size_t root = typed.rfind("]") + typed.substr(typed.rfind("]")).find('>') + 1;
    visit(comment + typed);
    visit(typed.substr(0, root) + comment + typed.substr(root));
    visit(typed + comment);
    visit("<?xml version='1.0' standalone='yes'?>\n" + typed + comment);
}

// Small documents behind a prolog of every size up to this, most larger than a small window.
template <typename Visit>
void ForEachProlog(const std::string& document, std::size_t longest, Visit visit) {
    if (document[0] != '<' || document.compare(0, 5, "<?xml") == 0) return;
    for (std::size_t length = 7; length <= longest; ++length) {
        visit(LongComment(length - 7) + document);
        visit("<?p?>" + std::string(length - 5, '\n') + document);
        visit(std::string(length, ' ') + document);
    }
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

// A tag with each of the attributes and declarations that are special or wrong.
inline std::vector<std::string> TagsOfAllAttributes() {
    std::vector<std::string> tags;
    const auto add = [&](const std::string_view attributes) {
        const std::string tag = std::string("<b ").append(attributes);
        tags.push_back(tag + "/>");
        tags.push_back(tag + " l='w'></b>");
        tags.push_back("<c xmlns:p='u' xmlns:q='u' xmlns='v'>" + tag + "/><b k='v'/></c>");
    };
    for (const std::string_view attributes : pieces::BAD_ATTRIBUTES)
        add(attributes);
    for (const std::string_view attributes : pieces::SPECIAL_ATTRIBUTES)
        add(attributes);
    return tags;
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

// Tokens of sizes at which buffers of the parser and of the lane are full, and a little more.
inline const std::vector<std::size_t>& TokenSizes() {
    static const std::vector<std::size_t> SIZES = [] {
        std::vector<std::size_t> sizes;
        for (const std::size_t around : std::initializer_list<std::size_t>{
                 256, 512, 1000, 1024, 2048, 4096, 8192, 16384, 32768, 65536, 131072}) {
            for (std::size_t size = around - 8; size <= around + 4; ++size)
                sizes.push_back(size);
        }
        return sizes;
    }();
    return SIZES;
}

template <typename Visit>
void ForEachLongToken(std::size_t size, Visit visit) {
    const std::string name(size, 'n');
    const std::string blanks(size, ' ');
    visit("<" + name + "/>");
    visit("<" + name + "></" + name + ">");
    visit("<" + Repeated("\xC3\xA9", size) + "/>");
    visit("<a " + name + "='v'/>");
    visit("<a " + name + "='v' " + name + "='w'/>");
    visit("<p:" + name + " xmlns:p='u'/>");
    visit("<" + name + ":a xmlns:" + name + "='u' " + name + ":k='v'/>");
    visit("<a xmlns='" + name + "' xmlns:p='" + name + "' p:k='v'/>");
    visit("<a k='" + name + "'/>");
    visit("<a k='" + name + "&amp;\r\n" + name + "'/>");
    visit("<a>" + name + "</a>");
    visit("<a>" + name + "<!-- c -->" + name + "&lt;" + name + "</a>");
    visit("<a>" + blanks + "</a>");
    visit("<a>" + Repeated("\r\n", size) + "</a>");
    visit("<a>" + Repeated("]]", size) + "></a>");
    visit("<a>" + Repeated("&amp;", size) + "</a>");
    visit("<a>" + Repeated("\xF0\x9F\x98\x80", size) + "</a>");
    visit("<a><![CDATA[" + name + "]]></a>");
    visit("<a><![CDATA[" + Repeated("]]", size) + "]]></a>");
    visit("<a><![CDATA[" + Repeated("QUJD", size) + "]]></a>");
    visit("<!--" + name + "--><a/>");
    visit("<a><!--" + Repeated("- ", size) + "--></a>");
    visit("<?" + name + "?><a/>");
    visit("<a><?p " + name + "?></a>");
    visit("<a><?p " + Repeated("? ", size) + "?></a>");
    visit("<a" + blanks + "k" + blanks + "=" + blanks + "'v'" + blanks + "/>");
    visit("<a></a" + blanks + ">");
    visit(blanks + "<a/>" + blanks);
    visit("<?xml" + blanks + "version='1.0'?><a/>");
    visit("<?xml version='1.0' encoding='UTF-8'" + blanks + "?><a/>");
    visit("<a>&#" + std::string(size, '0') + "65;</a>");
    visit("<a k='&#x" + std::string(size, '0') + "41;'/>");
}

// Many of one kind: attributes, declarations, levels, children.
template <typename Visit>
void ForEachCount(std::size_t count, Visit visit) {
    std::string attributes;
    std::string declarations;
    std::string prefixed;
    std::string open;
    std::string close;
    std::string children;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        attributes += " n" + number + "='" + number + "'";
        declarations += " xmlns:p" + number + "='u" + number + "'";
        prefixed += " p" + number + ":k='v'";
        open += "<b xmlns:p='u" + number + "'>";
        close += "</b>";
        children += "<p:b" + number + " p:k='" + number + "'/>";
    }
    const std::string half = std::to_string(count / 2);
    visit("<a" + attributes + "/>");
    visit("<a" + attributes + " n" + half + "=''/>");
    visit("<a" + declarations + prefixed + "/>");
    visit("<a" + declarations + prefixed + " xmlns:q='u" + half + "' q:k=''/>");
    visit("<a" + declarations + "><b" + prefixed + "/></a>");
    visit("<a xmlns:p='u'>" + children + "</a>");
    visit("<a xmlns:p='u'>" + children + "<c xmlns:p='v'><p:b0 p:k=''/></c><p:b0/></a>");
    if (count <= 1000) visit("<a>" + open + "<p:c/>" + close + "<d/></a>");
}

// A document behind more names than the lane keeps, by number or by size, so that all of its names
// are beyond the bound. It must begin with its root.
inline std::string BehindManyNames(bool bySize, const std::string& document) {
    static const std::string MANY = [] {
        std::string names;
        for (int i = 0; i < 4200; ++i)
            names += "<m" + std::to_string(i) + "/>";
        return names;
    }();
    static const std::string LARGE = [] {
        std::string names;
        for (int i = 0; i < 70; ++i)
            names += "<m" + std::to_string(i) + std::string(2000, 'm') + "/>";
        return names;
    }();
    return "<w>" + (bySize ? LARGE : MANY) + document + "</w>";
}

}  // namespace norvask_test

#endif
