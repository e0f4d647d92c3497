// What is beyond ASCII in a run.
#include "load/plain/runs.h"

#include <cstring>

#include "foundation/utf8.h"

namespace norvask {
namespace {

// The length without a character that is cut off at the end.
std::size_t WholeLength(const char* text, std::size_t length) noexcept {
    for (std::size_t back = 1; back <= 3 && back <= length; ++back) {
        const unsigned char byte = static_cast<unsigned char>(text[length - back]);
        if (byte >= 0xC0) {
            const std::size_t needed = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
            return needed > back ? length - back : length;
        }
    }
    return length;
}

}  // namespace

// U+FFFE and U+FFFF are the characters beyond ASCII that are forbidden: EF BF BE and EF BF BF.
std::size_t CharsLength(const char* text, std::size_t length, bool isUtf8) noexcept {
    const std::size_t wellFormed = isUtf8 ? WholeLength(text, length) : Utf8Length(text, length);
    const char* const end = text + wellFormed;
    for (const char* at = text; at != end;) {
        at = static_cast<const char*>(std::memchr(at, 0xEF, static_cast<std::size_t>(end - at)));
        if (at == nullptr) {
            break;
        }
        const unsigned char last = static_cast<unsigned char>(at[2]);
        if (static_cast<unsigned char>(at[1]) == 0xBF && last >= 0xBE) {
            return static_cast<std::size_t>(at - text);
        }
        ++at;
    }
    return wellFormed;
}

}  // namespace norvask
