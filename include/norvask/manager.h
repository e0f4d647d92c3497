/// @file
/// @class norvask::CXMLManager
/// Start here: makes documents, loads them, and holds the two settings of the library.
///
/// **Role:** the one manager is built when the library is loaded, which initialises the parser, and
/// ends it at process exit. Reach it with CXMLManager::GetInstance().
///
/// **Owner:** documents that CreateDocument and LoadDocument return belong to the caller, who ends
/// them with CXMLDocument::Delete.
///
/// **Threads:** loads on different threads are independent of each other. The settings are plain
/// values: change them while no load runs.
#ifndef NORVASK_MANAGER_H
#define NORVASK_MANAGER_H

#include "norvask/document.h"
#include "norvask/export.h"
#include "norvask/sax_handler.h"
#include "norvask/wide_char_to_string.h"

namespace norvask {

class NORVASK_API CXMLManager {
public:
    /// The one manager of the process.
    static CXMLManager& GetInstance();

    /// Whether the parser was initialised. If not, every operation below that makes or loads a
    /// document throws CXMLException (4, "Error during initialisation of the XML parser").
    bool IsInitialized();

    /// Whether the callback loads that start from now on track their position in the source, for
    /// CXMLSaxHandler::GetSourceOffset; it costs time. Off at first. A load that builds a tree
    /// never tracks it.
    void SetCalculateSourceOffsets(bool calculate);

    /// Installs a converter for all strings that loads produce and for parser messages; NULL
    /// restores the library's own (UTF-8, see wide_char_to_string.h). The converter is asked on
    /// every conversion, is never released, and must live as long as it is installed.
    void SetWideCharToStringConverter(CWideCharToString* converter);

    /// A new document without a root; see CXMLDocument::SetDTDRef for the arguments. NULL when
    /// there is no memory for it.
    CXMLDocument* CreateDocument(const char* dtdName, const char* dtdPath);

    /// Load a document from a file or from memory into a tree, which belongs to the caller. NULL
    /// only when there is no memory for the document object itself.
    ///
    /// - fileName: a path, or a URL as the parser understands it (`file:`, and `http:` or `ftp:`
    ///   where the parser was built with network access). NULL throws (1, "invalid parameter").
    /// - buffer, length: the bytes of the document, only read, and used only during the call. NULL
    ///   or 0 throws (1, "invalid parameter").
    /// - validate: true validates a document that names a grammar (a DTD, or a schema with
    ///   doSchema) and loads any other as if it were false. With false the next three parameters
    ///   have no effect. The grammars that a document itself names are read in either case, for
    ///   entities and default attributes; only a schema with validate and without doSchema is not.
    /// - doSchema: whether XML Schema is used for validation.
    /// - schemaLocation: a schema to use as if the document had named it; NULL for none. With
    ///   schemaHasNamespace it is a list of pairs of namespace and location separated by blanks,
    ///   without it the location of a schema for elements in no namespace. The parser only warns
    ///   about one that it cannot open, and warnings are ignored: the document then loads
    ///   unvalidated.
    /// - keepPrefixes: true takes element and attribute names with their prefix and keeps each
    ///   namespace declaration as an attribute "xmlns:prefix", in front of the element's own and in
    ///   the order of the prefixes. Deliberate: the default namespace is kept under the name
    ///   "xmlns:" (an empty prefix), which tells it from a plain attribute; saved like that, no
    ///   parser reads it back, so rename or remove it before saving (XMLNameDefaultNamespaces,
    ///   convenience_saving.h). False takes local names and drops prefixes and declarations.
    ///
    /// What the tree holds: elements; attributes with a value (empty ones are dropped, as
    /// CXMLNode::SetAttribute does); each run of text between tags or CDATA sections as one text
    /// node, untrimmed, unless it is layout (blanks, line ends and TABs with at least one line end
    /// or TAB; a run of blanks alone is content, except where validation by a DTD finds that an
    /// element can hold elements only); each CDATA section as one binary node if it holds Base64,
    /// else as one text node, nothing if it is empty; the DTD's name and system identifier if it
    /// has both. Comments, processing instructions, the public identifier and the internal subset
    /// leave no trace.
    ///
    /// Failures are CXMLExceptions, and nothing of the document remains:
    ///
    /// - (2, "Load error:\nFile: '%s'  Line '%s':\n\n'%s'") for everything that the parser
    ///   reports, the first error found: malformed or (with validate) invalid content, unknown
    ///   encodings, missing DTDs. The file is the one in which the error lies, as the parser
    ///   resolved it ("Memfile" for memory), the line counts from 1. A file that cannot be opened
    ///   is reported like this too, with an empty file name and line 0; the parser's own text names
    ///   it. A directory can be opened but not
    ///   read: its report ("unable to read data from file") names it nowhere. A first line that
    ///   cannot be decoded has no file name and line either.
    /// - (1, "Error loading '%s':\n\n'%s'") from a file, (1, "XML parser error\n\n'%s'") from
    ///   memory, for exceptions that the parser raises otherwise.
    /// - (3, "Invalid XML name: '%s'.") for a name with a character beyond U+FFFF, which the parser
    ///   accepts and this library does not.
    ///
    /// Speed: a plain document is read by a scanner of the library's own, several times faster than
    /// by the parser. Plain is UTF-8 and XML 1.0, without a DOCTYPE or with one that declares
    /// nothing but elements and attributes, unless that or a schema of the caller's is to validate
    /// it; an installed converter, source offsets and a process whose narrow strings are not UTF-8
    /// leave all documents to the parser. Deliberate: what you receive does not tell which of the
    /// two it was. The scanner takes only documents whose outcome is beyond doubt; at the first
    /// byte that is not plain, and at any error, the parser reads the document from the beginning,
    /// so every refusal and every message is the parser's. A file is opened once for both.
    ///
    /// Nesting: the parser takes time that grows with the square of the depth (100,000 levels:
    /// about 20 seconds), and whoever sends a document can leave it to the parser, so a program
    /// that must answer in time limits what it accepts (SXMLUntrusted, load.h). A plain document
    /// takes time that grows with its length only.
    ///
    /// std::bad_alloc and the exceptions of an installed converter pass through unchanged, and so
    /// does the parser's own out-of-memory exception.
    CXMLDocument* LoadDocument(const char* fileName, bool validate, bool doSchema,
                               const char* schemaLocation, bool schemaHasNamespace,
                               bool keepPrefixes);
    CXMLDocument* LoadDocument(unsigned char* buffer, unsigned int length, bool validate,
                               bool doSchema, const char* schemaLocation, bool schemaHasNamespace,
                               bool keepPrefixes);

    /// Load a document as callbacks: nothing is built, `handler` receives what sax_handler.h
    /// describes. NULL for it throws (1, "invalid parameter"). The other parameters and the
    /// failures are those above, with these differences:
    ///
    /// - keepPrefixes: no effect. A callback always receives all forms of a name, and namespaces.
    ///
    /// Names with a character beyond U+FFFF arrive like others.
    /// Whatever a callback throws ends the load: a CXMLException arrives as a copy (of a derived
    /// class, that part only), any other exception unchanged, except two of the parser: it reports
    /// its XMLException, wherever that was raised, like an error of the document (2), and a
    /// SAXParseException that a callback throws becomes (1). Callbacks before a failure have been
    /// made: what they told must be undone by the caller.
    void LoadDocument(const char* fileName, CXMLSaxHandler* handler, bool validate, bool doSchema,
                      const char* schemaLocation, bool schemaHasNamespace, bool keepPrefixes);
    void LoadDocument(unsigned char* buffer, unsigned int length, CXMLSaxHandler* handler,
                      bool validate, bool doSchema, const char* schemaLocation,
                      bool schemaHasNamespace, bool keepPrefixes);

protected:
    CXMLManager();

    /// Deliberate: a copy takes nothing over but a converter of its own. It is not initialised, so
    /// it makes no documents, and it leaves the parser alone when it ends.
    CXMLManager(const CXMLManager& other) noexcept;
    CXMLManager& operator=(const CXMLManager& other) = delete;
    /// Destroys the object.
    ~CXMLManager();

private:
    friend class CDOMString;
    friend class CManagerAccess;
    CWideCharToString* GetWideCharToStringConverter();

    bool m_bInitialized;
    CWideCharToString* m_pConverter;
    CWideCharToString m_Converter;
    bool m_bCalculateSourceOffsets;
    bool m_bTerminatesParser;

    static CXMLManager sm_TheInstance;
};

}  // namespace norvask

#endif
