// Internal. The prolog of a plain document.
#ifndef NORVASK_LOAD_PLAIN_PROLOG_H
#define NORVASK_LOAD_PLAIN_PROLOG_H

#include "load/plain/content.h"
#include "load/plain/doctype.h"

namespace norvask {

// Reads up to the '<' of the root, beginning with a byte order mark if there is one. `doctype` is
// where a DOCTYPE is kept; none is plain if it is NULL.
bool ReadProlog(CContent& content, CDoctype* doctype);

}  // namespace norvask

#endif
