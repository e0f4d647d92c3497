// A writer that cannot lose its output unnoticed.
#ifndef NORVASK_EXAMPLES_CHECKED_WRITER_H
#define NORVASK_EXAMPLES_CHECKED_WRITER_H

#include <norvask/norvask.h>

#include <ostream>

// Switches on the exceptions of its stream, also of a file that it opens itself. Failing to write
// then is a std::ios_base::failure of the call that found it, be it EndDocument: the last bytes of
// a file are written as it is closed. The file is removed, as is any that is not finished.
class CCheckedWriter : public norvask::CXMLSaxWriter {
public:
    using CXMLSaxWriter::StartDocument;

    // The variant for a file name comes here too, with the stream that it has opened.
    void StartDocument(std::ostream* stream, bool format, bool ownStream) override {
        CXMLSaxWriter::StartDocument(stream, format, ownStream);
        stream->exceptions(std::ios::badbit | std::ios::failbit);
    }
};

#endif
