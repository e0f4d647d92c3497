// Older names for the judgements of known_text.h.
#include "foundation/text_rules.h"

#include "foundation/known_text.h"

namespace norvask {

bool IsXmlName(const char* name) { return JudgeName(name).Is(KNOWN_NAME); }

bool IsKnownUtf8(const char* text) noexcept { return JudgeText(text).Is(KNOWN_UTF8); }

bool CheckWritable(const char* text) { return RequireWritable(text).Is(KNOWN_UTF8); }

}  // namespace norvask
