// Internal. Reference: the ones that a document can have without a DTD.
#ifndef NORVASK_LOAD_PLAIN_REFERENCES_H
#define NORVASK_LOAD_PLAIN_REFERENCES_H

#include <cstddef>

#include "load/plain/characters.h"

namespace norvask {

struct SReference {
    std::size_t length;  // of the reference itself, from '&' to ';'; 0 for one that is not plain
    std::size_t bytes;   // of the character for which it stands
    char character[MOST_CHAR_BYTES];
};

// Longer ones, which begin with zeros, are not plain.
const std::size_t MOST_REFERENCE_BYTES = 16;

// The reference at `text`, a terminated string that begins with '&': to a character or to one of
// the five entities.
SReference ReadReference(const char* text) noexcept;

}  // namespace norvask

#endif
