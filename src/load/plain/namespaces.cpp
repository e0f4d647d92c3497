// CNamespaces: what is reserved is bound from the beginning, and cannot be declared.
#include "load/plain/namespaces.h"

namespace norvask {
namespace {

bool Is(const SPrefix& prefix, const char* text, std::size_t length) noexcept {
    return prefix.length == length && std::memcmp(prefix.text, text, length) == 0;
}

}  // namespace

CNamespaces::CNamespaces()
    : m_NoUri(""),
      m_XmlUri("http://www.w3.org/XML/1998/namespace"),
      m_DeclarationsUri("http://www.w3.org/2000/xmlns/"),
      m_Default("", 0, &m_NoUri),
      m_OfAttributes("", 0, &m_NoUri),
      m_Xml("xml", 3, &m_XmlUri),
      m_OfDeclarations("xmlns", 5, &m_DeclarationsUri),
      m_pLast(&m_Xml) {
    m_XmlUri.isReserved = true;
    m_DeclarationsUri.isReserved = true;
    m_Xml.isReserved = true;
    m_OfDeclarations.isReserved = true;
}

SPrefix& CNamespaces::Prefix(const char* text, std::size_t length) {
    if (!Is(*m_pLast, text, length)) {
        m_pLast = &FindPrefix(text, length);
    }
    return *m_pLast;
}

SPrefix& CNamespaces::FindPrefix(const char* text, std::size_t length) {
    if (Is(m_Xml, text, length)) {
        return m_Xml;
    }
    if (Is(m_OfDeclarations, text, length)) {
        return m_OfDeclarations;
    }
    const auto added = m_Prefixes.try_emplace(std::string(text, length), "", length, nullptr);
    SPrefix& prefix = added.first->second;
    prefix.text = added.first->first.c_str();
    return prefix;
}

SUri& CNamespaces::Uri(const SKnownText& text) {
    for (SUri* const uri : {&m_NoUri, &m_XmlUri, &m_DeclarationsUri}) {
        if (std::strcmp(uri->text, text.text) == 0) {
            return *uri;
        }
    }
    const auto added = m_Uris.try_emplace(std::string(text.text, text.length), "");
    SUri& uri = added.first->second;
    if (added.second) {
        uri.text = added.first->first.c_str();
        uri.number = static_cast<std::uint32_t>(m_Uris.size());
    }
    return uri;
}

bool CNamespaces::Declare(SPrefix& prefix, const SKnownText& uri, std::uint64_t tag) {
    SUri& bound = Uri(uri);
    if (prefix.isReserved || bound.isReserved || (uri.IsEmpty() && &prefix != &m_Default) ||
        prefix.tag == tag) {
        return false;
    }
    prefix.tag = tag;
    m_Declarations.emplace_back(&prefix, prefix.uri);
    prefix.uri = &bound;
    return true;
}

void CNamespaces::ReturnTo(std::size_t count) noexcept {
    while (m_Declarations.size() > count) {
        m_Declarations.back().prefix->uri = m_Declarations.back().before;
        m_Declarations.pop_back();
    }
}

}  // namespace norvask
