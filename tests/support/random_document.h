// Generated documents: well-formed, with everything that a load distinguishes. Always the same
// document for a seed.
#ifndef NORVASK_TESTS_SUPPORT_RANDOM_DOCUMENT_H
#define NORVASK_TESTS_SUPPORT_RANDOM_DOCUMENT_H

#include <map>
#include <string>
#include <vector>

#include "support/names.h"
#include "support/random_text.h"

namespace norvask_test {

class CRandomDocument {
public:
    explicit CRandomDocument(unsigned seed) : m_Random(seed) {
        for (const std::string& name : ValidNames()) {
            // Those that are names in UTF-8 too, without a prefix.
            if (name.find(':') == std::string::npos && name.find('\xFF') == std::string::npos &&
                name.substr(0, 3) != "xml" && name != "a\xC3" && name != "a\xED\xA0\x80")
                m_Names.push_back(name);
        }
    }

    std::string Xml() {
        m_bHasEntity = m_Random.Number(3) == 0;
        m_Xml = One({"", "<?xml version='1.0'?>\n", "<?xml version='1.0'?>"});
        m_Xml += m_bHasEntity
                     ? "<!DOCTYPE r [<!ENTITY e 'entity \xC3\xA9'>]>"
                     : One({"", "\n", "<!-- c --> ", "<!DOCTYPE r>", "<!DOCTYPE r [ ]>\n"});
        m_Xml += One({"<r", "<r xmlns='urn:d'"}) + " xmlns:p='urn:p' xmlns:q='urn:q'>";
        Content(0);
        m_Xml += "</r>";
        m_Xml += One({"", "\n", " <?p i?>\n"});
        return m_Xml;
    }

private:
    std::string One(const std::vector<std::string>& choices) {
        return choices[m_Random.Number(choices.size())];
    }
    std::string Name() { return m_Names[m_Random.Number(m_Names.size())]; }

    std::string Text() {
        std::string text;
        for (std::size_t n = m_Random.Number(6); n > 0; --n)
            text += One({"text",
                         " ",
                         "\n",
                         "\t",
                         "\r\n",
                         "&amp;",
                         "&lt;",
                         "&#10;",
                         "&#32;",
                         "\xC3\xA9",
                         "&#x20AC;",
                         "&#x1F600;",
                         "\xF0\x9F\x98\x80",
                         "]] ",
                         ">",
                         "<!-- c -->",
                         "<?p i?>",
                         "\xC2\xA0",
                         m_bHasEntity ? "&e;" : "no entity",
                         std::string(m_Random.Number(700), 'x')});
        return text;
    }
    std::string Value() {
        std::string value;
        for (std::size_t n = m_Random.Number(4); n > 0; --n)
            value += One({"v", " ", "\n", "&amp;", "&#9;", "&#x1F600;", "\xC3\xA9", "\"", "&apos;",
                          "\xF0\x9F\x98\x80", std::string(m_Random.Number(300), 'y')});
        return value;
    }
    std::string Section() {
        return "<![CDATA[" +
               One({"", " ", "\n", "QQ==", "AAECAw==", "\nQUJD\n", "text", "a<b&amp;", "]] ",
                    "\xC3\xA9", "QQ=", "AAAA \xE2\x82\xAC",
                    std::string(4 * m_Random.Number(200), 'B')}) +
               "]]>";
    }

    void Element(int depth) {
        const std::string name = One({"", "", "p:", "q:"}) + Name();
        m_Xml += "<" + name;
        m_Xml += One({"", "", "", " xmlns='urn:d'", " xmlns=''", " xmlns:p='urn:other'",
                      " xmlns:s='1' xmlns:t='2'"});
        std::map<std::string, bool> used;
        for (std::size_t n = m_Random.Number(4); n > 0; --n) {
            const std::string attribute = Name();
            if (used.emplace(attribute, true).second)
                m_Xml += " " + One({"", "p:", "q:"}) + attribute + "='" + Value() + "'";
        }
        if (m_Random.Number(4) == 0) {
            m_Xml += "/>";
            return;
        }
        m_Xml += ">";
        Content(depth);
        m_Xml += "</" + name + ">";
    }
    void Content(int depth) {
        for (std::size_t n = m_Random.Number(depth < 2 ? 12 : 6); n > 0; --n) {
            m_Xml += Text();
            if (m_Random.Number(5) == 0) m_Xml += Section();
            if (depth < 6 && m_Random.Number(2) == 0) Element(depth + 1);
        }
    }

    RandomText m_Random;
    std::vector<std::string> m_Names;
    std::string m_Xml;
    bool m_bHasEntity = false;
};

}  // namespace norvask_test

#endif
