// Internal. SEventName: a name as callbacks show it.
#ifndef NORVASK_LOAD_RECEIVER_EVENT_NAME_H
#define NORVASK_LOAD_RECEIVER_EVENT_NAME_H

namespace norvask {

// Narrow strings, never NULL.
struct SEventName {
    const char* uri;  // empty for no namespace
    const char* localName;
    const char* qName;
};

}  // namespace norvask

#endif
