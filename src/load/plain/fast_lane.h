// Internal. The fast lane: reads plain documents, several times faster than the parser.
//
// Plain is a document that is UTF-8, is XML 1.0 and well-formed with its namespaces, and asks for
// nothing that only the parser has. It has no DOCTYPE, or one that changes nothing of what is read
// (doctype.h). What such a document means is beyond doubt. At the first thing that is not plain, at
// the first error of whatever kind too, the lane gives up and leaves the document to the parser,
// which loads it from the beginning; so the parser decides, and every refusal and every message is
// its own.
#ifndef NORVASK_LOAD_PLAIN_FAST_LANE_H
#define NORVASK_LOAD_PLAIN_FAST_LANE_H

#include <cstddef>

#include "load/source/byte_source.h"

namespace norvask {

class CEventForwarder;
class CTreeBuilder;
class CWatch;

// How much of a document is held at once, but for longer tokens.
const std::size_t PLAIN_WINDOW = 65536;

// Return whether the document was read to its end; if not, the receiver was told a beginning of it,
// events only as the parser will tell them too. Where there was no memory for the document, which
// is no failure of a load, it counts as read, whatever stands in it. A document with a DOCTYPE is
// not plain where it would be validated by it. Nor is one that is beyond a limit of the watch; NULL
// for none. Throw what the receiver and the watch throw, and std::bad_alloc.
bool ReadPlainTree(CByteSource& source, std::size_t window, bool keepPrefixes,
                   CTreeBuilder& builder, bool takesDoctype = true, CWatch* watch = nullptr);
bool ReadPlainEvents(CByteSource& source, std::size_t window, CEventForwarder& forwarder,
                     bool takesDoctype = true, CWatch* watch = nullptr);

}  // namespace norvask

#endif
