/// @file
/// @class norvask::CXMLSaxHandler
/// Receives a document as callbacks, without a tree.
///
/// **Role:** derive from this class, override the callbacks that you need and hand an object to one
/// of the callback loads of CXMLManager (manager.h). Memory does not grow with the size of a
/// document: what is kept is the names of the open elements, the text since the last tag, each
/// different prefix and namespace, and, by the parser, each different name of an element. The file
/// of a plain document is read twice, the first time to see that all of it is UTF-8.
/// The class also has the static parsers behind the typed values.
///
/// **Owner:** the handler is yours; a load neither copies nor ends it. It serves any number of
/// loads, one after the other.
///
/// **Threads:** callbacks run on the thread that called LoadDocument, in document order. One
/// handler serves one load at a time: a load started in a callback needs a handler of its own.
/// Handlers on different threads are independent of each other, except for GetData.
#ifndef NORVASK_SAX_HANDLER_H
#define NORVASK_SAX_HANDLER_H

#include <cstddef>
#include <cstdint>

#include "norvask/export.h"
#include "norvask/sax_attribut.h"

namespace norvask {

class CReaderLink;

class NORVASK_API CXMLSaxHandler {
public:
    /// A handler that has served no load.
    CXMLSaxHandler() noexcept;

    /// A copy shows the load that its source serves at the moment, for GetSourceOffset, and may be
    /// asked on that load's thread only; callbacks go to the handler that was handed to the load
    /// and to no other.
    CXMLSaxHandler(const CXMLSaxHandler& other) noexcept;
    CXMLSaxHandler& operator=(const CXMLSaxHandler& other) noexcept;

    /// Deliberate: also releases the block of GetData, whoever asked for it, so that a program
    /// which reads documents ends without it. m_pBinBlock is NULL afterwards.
    virtual ~CXMLSaxHandler();

    /// @name Callbacks
    /// Each does nothing here. The order of the declarations is part of the binary
    /// interface.
    ///
    /// Strings are narrow (wide_char_to_string.h) and last until the callback returns, as do the
    /// attributes. None is NULL, except the two identifiers of StartDTD. A callback may throw
    /// anything: the load ends and LoadDocument passes it on (see there), a CXMLException as a
    /// copy.
    /// @{

    /// The first and the last callback of a load. EndDocument is called only when the whole
    /// document was read.
    virtual void StartDocument();
    virtual void EndDocument();

    /// - uri: the namespace; empty for none. localName: without, qName: with the prefix.
    /// - attributes: in the order of the parser, which puts those with a default value last; ended
    ///   by a NULL, and never NULL itself. Namespace declarations are not among them
    ///   (StartNamespace). The array may be rearranged, the load does not look at it again.
    ///   Deliberate: an attribute object for which there is no memory is left out together with
    ///   those behind it, for this one element; any other lack of memory throws std::bad_alloc.
    ///
    /// An empty element gives both callbacks.
    virtual void StartElement(const char* uri, const char* localName, const char* qName,
                              CXMLSaxAttribut** attributes);
    virtual void EndElement(const char* uri, const char* localName, const char* qName);

    /// All the character data between two of: start of an element, end of an element, start and end
    /// of a CDATA section; references are resolved, comments and processing instructions do not
    /// divide it, and nothing is trimmed. Not called for layout: a run of blanks, line ends and
    /// TABs with at least one line end or TAB, outside of CDATA. A run of blanks alone is content,
    /// except where validation by a DTD finds that an element can hold elements only.
    virtual void Characters(const char* text);

    /// Around the text of a CDATA section, which is given as it stands; an empty section has no
    /// text.
    /// Deliberate: Base64 is not decoded here as it is for a tree; GetData does it where it is
    /// wanted.
    virtual void StartCDATA();
    virtual void EndCDATA();

    /// The document type declaration. publicId and systemId are NULL when the declaration has none;
    /// one with neither an identifier nor an internal subset is not reported.
    virtual void StartDTD(const char* name, const char* publicId, const char* systemId);

    /// A namespace declaration, before the StartElement and after the EndElement of its element. An
    /// empty prefix is the default namespace; an empty uri takes a declaration back. Text in front
    /// of the element is reported between StartNamespace and StartElement.
    virtual void StartNamespace(const char* prefix, const char* uri);
    virtual void EndNamespace(const char* prefix);

    /// Asked by the client, not called by the library: how far the parser has read, in bytes of the
    /// document behind its byte order mark, during a load that was started with
    /// CXMLManager::SetCalculateSourceOffsets(true). In a callback that is the end of what is
    /// reported; text is reported at the next tag, and the position is the end of that; for a DTD
    /// it is some place in the declaration. It never goes back within a load.
    /// Inside of an entity, whose text is not at one position of the document, the last answer is
    /// repeated, 0 if there was none.
    /// 0 when no load is under way: before the first, after each, however it ended.
    /// In a load without the switch the parser refuses: the exception ends the load unless the
    /// callback catches it, and reaches the caller as (2, "Load error:...").
    /// An answer costs up to some microseconds (the parser adds up the characters of its buffer),
    /// so ask now and then rather than for every element.
    virtual std::uint64_t GetSourceOffset();
    /// @}

    /// @name Parsers of typed values
    /// They may run on any number of threads, except GetData, whose result
    /// is one block for the whole process.
    ///
    /// Common to all but GetData: NULL or an empty text answers false and leaves the outputs alone.
    /// Numbers are decimal; blanks and a sign may stand in front of one; an integer that does not
    /// fit its type becomes the nearest value that does. There is no range check and no check of
    /// what follows the last field, so "2024-05-17T10:00:00" reads as a date and "99:99:99" as a
    /// time.
    /// @{

    /// Tries these forms in turn and takes the first of which all fields can be read; -1 marks an
    /// absent component: "Y-M-D", "--M-D", "Y-M", "---D", "--M", "Y". On false the outputs may have
    /// been written.
    static bool GetDate(const char* text, int& year, int& month, int& day);

    /// "Y-M-DTh:m:s" and "h:m:s", all fields. On false the fields read so far stay written.
    static bool GetDateTime(const char* text, int& year, int& month, int& day, int& hour,
                            int& minute, int& second);
    static bool GetTime(const char* text, int& hour, int& minute, int& second);

    /// The number that the text begins with; always true for a text that is not empty. Deliberate:
    /// a text that is no number stores 0, so a caller that must tell the two apart looks at the
    /// text. Decimal only: "0x10" reads as 0, "inf" and "nan" read as 0. A number too large for a
    /// double is infinity.
    static bool GetDouble(const char* text, double& value);
    static bool GetLong(const char* text, long& value);

    /// Exactly "true" or "1", "false" or "0". Anything else answers false and leaves the output
    /// alone.
    static bool GetBool(const char* text, bool& value);

    /// Decodes Base64 (line breaks and blanks allowed). On true, `data` and `length` show the
    /// decoded block, at least one byte, which belongs to the library and is replaced by the next
    /// GetData of the process and released by the end of any handler: copy what you keep. On false
    /// (NULL, an empty text, no Base64, nothing decoded) the outputs are left alone; the block of
    /// the call before is gone all the same. Throws std::bad_alloc.
    static bool GetData(const char* text, unsigned char*& data, std::size_t& length);

    /// The block of the last successful GetData and its length in bytes; NULL and 0 when there is
    /// none. Read them if you like; only the library writes and releases them.
    static unsigned char* m_pBinBlock;
    static std::size_t m_nBinBlockLength;
    /// @}

private:
    friend class CReaderLink;

    // To the load under way or the last one, shared with copies; NULL before the first load.
    CReaderLink* m_pLink;
};

}  // namespace norvask

#endif
