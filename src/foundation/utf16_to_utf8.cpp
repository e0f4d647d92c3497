// UTF-16 to UTF-8. Where the processor can, text is taken eight units at a time if they all are
// ASCII or give two bytes at most, four if they give three at most, and one by one only for pairs
// of surrogates and at the end.
#include "foundation/utf8.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace norvask {
namespace {

char ToByte(unsigned int value) noexcept { return static_cast<char>(value); }

const std::size_t WIDE = 8;

// Eight units to eight bytes, if they all are ASCII. Many at a time where the processor can.
bool CopyWideAscii(const char16_t* text, char* out) noexcept {
#if defined(__x86_64__)
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF) {
        return false;
    }
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(units, units));
    return true;
#else
    for (std::size_t i = 0; i < WIDE; ++i) {
        if (text[i] >= 0x80) {
            return false;
        }
        out[i] = static_cast<char>(text[i]);
    }
    return true;
#endif
}

// Writes the UTF-8 of the unit or the pair at `i`, which moves behind it; there is room for three
// bytes a unit. Returns the end of what is written, NULL for an unpaired surrogate.
char* PutUtf8(const char16_t* text, std::size_t units, std::size_t& i, char* p) noexcept {
    const unsigned int c = text[i++];
    if (c < 0x800) {
        // One or two bytes without a branch, which text of mixed scripts would mostly guess wrong.
        const bool two = c >= 0x80;
        p[0] = ToByte(two ? 0xC0U | (c >> 6) : c);
        p[1] = ToByte(0x80U | (c & 0x3FU));
        return p + 1 + two;
    }
    if (c < 0xD800 || c >= 0xE000) {
        p[0] = ToByte(0xE0U | (c >> 12));
        p[1] = ToByte(0x80U | ((c >> 6) & 0x3FU));
        p[2] = ToByte(0x80U | (c & 0x3FU));
        return p + 3;
    }
    if (c >= 0xDC00 || i == units || text[i] < 0xDC00 || text[i] >= 0xE000) {
        return nullptr;
    }
    const unsigned int point = 0x10000U + ((c - 0xD800U) << 10) + (text[i++] - 0xDC00U);
    p[0] = ToByte(0xF0U | (point >> 18));
    p[1] = ToByte(0x80U | ((point >> 12) & 0x3FU));
    p[2] = ToByte(0x80U | ((point >> 6) & 0x3FU));
    p[3] = ToByte(0x80U | (point & 0x3FU));
    return p + 4;
}

#if defined(__x86_64__)
#define NORVASK_WITH_SHUFFLE __attribute__((target("ssse3")))

// How the bytes of several units are put together. Each unit has all its bytes in a lane of its
// own; the shuffle takes those that count. The index tells which, one bit for each lane and for
// each byte beyond the first.
template <unsigned int LANES, unsigned int LANE_BYTES>
struct SShuffleTable {
    constexpr SShuffleTable() : shuffle(), length() {
        for (unsigned int index = 0; index < 256; ++index) {
            unsigned char n = 0;
            for (unsigned int lane = 0; lane < LANES; ++lane) {
                shuffle[index][n++] = static_cast<unsigned char>(LANE_BYTES * lane);
                for (unsigned int more = 1; more <= 8 / LANES; ++more) {
                    if ((index >> (lane + (more - 1) * LANES) & 1U) != 0) {
                        shuffle[index][n++] = static_cast<unsigned char>(LANE_BYTES * lane + more);
                    }
                }
            }
            length[index] = n;
        }
    }

    alignas(16) unsigned char shuffle[256][16];
    unsigned char length[256];
};
constexpr SShuffleTable<8, 2> UP_TO_TWO;
constexpr SShuffleTable<4, 4> UP_TO_THREE;

NORVASK_WITH_SHUFFLE void PutShuffled(__m128i lanes, const unsigned char* shuffle,
                                      char* out) noexcept {
    const __m128i order = _mm_load_si128(reinterpret_cast<const __m128i*>(shuffle));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(lanes, order));
}

NORVASK_WITH_SHUFFLE __m128i Choose(__m128i mask, __m128i yes, __m128i no) noexcept {
    return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
}

// Eight units below 0x800 to their bytes; 0 if there are others among them. Sixteen bytes may be
// written.
NORVASK_WITH_SHUFFLE std::size_t CopyUpToTwo(const char16_t* text, char* out) noexcept {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i none = _mm_setzero_si128();
    const __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, none)) != 0xFFFF) {
        return 0;
    }
    const __m128i one = _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(0x780)), none);
    const __m128i first = _mm_or_si128(_mm_srli_epi16(units, 6), _mm_set1_epi16(0xC0));
    const __m128i second =
        _mm_or_si128(_mm_and_si128(units, _mm_set1_epi16(0x3F)), _mm_set1_epi16(0x80));
    const __m128i two = _mm_or_si128(first, _mm_slli_epi16(second, 8));
    const unsigned int index =
        ~static_cast<unsigned int>(_mm_movemask_epi8(_mm_packs_epi16(one, none))) & 0xFFU;
    PutShuffled(Choose(one, units, two), UP_TO_TWO.shuffle[index], out);
    return UP_TO_TWO.length[index];
}

// Four units to their bytes; 0 if there are surrogates among them. Sixteen bytes may be written.
NORVASK_WITH_SHUFFLE std::size_t CopyUpToThree(const char16_t* text, char* out) noexcept {
    const __m128i none = _mm_setzero_si128();
    const __m128i units =
        _mm_unpacklo_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(text)), none);
    const __m128i high = _mm_and_si128(units, _mm_set1_epi32(0xF800));
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(high, _mm_set1_epi32(0xD800))) != 0) {
        return 0;
    }
    const __m128i six = _mm_set1_epi32(0x3F);
    const __m128i last = _mm_or_si128(_mm_and_si128(units, six), _mm_set1_epi32(0x80));
    const __m128i upper = _mm_srli_epi32(units, 6);
    const __m128i middle = _mm_or_si128(_mm_and_si128(upper, six), _mm_set1_epi32(0x80));
    const __m128i two =
        _mm_or_si128(_mm_or_si128(upper, _mm_set1_epi32(0xC0)), _mm_slli_epi32(last, 8));
    const __m128i three =
        _mm_or_si128(_mm_or_si128(_mm_srli_epi32(units, 12), _mm_set1_epi32(0xE0)),
                     _mm_or_si128(_mm_slli_epi32(middle, 8), _mm_slli_epi32(last, 16)));
    const __m128i isOne = _mm_cmplt_epi32(units, _mm_set1_epi32(0x80));
    const __m128i isShort = _mm_cmpeq_epi32(high, none);
    const unsigned int index =
        ~static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(isOne)) |
                                   _mm_movemask_ps(_mm_castsi128_ps(isShort)) << 4) &
        0xFFU;
    PutShuffled(Choose(isOne, units, Choose(isShort, two, three)), UP_TO_THREE.shuffle[index], out);
    return UP_TO_THREE.length[index];
}

// Converts until fewer than eight units are left; room for three bytes a unit is more than what is
// written. `i` moves. Returns the end of what is written, NULL for an unpaired surrogate.
NORVASK_WITH_SHUFFLE char* PutWide(const char16_t* text, std::size_t units, std::size_t& i,
                                   char* p) noexcept {
    while (units - i >= WIDE) {
        std::size_t taken = WIDE;
        std::size_t bytes = CopyWideAscii(text + i, p) ? WIDE : CopyUpToTwo(text + i, p);
        if (bytes == 0) {
            taken = WIDE / 2;
            bytes = CopyUpToThree(text + i, p);
        }
        if (bytes == 0) {
            p = PutUtf8(text, units, i, p);
            if (p == nullptr) {
                return nullptr;
            }
            continue;
        }
        i += taken;
        p += bytes;
    }
    return p;
}

bool HasShuffle() noexcept {
    static const bool s_bHasShuffle = __builtin_cpu_supports("ssse3") != 0;
    return s_bHasShuffle;
}
#else
char* PutWide(const char16_t*, std::size_t, std::size_t&, char* p) noexcept { return p; }

bool HasShuffle() noexcept { return false; }
#endif

}  // namespace

std::size_t Utf16ToUtf8(const char16_t* text, std::size_t units, char* out) noexcept {
    char* p = out;
    std::size_t i = 0;
    if (units >= WIDE && HasShuffle()) {
        p = PutWide(text, units, i, p);
    }
    // The last eight, if they all are ASCII: some may be there already, in as many bytes.
    if (p != nullptr && i < units && units >= WIDE && units - i < WIDE &&
        CopyWideAscii(text + units - WIDE, p + (units - i) - WIDE)) {
        return static_cast<std::size_t>(p - out) + units - i;
    }
    while (p != nullptr && i < units) {
        if (units - i >= WIDE && CopyWideAscii(text + i, p)) {
            i += WIDE;
            p += WIDE;
        } else if (text[i] < 0x80) {
            *p++ = ToByte(text[i++]);
        } else {
            p = PutUtf8(text, units, i, p);
        }
    }
    return p == nullptr ? NOT_UTF16 : static_cast<std::size_t>(p - out);
}

}  // namespace norvask
