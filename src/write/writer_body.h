// Internal. What a streaming writer holds.
#ifndef NORVASK_WRITE_WRITER_BODY_H
#define NORVASK_WRITE_WRITER_BODY_H

#include <cstddef>

#include "write/string_stack.h"
#include "write/unfinished_file.h"
#include "write/writer_stream.h"

namespace norvask {

struct SWriterBody {
    CStringStack names;  // of the open elements
    CWriterStream stream;
    CUnfinishedFile file;
    std::size_t depth = 0;  // of the indentation
    bool format = true;
    bool textWritten = false;  // content was the last that was written
    bool tagOpen = false;      // the last start tag may still become an empty element
};

}  // namespace norvask

#endif
