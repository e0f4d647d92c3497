// Internal. The numbered message table.
//
// The numbers are part of the interface (CXMLException takes them), so texts are never renumbered
// and an unused number keeps its place.
#ifndef NORVASK_FOUNDATION_MESSAGES_H
#define NORVASK_FOUNDATION_MESSAGES_H

namespace norvask {

// The text with this number, or NULL when there is none.
const char* MessageText(unsigned int number) noexcept;

}  // namespace norvask

#endif
