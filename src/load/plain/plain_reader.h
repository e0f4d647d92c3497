// Internal. CPlainReader: reads a plain document and reports it to a sink.
//
// A sink is told in document order, by these functions; those that return a bool return whether
// reading shall go on:
//
//   struct SPayload                            what it keeps for a name as long as it is read
//   StartDocument, EndDocument
//   StartDTD(root name)                        one without identifiers
//   StartNamespace(prefix), EndNamespace(prefix)
//   Text(text)                                 a whole one, between two boundaries
//   CDATA(content)
//   StartElement(name, attributes, count, content), EndElement(name)
//
// Everything is read before it is reported: of a tag that is not plain nothing is told, nor of the
// text before it.
#ifndef NORVASK_LOAD_PLAIN_PLAIN_READER_H
#define NORVASK_LOAD_PLAIN_PLAIN_READER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/utf8.h"
#include "load/plain/content.h"
#include "load/plain/namespaces.h"
#include "load/plain/plain_name.h"
#include "load/plain/prolog.h"
#include "load/receiver/name_predictor.h"
#include "load/watch/watch.h"

namespace norvask {

template <typename Payload>
using CPlainNames = CNamePredictor<SPlainName, Payload>;

// A QName in the token.
struct SNamePiece {
    std::size_t begin;
    std::size_t length;
    std::size_t local;  // where its local part begins, in the name
    bool isAscii;
};

template <typename Payload>
struct SPlainAttribute {
    typename CPlainNames<Payload>::SName* name;  // NULL as long as its prefix is not bound
    SNamePiece written;
    SPiece value;
    const SDeclaredAttribute* given;  // by a DTD, with its value; NULL for one that is written

    SKnownText Value(CContent& content) const noexcept {
        return given == nullptr
                   ? content.Piece(value)
                   : SKnownText{given->value.c_str(), given->value.size(), given->valueKnown};
    }
};

template <typename Sink>
class CPlainReader {
public:
    // `doctype` is where a DOCTYPE is kept; NULL where none is plain. `watch` is NULL where nobody
    // watches.
    CPlainReader(CContent& content, CDoctype* doctype, Sink& sink, CWatch* watch = nullptr)
        : m_Content(content),
          m_Window(content.Window()),
          m_pDoctype(doctype),
          m_Sink(sink),
          m_pWatch(watch),
          m_Names(MOST_NAMES, MOST_BYTES),
          m_Attributes(new SAttribute[FEW]) {
        m_Open.reserve(FEW);
    }

    // Returns whether the whole document was plain and was reported.
    bool Read() {
        if (!ReadProlog(m_Content, m_pDoctype) || !StartDocument()) {
            return false;
        }
        m_Window.BeginToken();
        if (!MayGoOn() || !ReadStartTag() || !MayGoOn()) {
            return false;
        }
        while (!m_Open.empty()) {
            if (!ReadText() || !ReadMarkup() || !MayGoOn()) {
                return false;
            }
        }
        return m_Content.ReadMisc() && m_Window.IsAtEnd() && MayGoOn() && m_Sink.EndDocument();
    }

private:
    // Room for a small document.
    static const std::size_t FEW = 8;
    // What is kept of names is bounded, so that a document of ever new ones is read in the same
    // memory: names beyond the bounds are made anew each time.
    static const std::size_t MOST_NAMES = 4096;
    static const std::size_t MOST_BYTES = 131072;
    // Attributes of one element in a DTD.
    static const std::size_t MOST_DECLARED = 16;

    using SPayload = typename Sink::SPayload;
    using CNames = CPlainNames<SPayload>;
    using SName = typename CNames::SName;
    using SAttribute = SPlainAttribute<SPayload>;

    struct SOpenElement {
        SOpenElement(SName* own, std::size_t before) noexcept : name(own), declarations(before) {}
        SName* name;
        std::size_t declarations;  // that were in force before it
    };

    bool MayGoOn() noexcept {
        return m_pWatch == nullptr || m_pWatch->MayGoOn(m_Window.Position());
    }
    bool MayStart() const noexcept {
        return m_pWatch == nullptr || m_pWatch->MayStart(m_Open.size() + 1, m_Namespaces.Count());
    }

    bool StartDocument() {
        if (m_pDoctype == nullptr || !m_pDoctype->IsThere()) {
            m_pDoctype = nullptr;
            return m_Sink.StartDocument();
        }
        return m_pDoctype->Declare() && m_Sink.StartDocument() &&
               m_Sink.StartDTD(m_pDoctype->RootName());
    }

    // Between many tags there is none.
    bool ReadText() {
        if (*m_Window.At() != '<') {
            return m_Content.ReadText();
        }
        m_Window.BeginToken();
        return true;
    }

    bool ReadMarkup() {
        if (!m_Window.Has(2)) {
            return false;
        }
        switch (m_Window.At()[1]) {
            case '/':
                return ReadEndTag();
            case '?':
                return m_Content.ReadPI();
            case '!':
                return m_Content.IsNext("<!--", 4) ? m_Content.ReadComment() : ReadCDSect();
            default:
                return ReadStartTag();
        }
    }

    bool ReadCDSect() {
        SPiece content;
        return m_Content.IsNext("<![CDATA[", 9) && m_Content.ReadCDSect(content) && GiveText() &&
               m_Sink.CDATA(m_Content.Piece(content));
    }

    // ETag
    bool ReadEndTag() {
        const auto& name = m_Open.back().name->kept;
        const std::size_t length = name.QName().length;
        if (!m_Window.Has(length + 3) || !name.IsAt(m_Window.At() + 2)) {
            return false;
        }
        m_Window.GoTo(m_Window.At() + 2 + length);
        m_Content.ReadS();
        return m_Window.Skip('>') && GiveText() && EndElement();
    }

    bool EndElement() {
        const SOpenElement ended = m_Open.back();
        m_Open.pop_back();
        if (!m_Sink.EndElement(*ended.name)) {
            return false;
        }
        for (std::size_t i = m_Namespaces.Count(); i > ended.declarations; --i) {
            if (!m_Sink.EndNamespace(m_Namespaces.At(i - 1))) {
                return false;
            }
        }
        m_Namespaces.ReturnTo(ended.declarations);
        if (!m_Temporary.empty() && m_Temporary.back().get() == ended.name) {
            m_Temporary.pop_back();
        } else {
            m_Names.Ended(ended.name);
        }
        return true;
    }

    bool GiveText() {
        if (!m_Content.HasText()) {
            return true;
        }
        const bool goesOn = m_Sink.Text(m_Content.Text());
        m_Content.ClearText();
        return goesOn;
    }

    // STag, EmptyElemTag
    bool ReadStartTag() {
        ++m_nTag;
        m_nAttributes = 0;
        m_bDeclares = false;
        m_pDefault = nullptr;
        const std::size_t temporary = m_Temporary.size();
        const auto place = m_Names.Place();
        m_Window.GoTo(m_Window.At() + 1);
        SNamePiece written;
        SName* name = nullptr;
        bool isEmpty = false;
        if (!ReadName(true, written, name) || !ReadAttributes(isEmpty) ||
            (m_pDoctype != nullptr && !AreAsDeclared(written))) {
            return false;
        }
        const std::size_t declarations = m_Namespaces.Count();
        if (m_bDeclares) {
            if (!Declare()) {
                return false;
            }
            m_Names.GoTo(place);
            m_Temporary.resize(temporary);
            name = Find(true, written);
            FindAgain();
        }
        if (m_pDefault != nullptr) {
            AddDefault();
        }
        if (name == nullptr || !CheckAttributes(temporary) || !MayStart()) {
            return false;
        }
        for (std::size_t i = declarations; i < m_Namespaces.Count(); ++i) {
            if (!m_Sink.StartNamespace(m_Namespaces.At(i))) {
                return false;
            }
        }
        m_Open.emplace_back(name, declarations);
        if (!GiveText() ||
            !m_Sink.StartElement(*name, m_Attributes.get(), m_nAttributes, m_Content)) {
            return false;
        }
        // That of the element is the first.
        if (m_Temporary.size() > temporary) {
            m_Temporary.resize(m_Temporary[temporary].get() == name ? temporary + 1 : temporary);
        }
        return !isEmpty || EndElement();
    }

    // (S Attribute)* S? up to the end of the tag
    bool ReadAttributes(bool& isEmpty) {
        for (;;) {
            while (ReadLikelyAttribute()) {
            }
            const bool hasSpace = m_Content.ReadS();
            const char next = m_Window.Peek();
            if (next == '>' || next == '/') {
                isEmpty = next == '/';
                return isEmpty ? m_Window.Skip("/>", 2) : m_Window.Skip('>');
            }
            if (!hasSpace || !ReadAttribute()) {
                return false;
            }
        }
    }

    // The most frequent one: a blank, the name that is expected, a value that stands for itself.
    // Returns false if it is another, and then nothing has changed.
    bool ReadLikelyAttribute() {
        char* const at = m_Window.At();
        if (*at != ' ') {
            return false;
        }
        const auto place = m_Names.Place();
        SName* const name = m_Names.FindLikely(SNameAhead{at + 1, m_Window.Unread() - 1, false});
        if (name == nullptr) {
            return false;
        }
        char* const behind = at + 1 + name->kept.QName().length;
        char* const begin = behind + 2;
        if (behind[0] == '=' && (behind[1] == '"' || behind[1] == '\'')) {
            bool isAscii = true;
            char* const end = EndOfRun<ERun::VALUE>(begin, isAscii);
            if (*end == behind[1] && isAscii) {
                AddAttribute(*name, at + 1, begin, end);
                return true;
            }
        }
        m_Names.GoTo(place);
        return false;
    }

    void AddAttribute(SName& name, const char* written, const char* begin, char* end) {
        SAttribute& attribute = NewAttribute();
        attribute.name = &name;
        attribute.written = WrittenAs(name, written);
        attribute.value = {m_Window.InToken(begin), static_cast<std::size_t>(end - begin), true};
        m_bDeclares = m_bDeclares || name.kept.Declares() != nullptr;
        m_Window.GoTo(end + 1);
    }

    SAttribute& NewAttribute() {
        if (m_nAttributes == m_nRoom) {
            GrowAttributes();
        }
        m_Attributes[m_nAttributes].given = nullptr;
        ++m_nAttributes;
        return m_Attributes[m_nAttributes - 1];
    }

    void GrowAttributes() {
        const std::size_t room = FEW + 2 * m_nRoom;
        std::unique_ptr<SAttribute[]> grown(new SAttribute[room]);
        std::copy_n(m_Attributes.get(), m_nAttributes, grown.get());
        m_Attributes.swap(grown);
        m_nRoom = room;
    }

    SNamePiece WrittenAs(const SName& name, const char* written) const noexcept {
        const SKnownText text = name.kept.QName();
        return {m_Window.InToken(written), text.length, text.length - name.kept.LocalName().length,
                text.Is(KNOWN_ASCII)};
    }

    bool ReadAttribute() {
        SAttribute& attribute = NewAttribute();
        if (!ReadName(false, attribute.written, attribute.name)) {
            return false;
        }
        m_bDeclares = m_bDeclares ||
                      (attribute.name != nullptr && attribute.name->kept.Declares() != nullptr);
        m_Content.ReadS();
        if (!m_Window.Skip('=')) {
            return false;
        }
        m_Content.ReadS();
        return m_Content.ReadAttValue(attribute.value);
    }

    // QName; `name` is NULL if its prefix is not bound, which this tag may do further on.
    bool ReadName(bool isElement, SNamePiece& written, SName*& name) {
        SName* const likely =
            m_Names.FindLikely(SNameAhead{m_Window.At(), m_Window.Unread(), isElement});
        if (likely != nullptr) {
            written = WrittenAs(*likely, m_Window.At());
            m_Window.GoTo(m_Window.At() + written.length);
            name = likely;
            return true;
        }
        written = {m_Window.InToken(m_Window.At()), 0, 0, true};
        if (!m_Content.ReadNCName(written.isAscii)) {
            return false;
        }
        if (m_Window.Skip(':')) {
            written.local = m_Window.InToken(m_Window.At()) - written.begin;
            if (!m_Content.ReadNCName(written.isAscii)) {
                return false;
            }
        }
        written.length = m_Window.InToken(m_Window.At()) - written.begin;
        name = Find(isElement, written);
        return true;
    }

    SName* Find(bool isElement, const SNamePiece& written) {
        return Find({m_Window.Token() + written.begin, written.length, written.local,
                     written.isAscii, isElement});
    }

    SName* Find(SPlainName name) {
        if (!Resolve(name)) {
            return nullptr;
        }
        SName* const found = m_Names.Find(name, [] { return SPayload(); });
        if (found != nullptr) {
            return found;
        }
        m_Temporary.push_back(std::make_unique<SName>(name, name.Hash(), SPayload()));
        return m_Temporary.back().get();
    }

    // Returns false if the prefix is not bound.
    bool Resolve(SPlainName& name) {
        const std::size_t prefix = name.local == 0 ? 0 : name.local - 1;
        const char* const local = name.text + name.local;
        const std::size_t length = name.length - name.local;
        name.prefix = name.isElement ? &m_Namespaces.OfElement(name.text, prefix)
                                     : &m_Namespaces.OfAttribute(name.text, prefix);
        if (name.prefix->uri == nullptr) {
            return false;
        }
        if (name.isElement) {
            return !m_Namespaces.IsOfDeclarations(*name.prefix);
        }
        name.declares = m_Namespaces.Declared(*name.prefix, local, length);
        name.isLeft = IsSchemaLocation(*name.prefix->uri, {local, length});
        return true;
    }

    // The parser would fetch the schema.
    static bool IsSchemaLocation(const SUri& uri, std::string_view local) {
        return (local == "schemaLocation" || local == "noNamespaceSchemaLocation") &&
               uri.text == std::string_view("http://www.w3.org/2001/XMLSchema-instance");
    }

    bool Declare() {
        for (std::size_t i = 0; i < m_nAttributes; ++i) {
            const SAttribute& attribute = m_Attributes[i];
            SPrefix* const prefix =
                attribute.name == nullptr ? nullptr : attribute.name->kept.Declares();
            if (prefix != nullptr &&
                !m_Namespaces.Declare(*prefix, m_Content.Piece(attribute.value), m_nTag)) {
                return false;
            }
        }
        return true;
    }

    // The attributes that are no declarations, with the prefixes as they are bound now.
    void FindAgain() {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < m_nAttributes; ++i) {
            const SAttribute& attribute = m_Attributes[i];
            SName* const name = Find(false, attribute.written);
            if (name == nullptr || name->kept.Declares() == nullptr) {
                m_Attributes[kept] = attribute;
                m_Attributes[kept].name = name;
                ++kept;
            }
        }
        m_nAttributes = kept;
    }

    // Whether each has a name of its own, in its namespace too, and none is left to the parser.
    bool CheckAttributes(std::size_t temporary) {
        bool isUnsure = m_Temporary.size() > temporary;
        for (std::size_t i = 0; i < m_nAttributes; ++i) {
            SName* const name = m_Attributes[i].name;
            if (name == nullptr || name->kept.IsLeft() || !name->kept.Meet(m_nTag)) {
                return false;
            }
            if (name->kept.HasPrefix()) {
                SUri& uri = *name->kept.Uri();
                isUnsure = isUnsure || (uri.tag == m_nTag && uri.prefix != name->kept.Prefix());
                uri.tag = m_nTag;
                uri.prefix = name->kept.Prefix();
            }
        }
        return !isUnsure || AreDistinct();
    }

    // Whether a DTD declares nothing of the attributes of this element that is left to the parser.
    // Plain are a default of one attribute, which the parser puts behind the others, and types that
    // leave nothing to normalise.
    bool AreAsDeclared(const SNamePiece& element) {
        const char* const token = m_Window.Token();
        const auto* const declared = m_pDoctype->Of(token + element.begin, element.length);
        if (declared == nullptr) {
            return true;
        }
        // Each is looked for among all.
        if (declared->size() > MOST_DECLARED) {
            return false;
        }
        for (const SDeclaredAttribute& attribute : *declared) {
            const SAttribute* const given = FindWritten(attribute.name);
            if (given != nullptr && !IsAsDeclared(*given, attribute)) {
                return false;
            }
            if (given == nullptr && attribute.hasDefault) {
                if (m_pDefault != nullptr || !IsPlainDefault(attribute)) {
                    return false;
                }
                m_pDefault = &attribute;
            }
        }
        return true;
    }

    // The parser looks at the default of a namespace declaration even where it is overridden.
    bool IsAsDeclared(const SAttribute& given, const SDeclaredAttribute& attribute) {
        if (!attribute.isCDATA && !IsOneToken(given)) {
            return false;
        }
        const bool isNamespace = attribute.name.compare(0, 5, "xmlns") == 0;
        return !isNamespace || !attribute.hasDefault ||
               attribute.value.compare(0, std::string::npos, m_Window.Token() + given.value.begin,
                                       given.value.length) == 0;
    }

    const SAttribute* FindWritten(const std::string& name) const noexcept {
        const char* const token = m_Window.Token();
        for (std::size_t i = 0; i < m_nAttributes; ++i) {
            const SNamePiece& written = m_Attributes[i].written;
            if (name.compare(0, std::string::npos, token + written.begin, written.length) == 0) {
                return &m_Attributes[i];
            }
        }
        return nullptr;
    }

    // Declared names are not all names of plain documents, but those in ASCII without a colon are.
    static bool IsPlainDefault(const SDeclaredAttribute& attribute) noexcept {
        return attribute.isCDATA && attribute.name != "xmlns" &&
               attribute.name.find(':') == std::string::npos &&
               IsAscii(attribute.name.data(), attribute.name.size());
    }

    void AddDefault() {
        SAttribute& attribute = NewAttribute();
        attribute.given = m_pDefault;
        attribute.name = Find({m_pDefault->name.data(), m_pDefault->name.size(), 0, true, false});
    }

    bool IsOneToken(const SAttribute& attribute) const noexcept {
        const char* const value = m_Window.Token() + attribute.value.begin;
        return std::none_of(value, value + attribute.value.length,
                            [](char c) { return IsByte(c, BYTE_SPACE); });
    }

    bool AreDistinct() const {
        std::set<std::pair<const SUri*, std::string_view>> names;
        for (std::size_t i = 0; i < m_nAttributes; ++i) {
            const auto& kept = m_Attributes[i].name->kept;
            if (!names.emplace(kept.Uri(), kept.LocalName().text).second) {
                return false;
            }
        }
        return true;
    }

    CContent& m_Content;
    CWindow& m_Window;
    CDoctype* m_pDoctype;  // NULL if there is none
    Sink& m_Sink;
    CWatch* const m_pWatch;
    CNamespaces m_Namespaces;
    CNames m_Names;
    std::vector<SOpenElement> m_Open;
    std::vector<std::unique_ptr<SName>> m_Temporary;  // those that are not kept: of open elements,
                                                      // then of the tag that is read
    std::unique_ptr<SAttribute[]> m_Attributes;       // of that tag, and room for more
    std::size_t m_nAttributes = 0;
    std::size_t m_nRoom = FEW;
    std::uint64_t m_nTag = 0;
    bool m_bDeclares = false;
    const SDeclaredAttribute* m_pDefault = nullptr;  // that the tag lacks
};

}  // namespace norvask

#endif
