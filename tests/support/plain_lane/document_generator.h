// Generated documents: every production of XML 1.0 and of its namespaces, and each way to break it.
// Always the same documents for a seed.
//
// A document has a budget of things that are wrong, mostly none or one. Wherever something can be
// wrong there is a table of how. CRandomDocument (support/random_document.h) makes fewer, larger
// and only well-formed ones.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_DOCUMENT_GENERATOR_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_DOCUMENT_GENERATOR_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/plain_lane/document_pieces.h"
#include "support/plain_lane/random.h"

namespace norvask_test {

class CDocumentGenerator {
public:
    explicit CDocumentGenerator(std::uint64_t seed) : m_Random(seed), m_Bound{} {}

    // Replaces the text by the next document, with this many things that are wrong at the most.
    void Make(std::string& document, unsigned wrongs) {
        m_pText = &document;
        document.clear();
        m_nWrongs = wrongs;
        static const std::size_t ODDS[] = {3, 6, 12, 25, 60};
        m_nOdds = ODDS[m_Random.Below(5)];
        m_nForeign = m_Random.Once(3) ? 4 : 40;
        // Few names come again, in other places and in other namespaces.
        m_nLocals = m_Random.Once(3) ? 2 + m_Random.Below(3) : LOCAL_COUNT;
        m_nPrefixes = m_Random.Once(3) ? 2 : PREFIX_COUNT;
        m_bHasType = m_Random.Once(8);
        if (m_bHasType) m_nLocals = 2 + m_Random.Below(3);
        m_nRoom = m_Random.Once(12) ? 1500 : 40 + m_Random.Below(300);
        std::fill(m_Bound, m_Bound + PREFIX_COUNT, 0u);
        MakeDocument();
        m_pText = nullptr;
    }
    // Mostly well-formed, sometimes wrong.
    void Make(std::string& document) {
        static const unsigned WRONGS[] = {0, 0, 0, 0, 0, 1, 1, 1, 2, 3};
        Make(document, WRONGS[m_Random.Below(10)]);
    }

private:
    using View = std::string_view;
    static constexpr std::size_t PREFIX_COUNT = sizeof(pieces::PREFIXES) / sizeof(View);
    static constexpr std::size_t LOCAL_COUNT = sizeof(pieces::LOCALS) / sizeof(View);

    void Add(View text) { m_pText->append(text.data(), text.size()); }
    void Add(char c) { *m_pText += c; }
    bool Once(std::size_t times) { return m_Random.Once(times); }
    template <std::size_t N>
    void AddOne(const View (&choices)[N]) {
        Add(m_Random.Of(choices));
    }
    // Whether this place is one of those that are wrong.
    bool IsWrong() {
        if (m_nWrongs == 0 || !Once(m_nOdds)) return false;
        --m_nWrongs;
        return true;
    }
    bool HasRoom() const { return m_pText->size() < m_nRoom; }

    void AddLong(char c) {
        static const std::size_t SIZES[] = {15,  16,  31,  32,  33,  63,  64,   65,   127,  128,
                                            129, 255, 256, 257, 511, 512, 1023, 1024, 2047, 4096};
        const std::size_t longest = Once(100) ? 20 : 17;
        m_pText->append(SIZES[m_Random.Below(longest)] - m_Random.Below(3) + m_Random.Below(3), c);
    }

    void MakeDocument() {
        if (Once(12)) Add("\xEF\xBB\xBF");
        if (IsWrong()) AddOne(pieces::BAD_MARKS);
        if (Once(4)) {
            if (IsWrong()) {
                AddOne(pieces::BAD_DECLARATIONS);
            } else {
                AddOne(pieces::DECLARATIONS);
            }
        }
        MakeMisc(4);
        if (m_bHasType) {
            MakeType();
            MakeMisc(4);
        } else if (IsWrong()) {
            AddOne(pieces::DOCTYPES);
            MakeMisc(4);
        }
        MakeElement(0);
        MakeMisc(4);
        if (IsWrong()) AddOne(pieces::BAD_ENDS);
    }

    // A document type that is declared inside. Small documents are not worth more than a look at
    // it, so most of these are made large, by a comment in front.
    void MakeType() {
        const std::size_t begin = m_pText->size();
        Add("<!DOCTYPE");
        MakeBlank();
        MakeLocal(m_Random.Below(m_nLocals));
        MakeOptionalBlank();
        Add('[');
        for (std::size_t n = m_Random.Below(5); n > 0; --n) {
            switch (m_Random.Below(4)) {
                case 0:
                    MakeContents();
                    break;
                case 1:
                    AddOne(pieces::SUBSET_MISC);
                    break;
                default:
                    MakeAttributeList();
                    break;
            }
            if (IsWrong()) AddOne(pieces::BAD_SUBSETS);
        }
        Add(']');
        MakeOptionalBlank();
        Add('>');
        if (!Once(8)) {
            const std::size_t share = 14 + m_Random.Below(6);
            const std::size_t type = m_pText->size() - begin;
            m_pText->insert(begin, "<!--" + std::string(type * share, 'c') + "-->");
            m_nRoom += m_pText->size();
        }
    }
    void MakeContents() {
        Add("<!ELEMENT");
        MakeBlank();
        MakeLocal(m_Random.Below(m_nLocals));
        MakeBlank();
        AddOne(pieces::CONTENTS);
        MakeOptionalBlank();
        Add('>');
    }
    void MakeAttributeList() {
        Add("<!ATTLIST");
        MakeBlank();
        if (Once(8)) Add("p:");
        MakeLocal(m_Random.Below(m_nLocals));
        for (std::size_t n = 1 + m_Random.Below(3); n > 0; --n) {
            MakeBlank();
            if (Once(3)) {
                AddOne(pieces::DECLARED_NAMES);
            } else {
                MakeLocal(m_Random.Below(m_nLocals));
            }
            MakeBlank();
            AddOne(pieces::TYPES);
            MakeBlank();
            AddOne(pieces::DEFAULTS);
        }
        MakeOptionalBlank();
        Add('>');
    }

    void MakeMisc(std::size_t times) {
        while (Once(times)) {
            switch (m_Random.Below(4)) {
                case 0:
                    MakeComment();
                    break;
                case 1:
                    MakeInstruction();
                    break;
                default:
                    AddOne(pieces::LAYOUT);
                    break;
            }
            if (IsWrong()) AddOne(pieces::BAD_ENDS);
        }
    }

    void MakeComment() {
        if (IsWrong()) {
            AddOne(pieces::BAD_COMMENTS);
        } else if (Once(20)) {
            Add("<!--");
            AddLong('c');
            Add("-->");
        } else {
            AddOne(pieces::COMMENTS);
        }
    }
    void MakeInstruction() {
        if (IsWrong()) {
            AddOne(pieces::BAD_INSTRUCTIONS);
        } else if (Once(20)) {
            Add("<?p ");
            AddLong('?');
            Add("?>");
        } else {
            AddOne(pieces::INSTRUCTIONS);
        }
    }

    void MakeBlank() {
        if (IsWrong()) {
            AddOne(pieces::BAD_BLANKS);
        } else {
            AddOne(pieces::BLANKS);
        }
    }
    void MakeOptionalBlank() {
        if (Once(12)) MakeBlank();
    }

    void MakeLocal(std::size_t local) {
        if (IsWrong()) {
            AddOne(pieces::BAD_NAMES);
        } else if (Once(m_nForeign)) {
            AddOne(pieces::FOREIGN_LOCALS);
        } else {
            Add(pieces::LOCALS[local]);
            if (Once(250)) AddLong('n');
        }
    }
    // The prefix and its colon, if one of those that are bound is chosen.
    void MakePrefix(std::size_t times) {
        if (!Once(times)) return;
        const std::size_t prefix = m_Random.Below(m_nPrefixes);
        if (m_Bound[prefix] == 0 && !IsWrong()) return;
        Add(pieces::PREFIXES[prefix]);
        Add(':');
    }

    void MakeUri() {
        if (IsWrong()) {
            AddOne(pieces::BAD_URIS);
        } else if (Once(60)) {
            AddLong('u');
        } else {
            AddOne(pieces::URIS);
        }
    }
    void MakeDeclaration(std::size_t prefix) {
        MakeBlank();
        const char quote = Once(2) ? '"' : '\'';
        if (prefix == PREFIX_COUNT) {
            Add("xmlns");
        } else {
            Add("xmlns:");
            Add(pieces::PREFIXES[prefix]);
        }
        MakeOptionalBlank();
        Add('=');
        MakeOptionalBlank();
        Add(quote);
        if (prefix != PREFIX_COUNT || !Once(4)) MakeUri();
        Add(quote);
    }

    void MakeReference() {
        if (IsWrong()) {
            AddOne(pieces::BAD_REFERENCES);
        } else {
            AddOne(pieces::REFERENCES);
        }
    }
    void MakeForeign() {
        if (IsWrong()) {
            AddOne(pieces::BAD_CHARACTERS);
        } else {
            AddOne(pieces::FOREIGN_TEXTS);
        }
    }

    void MakeValue() {
        const char quote = Once(2) ? '"' : '\'';
        Add(quote);
        for (std::size_t n = m_Random.Below(4); n > 0; --n) {
            switch (m_Random.Below(12)) {
                case 0:
                    MakeReference();
                    break;
                case 1:
                    if (Once(3)) MakeForeign();
                    break;
                case 2:
                    Add(quote == '"' ? '\'' : '"');
                    break;
                case 3:
                    if (Once(10)) AddLong('v');
                    break;
                default:
                    AddOne(pieces::VALUES);
                    break;
            }
        }
        if (IsWrong()) AddOne(pieces::BAD_CHARACTERS);
        Add(quote);
    }
    void MakeAttribute(std::size_t local) {
        MakeBlank();
        MakePrefix(4);
        MakeLocal(local);
        MakeOptionalBlank();
        Add('=');
        MakeOptionalBlank();
        MakeValue();
    }
    void MakeNumberedAttributes() {
        static const std::size_t COUNTS[] = {5,  8,  16, 20, 31,  32,  33,
                                             63, 64, 65, 66, 100, 128, 200};
        const std::size_t count = COUNTS[m_Random.Below(Once(20) ? 14 : 6)];
        const std::size_t again = IsWrong() ? m_Random.Below(count) : count;
        for (std::size_t i = 0; i < count; ++i) {
            Add(" n");
            AddNumber(i);
            Add("='");
            AddNumber(i);
            Add('\'');
        }
        if (again != count) {
            Add(" n");
            AddNumber(again);
            Add("=''");
        }
    }
    void AddNumber(std::size_t number) {
        char digits[24];
        std::size_t at = sizeof(digits);
        do {
            digits[--at] = static_cast<char>('0' + number % 10);
            number /= 10;
        } while (number != 0);
        Add(View(digits + at, sizeof(digits) - at));
    }

    void MakeElement(std::size_t depth) {
        // Its declarations are chosen first: its own name may use them.
        std::size_t declared[4];
        std::size_t count = 0;
        if (Once(depth == 0 ? 2 : 6)) {
            for (std::size_t n = 1 + m_Random.Below(Once(4) ? 4 : 1); n > 0; --n) {
                std::size_t prefix = m_Random.Below(m_nPrefixes + 1);
                if (prefix == m_nPrefixes) prefix = PREFIX_COUNT;
                bool isNew = true;
                for (std::size_t i = 0; i < count; ++i)
                    isNew = isNew && declared[i] != prefix;
                if (isNew || IsWrong()) declared[count++] = prefix;
            }
        }
        for (std::size_t i = 0; i < count; ++i)
            if (declared[i] != PREFIX_COUNT) ++m_Bound[declared[i]];

        Add('<');
        const std::size_t begin = m_pText->size();
        MakePrefix(3);
        MakeLocal(m_Random.Below(m_nLocals));
        const std::size_t length = m_pText->size() - begin;
        MakeAttributes(declared, count);
        MakeOptionalBlank();
        if (Once(4) || depth > 60) {
            Add("/>");
        } else {
            if (IsWrong()) Add('/');
            Add('>');
            MakeContent(depth);
            MakeEnd(begin, length);
        }
        for (std::size_t i = 0; i < count; ++i)
            if (declared[i] != PREFIX_COUNT) --m_Bound[declared[i]];
    }
    void MakeAttributes(const std::size_t* declared, std::size_t count) {
        std::uint64_t used = 0;
        std::size_t next = 0;
        std::size_t attributes = Once(2) ? 0 : m_Random.Below(Once(8) ? 12 : 4);
        while (attributes > 0 || next < count) {
            if (next < count && (attributes == 0 || Once(2))) {
                MakeDeclaration(declared[next++]);
                continue;
            }
            --attributes;
            const std::size_t local = m_Random.Below(m_nLocals);
            if ((used >> local & 1) != 0 && !IsWrong()) continue;
            used |= std::uint64_t(1) << local;
            MakeAttribute(local);
        }
        if (Once(25)) {
            Add(' ');
            AddOne(pieces::SPECIAL_ATTRIBUTES);
        }
        if (Once(60)) MakeNumberedAttributes();
        if (IsWrong()) {
            Add(' ');
            AddOne(pieces::BAD_ATTRIBUTES);
        }
    }
    void MakeEnd(std::size_t begin, std::size_t length) {
        if (IsWrong()) {
            switch (m_Random.Below(5)) {
                case 0:
                    return;
                case 1:
                    Add("</");
                    AddOne(pieces::LOCALS);
                    Add('>');
                    return;
                case 2:
                    Add("</");
                    m_pText->append(*m_pText, begin, length > 1 ? length - 1 : length);
                    Add('>');
                    return;
                case 3:
                    Add("</");
                    m_pText->append(*m_pText, begin, length);
                    Add("x>");
                    return;
                default:
                    Add("</");
                    m_pText->append(*m_pText, begin, length);
                    AddOne(pieces::BAD_BLANKS);
                    if (Once(2)) Add('>');
                    return;
            }
        }
        Add("</");
        m_pText->append(*m_pText, begin, length);
        MakeOptionalBlank();
        Add('>');
    }

    void MakeContent(std::size_t depth) {
        if (depth == 0 && Once(300)) {
            MakeDeep(m_Random.Below(300));
            return;
        }
        std::size_t last = m_pText->size();
        std::size_t behind = last;
        for (std::size_t n = m_Random.Below(depth < 2 ? 7 : 4); n > 0 && HasRoom(); --n) {
            switch (m_Random.Below(11)) {
                case 0:
                    MakeSection();
                    break;
                case 1:
                    if (Once(2)) {
                        MakeComment();
                    } else {
                        MakeInstruction();
                    }
                    break;
                case 2:
                    MakeReference();
                    break;
                case 3:
                case 4:
                case 5:
                    last = m_pText->size();
                    MakeElement(depth + 1);
                    behind = m_pText->size();
                    break;
                case 6:  // the last element once more
                    m_pText->append(*m_pText, last, behind - last);
                    break;
                default:
                    MakeText();
                    break;
            }
        }
    }
    void MakeDeep(std::size_t depth) {
        for (std::size_t i = 0; i < depth; ++i)
            Add(i % 7 == 3 ? "<d xmlns:p='u'>" : "<d>");
        MakeText();
        for (std::size_t i = 0; i < depth; ++i)
            Add("</d>");
    }
    void MakeText() {
        if (IsWrong()) {
            AddOne(pieces::BAD_TEXTS);
        } else if (Once(m_nForeign)) {
            MakeForeign();
        } else if (Once(40)) {
            AddLong("t ]\n\r"[m_Random.Below(5)]);
        } else if (Once(4)) {
            AddOne(pieces::LAYOUT);
        } else {
            AddOne(pieces::TEXTS);
        }
        if (IsWrong()) AddOne(pieces::BAD_CHARACTERS);
    }
    void MakeSection() {
        if (IsWrong()) {
            AddOne(pieces::BAD_SECTIONS);
            return;
        }
        Add("<![CDATA[");
        for (std::size_t n = Once(3) ? m_Random.Below(3) : 1; n > 0; --n) {
            if (Once(40)) {
                AddLong('B');
            } else if (Once(20)) {
                MakeForeign();
            } else {
                AddOne(pieces::SECTIONS);
            }
        }
        Add("]]>");
    }

    CRandom m_Random;
    std::string* m_pText = nullptr;
    std::size_t m_nWrongs = 0;
    std::size_t m_nOdds = 1;
    std::size_t m_nForeign = 1;
    std::size_t m_nRoom = 0;
    bool m_bHasType = false;
    std::size_t m_nLocals = LOCAL_COUNT;
    std::size_t m_nPrefixes = PREFIX_COUNT;
    unsigned m_Bound[PREFIX_COUNT];
};

}  // namespace norvask_test

#endif
