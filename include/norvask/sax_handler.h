// CXMLSaxHandler: reads typed values from the strings of a document.
//
// Role: the static parsers behind the typed getters of text nodes and attributes and behind
// XMLConvertText2... (convert.h).
// Threads: the parsers may run on any number of threads, except GetData, whose result is one block
// for the whole process.
#ifndef NORVASK_SAX_HANDLER_H
#define NORVASK_SAX_HANDLER_H

#include <cstddef>

#include "norvask/export.h"

namespace norvask {

class NORVASK_API CXMLSaxHandler {
public:
    // Common to all but GetData: NULL or an empty text answers false and leaves the outputs alone.
    // Numbers are decimal; blanks in front of one and a sign are skipped; an integer that does not fit its
    // type becomes the nearest value that does. There is no range check and no check of what
    // follows the last field, so "2024-05-17T10:00:00" reads as a date and "99:99:99" as a time.

    // Tries these forms in turn and takes the first of which all fields can be read; -1 marks an
    // absent component: "Y-M-D", "--M-D", "Y-M", "---D", "--M", "Y". On false the outputs may have
    // been written.
    static bool GetDate(const char* text, int& year, int& month, int& day);

    // "Y-M-DTh:m:s" and "h:m:s", all fields. On false the fields read so far stay written.
    static bool GetDateTime(const char* text, int& year, int& month, int& day, int& hour,
                            int& minute, int& second);
    static bool GetTime(const char* text, int& hour, int& minute, int& second);

    // The number that the text begins with; always true for a text that is not empty. Deliberate: a
    // text that is no number stores 0, so a caller that must tell the two apart looks at the text.
    // Decimal only: "0x10" reads as 0, "inf" and "nan" read as 0. A number too large for a double is infinity.
    static bool GetDouble(const char* text, double& value);
    static bool GetLong(const char* text, long& value);

    // Exactly "true" or "1", "false" or "0". Anything else answers false and leaves the output alone.
    static bool GetBool(const char* text, bool& value);

    // Decodes Base64 (line breaks and blanks allowed). On true, `data` and `length` show the decoded
    // block, at least one byte, which belongs to the library and is replaced by the next GetData of
    // the process: copy what you keep. On false (NULL, an empty text, no Base64, nothing decoded) the
    // outputs are left alone; the block of the call before is gone all the same.
    // Throws std::bad_alloc.
    static bool GetData(const char* text, unsigned char*& data, std::size_t& length);

    // The block of the last successful GetData and its length in bytes; NULL and 0 when there is
    // none. Read them if you like; only the library writes and releases them.
    static unsigned char* m_pBinBlock;
    static std::size_t m_nBinBlockLength;
};

}  // namespace norvask

#endif
