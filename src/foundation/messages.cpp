// The message table. A text says with "%s" where the arguments of an error go, in their order.
#include "foundation/messages.h"

#include <cstddef>

namespace norvask {
namespace {

const char* const MESSAGES[] = {
    nullptr,
    "Error during initialisation of the XML parser",
    "Error loading '%s':\n\n'%s'",
    "Load error:\nFile: '%s'  Line '%s':\n\n'%s'",
    "Error saving '%s'.",
    "The last written document is not closed.",
    "Invalid XML name: '%s'.",
    "The node '%s' does not contain valid text",
    "The document is not open.",
    "Wrong XML format",
    "Invalid character in string '%s'.",
    "XML parser error\n\n'%s'",
    "invalid parameter",
    "Function is not supported by this node type.",
    "Error during conversion.",
};

}  // namespace

const char* MessageText(unsigned int number) noexcept {
    const std::size_t count = sizeof(MESSAGES) / sizeof(MESSAGES[0]);
    return number < count ? MESSAGES[number] : nullptr;
}

}  // namespace norvask
