// Internal. CPen: the end of an output, for a loop that writes very many small pieces.
//
// Every byte that is written may, as far as the compiler can see, lie in the output itself, so one
// that appends to COutput loads and stores its end for each piece. A pen is a local variable of
// which nobody else has the address: its end stays in a register. What does not fit, pads, or needs
// a closer look is left to the output, which does it as if there were no pen.
//
// Names and texts of trees are read in pieces of a fixed size, which may reach beyond their ends
// but not beyond their blocks (tree_string.h), and written likewise, where there is room.
#ifndef NORVASK_WRITE_PEN_H
#define NORVASK_WRITE_PEN_H

#include <cstddef>
#include <cstring>

#include "tree/memory/tree_string.h"
#include "write/output.h"
#include "write/suspects.h"

namespace norvask {

// A pen stays in registers only where all of it is inlined.
#define NORVASK_INLINE [[gnu::always_inline]] inline

class CPen {
public:
    NORVASK_INLINE explicit CPen(COutput& output) noexcept : m_Output(output) { Take(); }
    CPen(const CPen&) = delete;
    CPen& operator=(const CPen&) = delete;

    // Gives the output its end, for it to be used or flushed. A pen must have given before anything
    // is thrown, and at the end; it is not used afterwards until it takes the end again.
    NORVASK_INLINE void Give() noexcept { m_Output.m_pEnd = m_pEnd; }
    NORVASK_INLINE void Take() noexcept {
        m_pEnd = m_Output.m_pEnd;
        m_pLimit = m_Output.m_bPads ? m_pEnd : m_Output.m_pLimit;
    }

    // As of COutput.
    template <std::size_t N>
    NORVASK_INLINE void Literal(const char (&token)[N]) {
        if (Room() < N - 1) {
            Give();
            m_Output.Literal(token);
            Take();
            return;
        }
        std::memcpy(m_pEnd, token, N - 1);
        m_pEnd += N - 1;
    }

    // A literal and behind it a name that is short and known to be one; returns false, and has
    // written nothing, when it is not or when there is no room.
    template <std::size_t N>
    NORVASK_INLINE bool ShortName(const char (&token)[N], CTreeString name) noexcept {
        return ShortName(token, name.KnownIfShort());
    }
    // The same for a name that can be read by eights to behind its end.
    template <std::size_t N>
    NORVASK_INLINE bool ShortName(const char (&token)[N], const SKnownText& name) noexcept {
        if (name.length > SHORT_NAME || !name.Is(KNOWN_NAME) ||
            (name.known & (KNOWN_UTF8 | KNOWN_ASCII)) == 0 || Room() < N - 1 + SHORT_NAME + 1) {
            return false;
        }
        std::memcpy(m_pEnd, token, N - 1);
        const std::size_t second = name.length & 8;
        Copy<8>(m_pEnd + N - 1, name.text);
        Copy<8>(m_pEnd + N - 1 + second, name.text + second);
        m_pEnd += N - 1 + name.length;
        return true;
    }

    // The text of a tree, escaped.
    NORVASK_INLINE void Text(CTreeString string) {
        const SKnownText text = string.KnownIfShort();
        if (!CopyShortText(text)) {
            Give();
            m_Output.Text(string.Known());
            Take();
        }
    }

    // As of COutput, the former without an indentation.
    NORVASK_INLINE void NewLine(std::size_t tabs) {
        if (!ShortNewLine(tabs)) {
            Give();
            m_Output.NewLine("", tabs);
            Take();
        }
    }
    NORVASK_INLINE void PlainNewLine(std::size_t tabs) {
        if (!ShortNewLine(tabs)) {
            Give();
            m_Output.PlainNewLine(tabs);
            Take();
        }
    }

private:
    static const std::size_t SHORT_NAME = 15;
    static const std::size_t TABS = 15;

    NORVASK_INLINE bool ShortNewLine(std::size_t tabs) noexcept {
        if (Room() < TABS + 2 || Room() - TABS - 2 < tabs) {
            return false;
        }
        std::memcpy(m_pEnd, "\r\n", 2);
        m_pEnd += 2;
        std::size_t written = 0;
        do {
            std::memcpy(m_pEnd + written, "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t", TABS);
            written += TABS;
        } while (written < tabs);
        m_pEnd += tabs;
        return true;
    }
    NORVASK_INLINE std::size_t Room() const noexcept {
        return static_cast<std::size_t>(m_pLimit - m_pEnd);
    }
    template <std::size_t N>
    NORVASK_INLINE static void Copy(char* out, const char* bytes) noexcept {
        char copy[N];
        std::memcpy(copy, bytes, N);
        std::memcpy(out, copy, N);
    }

#if defined(__SSE2__)
    NORVASK_INLINE bool CopyShortText(const SKnownText& text) noexcept {
        if (text.length > CTreeString::READABLE || !text.Is(KNOWN_UTF8) ||
            Room() < sizeof(__m128i)) {
            return false;
        }
        const __m128i bytes = LoadReadable(text.text);
        if ((SuspectBytes(bytes) & ((1 << text.length) - 1)) != 0) {
            return false;
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(m_pEnd), bytes);
        m_pEnd += text.length;
        return true;
    }
    // The bytes that can be read of any string of a tree.
    NORVASK_INLINE static __m128i LoadReadable(const char* text) noexcept {
        static_assert(CTreeString::READABLE == 12, "eight bytes and four");
        int last = 0;
        std::memcpy(&last, text + 8, sizeof(last));
        return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(text)),
                                  _mm_cvtsi32_si128(last));
    }
#else
    static bool CopyShortText(const SKnownText&) noexcept { return false; }
#endif

    COutput& m_Output;
    char* m_pEnd;
    const char* m_pLimit;
};

}  // namespace norvask

#endif
