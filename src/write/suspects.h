// Internal. Bytes of text that may not be plain, a register at a time.
#ifndef NORVASK_WRITE_SUSPECTS_H
#define NORVASK_WRITE_SUSPECTS_H

#if defined(__SSE2__)
#include <emmintrin.h>

namespace norvask {

// The bytes of a register that may not be plain: markup, and everything below the blank.
inline int SuspectBytes(__m128i bytes) noexcept {
    const __m128i angle = _mm_or_si128(bytes, _mm_set1_epi8(2));       // < and > differ in this bit
    const __m128i apostrophe = _mm_or_si128(bytes, _mm_set1_epi8(1));  // & and ' in this
    const __m128i low = _mm_subs_epu8(bytes, _mm_set1_epi8(0x1F));  // 0 for what is below the blank
    const __m128i suspects =
        _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(angle, _mm_set1_epi8('>')),
                                  _mm_cmpeq_epi8(apostrophe, _mm_set1_epi8('\''))),
                     _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')),
                                  _mm_cmpeq_epi8(low, _mm_setzero_si128())));
    return _mm_movemask_epi8(suspects);
}

}  // namespace norvask
#endif

#endif
