// Generated text for tests that compare a fast path with the plain one. Always the same text for a
// seed.
#ifndef NORVASK_TESTS_SUPPORT_RANDOM_TEXT_H
#define NORVASK_TESTS_SUPPORT_RANDOM_TEXT_H

#include <cstddef>
#include <random>
#include <string>

namespace norvask_test {

class RandomText {
public:
    explicit RandomText(unsigned int seed) : m_Random(seed) {}

    // A number from 0 to `below` - 1.
    std::size_t Number(std::size_t below) {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(m_Random);
    }

    // Any bytes but 0; most are ASCII, some begin or continue UTF-8 sequences, some are neither.
    std::string Bytes(std::size_t length) {
        static const char* const PIECES[] = {"<",
                                             ">",
                                             "&",
                                             "'",
                                             "\"",
                                             "\t",
                                             "\r\n",
                                             "\x01",
                                             "\x0c",
                                             "\x1f",
                                             "\x7f",
                                             "\xC3\xA9",
                                             "\xE2\x82\xAC",
                                             "\xF0\x9F\x98\x80",
                                             "\xEF\xBB\xBF",
                                             "\xEF\xBF\xBF",
                                             "\xED\xA0\x80",
                                             "\xC0\xAF",
                                             "\xE2\x82",
                                             "\xF4\x90\x80\x80",
                                             "\xFF",
                                             "\x80",
                                             "\xE0\x80\x80",
                                             "\xF0\x80\x80\x80",
                                             "\xED\x9F\xBF",
                                             "\xEE\x80\x80"};
        std::string text;
        while (text.size() < length) {
            const std::size_t kind = Number(20);
            if (kind == 0) {
                text += PIECES[Number(sizeof(PIECES) / sizeof(PIECES[0]))];
            } else if (kind == 1) {
                text += static_cast<char>(1 + Number(255));
            } else {
                text += static_cast<char>('a' + Number(26));
            }
        }
        return text;
    }

    // UTF-16 without zero units; some surrogates are paired, some are not.
    std::u16string Units(std::size_t length) {
        std::u16string text;
        while (text.size() < length) {
            switch (Number(12)) {
                case 0:
                    text += static_cast<char16_t>(0x80 + Number(0x780));
                    break;
                case 1:
                    text += static_cast<char16_t>(0x800 + Number(0xD000));
                    break;
                case 2:
                    text += static_cast<char16_t>(0xD800 + Number(0x400));
                    text += static_cast<char16_t>(0xDC00 + Number(0x400));
                    break;
                case 3:
                    if (Number(8) == 0) {
                        text += static_cast<char16_t>(0xD800 + Number(0x800));
                    }
                    break;
                case 4:
                    text += static_cast<char16_t>(0xE000 + Number(0x2000));
                    break;
                default:
                    text += static_cast<char16_t>(1 + Number(127));
                    break;
            }
        }
        return text;
    }

private:
    std::mt19937 m_Random;
};

}  // namespace norvask_test

#endif
