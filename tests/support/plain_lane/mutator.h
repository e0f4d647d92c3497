// Changes in documents, of all kinds that a fuzzer knows: bytes, blocks, pieces of other documents,
// tokens of XML.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_MUTATOR_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_MUTATOR_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/plain_lane/document_pieces.h"
#include "support/plain_lane/random.h"

namespace norvask_test {

// Bytes that mean something, or that stand at an edge of what does.
inline constexpr unsigned char TELLING_BYTES[] = {
    0x00, 0x01, 0x08, '\t', '\n', 0x0B, 0x0C, '\r', 0x0E, 0x1F, ' ',  '!',  '"',  '#',
    '%',  '&',  '\'', '-',  '.',  '/',  '0',  '9',  ':',  ';',  '<',  '=',  '>',  '?',
    '@',  'A',  'C',  'D',  'F',  'X',  'Z',  '[',  '\\', ']',  '_',  'a',  'f',  'k',
    'l',  'm',  'n',  'p',  's',  'x',  'z',  '{',  0x7F, 0x80, 0x85, 0x8F, 0x90, 0x9F,
    0xA0, 0xA8, 0xB7, 0xBB, 0xBD, 0xBE, 0xBF, 0xC0, 0xC1, 0xC2, 0xC3, 0xCC, 0xD7, 0xDF,
    0xE0, 0xE2, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF4, 0xF5, 0xF8, 0xFE, 0xFF};

class CMutator {
public:
    explicit CMutator(std::uint64_t seed) : m_Random(seed) {}

    // Pieces of this document may turn up in others from now on.
    void Remember(const std::string& document) {
        m_Known[m_Random.Below(m_Known.size())] = document;
    }

    void Mutate(std::string& document) {
        static const std::size_t TIMES[] = {1, 1, 1, 2, 2, 3, 4, 8};
        for (std::size_t n = TIMES[m_Random.Below(8)]; n > 0 && !document.empty(); --n)
            MutateOnce(document);
    }

private:
    // Half of the places are next to a byte of markup, where most happens.
    std::size_t Place(const std::string& document) {
        const std::size_t place = m_Random.Below(document.size());
        if (m_Random.Once(2)) return place;
        const std::size_t mark = document.find_first_of("<>&'\"=:]?-/", place);
        return mark == std::string::npos
                   ? place
                   : std::min(document.size() - 1, mark + m_Random.Below(3) - (mark > 0 ? 1 : 0));
    }
    char Byte() {
        return m_Random.Once(5)
                   ? static_cast<char>(m_Random.Below(256))
                   : static_cast<char>(TELLING_BYTES[m_Random.Below(sizeof(TELLING_BYTES))]);
    }
    std::size_t Length(std::size_t most) {
        return std::min(most, 1 + m_Random.Below(m_Random.Once(4) ? 200 : 12));
    }
    std::string_view Token() {
        using namespace pieces;
        switch (m_Random.Below(16)) {
            case 0:
                return m_Random.Of(BAD_CHARACTERS);
            case 1:
                return m_Random.Of(BAD_TEXTS);
            case 2:
                return m_Random.Of(BAD_REFERENCES);
            case 3:
                return m_Random.Of(REFERENCES);
            case 4:
                return m_Random.Of(BAD_SECTIONS);
            case 5:
                return m_Random.Of(BAD_COMMENTS);
            case 6:
                return m_Random.Of(BAD_INSTRUCTIONS);
            case 7:
                return m_Random.Of(BAD_ATTRIBUTES);
            case 8:
                return m_Random.Of(BAD_NAMES);
            case 9:
                return m_Random.Of(BLANKS);
            case 10:
                return m_Random.Of(FOREIGN_TEXTS);
            case 11:
                return m_Random.Of(BAD_DECLARATIONS);
            case 12:
                return m_Random.Of(BAD_URIS);
            case 13:
                return m_Random.Of(SPECIAL_ATTRIBUTES);
            case 14:
                return m_Random.Of(TEXTS);
            default:
                return m_Random.Of(FOREIGN_LOCALS);
        }
    }

    void MutateOnce(std::string& document) {
        const std::size_t place = Place(document);
        const std::size_t behind = document.size() - place;
        switch (m_Random.Below(14)) {
            case 0:
                document[place] = Byte();
                break;
            case 1:
                document[place] = static_cast<char>(static_cast<unsigned char>(document[place]) ^
                                                    (1u << m_Random.Below(8)));
                break;
            case 2:
                document.insert(place, 1, Byte());
                break;
            case 3:
                document.erase(place, Length(behind));
                break;
            case 4:
                document.erase(place, 1);
                break;
            case 5: {  // a block again, here or elsewhere
                m_Block.assign(document, place, Length(behind));
                document.insert(m_Random.Once(2) ? place : Place(document), m_Block);
                break;
            }
            case 6:
                std::swap(document[place], document[Place(document)]);
                break;
            case 7: {  // the next two bytes change places
                if (behind > 1) std::swap(document[place], document[place + 1]);
                break;
            }
            case 8:
                document.resize(place);
                break;
            case 9: {  // a piece of another document
                const std::string& other = m_Known[m_Random.Below(m_Known.size())];
                if (other.empty()) break;
                const std::size_t from = Place(other);
                m_Block.assign(other, from, Length(other.size() - from));
                if (m_Random.Once(2)) document.erase(place, Length(behind));
                document.insert(place, m_Block);
                break;
            }
            case 10: {  // the end of another document
                const std::string& other = m_Known[m_Random.Below(m_Known.size())];
                if (other.empty() || m_Random.Below(4) != 0) break;
                document.resize(place);
                document.append(other, Place(other), std::string::npos);
                break;
            }
            case 11: {
                const std::string_view token = Token();
                document.replace(place, Length(behind), token.data(), token.size());
                break;
            }
            case 12: {  // the same byte many times
                document.insert(place, 1 + m_Random.Below(70), document[place]);
                break;
            }
            default: {
                const std::string_view token = Token();
                document.insert(place, token.data(), token.size());
                break;
            }
        }
        const std::size_t MOST_BYTES = 20000;
        if (document.size() > MOST_BYTES) document.resize(MOST_BYTES);
    }

    CRandom m_Random;
    std::array<std::string, 64> m_Known;
    std::string m_Block;
};

}  // namespace norvask_test

#endif
