// Internal. Older names for the judgements of known_text.h.
#ifndef NORVASK_FOUNDATION_TEXT_RULES_H
#define NORVASK_FOUNDATION_TEXT_RULES_H

#include "foundation/markup.h"

namespace norvask {

bool IsXmlName(const char* name);
bool IsKnownUtf8(const char* text) noexcept;
bool CheckWritable(const char* text);

}  // namespace norvask

#endif
