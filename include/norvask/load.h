/// @file
/// Loads with everything that can be asked of one: limits for documents of strangers, problems one
/// by one, progress, and documents from wherever bytes come from.
///
/// **Role:** what the conveniences for loading are made of (convenience_document.h), where the
/// fields are chained operations. Use those, unless a program cannot have std::function or
/// exceptions of its own. CXMLManager::LoadDocument is the plain load; given nothing more than its
/// parameters, the loads here give the same document and the same callbacks.
///
/// **Owner:** all that the structures point at belongs to the caller, and is used during the call
/// only. A document that is returned belongs to the caller.
///
/// **Threads:** as CXMLManager::LoadDocument. The functions that the structures name are called on
/// the thread of the load.
#ifndef NORVASK_LOAD_H
#define NORVASK_LOAD_H

#include <cstddef>
#include <cstdint>

#include "norvask/document.h"
#include "norvask/error.h"
#include "norvask/export.h"
#include "norvask/sax_handler.h"

namespace norvask {

/// What a document of a stranger may cost. Of each field 0 is no limit.
///
/// Two rules come with the limits and have no field: a document type declaration is refused, and
/// the schemas that the document names are not read. A schema that the caller names works as ever,
/// with what it includes. So nothing is read that the caller did not name.
///
/// What goes beyond is refused with a CXMLError of class 9 (message 3) whose text names the rule,
/// the limit and the field: "deeper than 256 elements (maxDepth)". Deliberate: there is no limit to
/// the number of attributes of an element. A parser that compares each with all others has done so
/// when it tells them; what bounds that work is the length of the tag (maxMarkup). Nor to memory:
/// a tree of the smallest elements and texts takes up to 28 times the bytes of the document, so
/// maxBytes bounds it.
struct SXMLUntrusted {
    /// Bytes that are read from the source. A source whose size is known and greater is refused
    /// before anything is read. The parser may need four times as many, or 1 MiB, for the names of
    /// the document, all of which it keeps; with a schema of the caller's eight times as many,
    /// since it keeps the keys of elements too.
    std::uint64_t maxBytes = std::uint64_t{16} << 20;

    /// Bytes of the document that make one tag, CDATA section, comment or instruction, or a text up
    /// to the next reference in it: an image that stands in a document is longer. Looked at where
    /// the document is read, in blocks of 48 KiB: a piece that is longer by two blocks is refused
    /// for certain, a shorter one never, nor may be a text, of which the parser tells a part after
    /// a million characters. Namespace declarations are limited by it too, since the parser looks
    /// for each prefix among all that are in force: to one for 64 bytes, 4096 by default.
    std::uint64_t maxMarkup = std::uint64_t{256} << 10;

    /// Elements that are open at the same time.
    unsigned int maxDepth = 256;

    /// Processor time of the calling thread, in seconds: that of the library and the parser, and
    /// that of the callbacks. Looked at every 256 events and every block. A load whose longest step
    /// between two looks might, if it came again, pass the limit by more than a second is refused
    /// before it. Deliberate: no limit holds a schema of the caller's own. A pattern in it can take
    /// a time that doubles with each character, and nobody can look in between; so patterns for
    /// documents of strangers are to be as simple as patterns for strangers are anywhere.
    unsigned int maxSeconds = 5;
};

/// A schema to validate by.
struct SXMLSchemaName {
    /// The namespace whose elements it describes, without blanks; NULL or empty for elements in
    /// none.
    const char* uri = nullptr;
    /// A path, relative to the working directory, or a URL. Blanks and other characters stand as
    /// they are in a path.
    const char* location = nullptr;
};

/// How to load. What is not set is as in a plain load with every parameter false or NULL.
///
/// Fields may be added at the end in later versions. The library reads those that `size` covers, so
/// leave it as it is. One that is set and that the library does not know is an invalid parameter.
struct SXMLLoadSettings {
    /// Which fields there are.
    std::size_t size = sizeof(SXMLLoadSettings);

    /// As the parameters of CXMLManager::LoadDocument, but for two things, which are so with
    /// doSchema only. A location without a scheme is relative to the working directory, not to the
    /// document. A schema that cannot be opened or read is an error: CXMLError (2, message 3), for
    /// a file before the document is read and with its name as the file and line 0, for what else a
    /// URL names when the parser comes to it. A list of pairs in which the last has no location is
    /// an invalid parameter, and so are two schemas for elements in no namespace.
    bool validate = false;
    bool doSchema = false;
    bool schemaHasNamespace = false;
    bool keepPrefixes = false;
    const char* schemaLocation = nullptr;

    /// More schemas, with validate and doSchema, whose names need not be free of blanks. NULL for
    /// none.
    const SXMLSchemaName* schemas = nullptr;
    std::size_t schemaCount = 0;

    /// With validate: a document that is not validated by any grammar, since neither it nor the
    /// caller names one that is for its root element and can be read, is refused with CXMLError (2,
    /// message 3). A plain load takes it for valid.
    bool requireGrammar = false;

    /// With validate: how many problems a load may find before it ends. 1 ends it at the first one,
    /// as a plain load; with more, validity errors are collected and thrown together, at the end of
    /// the document or when there are so many. A fatal error always ends the load, and is the last
    /// one. 0 is no limit; of a stranger's document 4 MiB of texts end the load.
    unsigned int problemLimit = 1;

    /// NULL for a document that is trusted.
    const SXMLUntrusted* untrusted = nullptr;

    /// Called as the document is read: with the bytes read so far, which only grow, and all that
    /// there are, 0 if that is not known. At the end it is called once more if the last call did
    /// not tell of all bytes. If it returns false the load ends with a CXMLError (9, message 3,
    /// "stopped by the program"). What it throws ends the load, and arrives unchanged but for a
    /// CXMLException, which arrives as a CXMLError.
    bool (*progress)(void* context, std::uint64_t read, std::uint64_t total) = nullptr;
    void* progressContext = nullptr;
};

/// Where a document comes from: exactly one of fileName, path, bytes, descriptor and read is set.
/// Anything else throws CXMLError (1, "invalid parameter").
///
/// As with the settings, leave `size` as it is.
struct SXMLSource {
    /// Which fields there are.
    std::size_t size = sizeof(SXMLSource);

    /// A file, or what the parser's URLs name, as in CXMLManager::LoadDocument.
    const char* fileName = nullptr;

    /// A file, whatever characters its name is made of: never a URL.
    const char* path = nullptr;

    /// A block of memory, which is not copied. A length of 0 is an invalid parameter.
    const void* bytes = nullptr;
    std::size_t length = 0;

    /// An open file, pipe or socket, which is read from where it is to its end and not closed.
    int descriptor = -1;

    /// Reads up to `room` bytes, and returns how many: at least 1, or 0 at the end; or, where
    /// reading fails, the negative of an error number of the system, which becomes CXMLError (1,
    /// "Error loading '%s':..."). What it throws is as for progress. Each byte is asked for once,
    /// in order.
    std::ptrdiff_t (*read)(void* context, char* to, std::size_t room) = nullptr;
    void* readContext = nullptr;

    /// What errors call a document that is no file, and what relative names in it refer to; NULL is
    /// "Memfile" for bytes and "Stream" for the other two.
    const char* name = nullptr;
};

/// Loads a document into a tree. NULL only when there is no memory for the document object itself.
/// What CXMLManager::LoadDocument throws as CXMLException is a CXMLError here, with the same class
/// and text, but for one: of a document whose UTF-8 is cut off the parser says that the input
/// ended, and this says "invalid UTF-8: 0xC3". All else that it lets pass passes here, too.
NORVASK_API CXMLDocument* XMLLoad(const SXMLSource& source, const SXMLLoadSettings& settings);

/// Loads a document as callbacks. A CXMLException that a callback throws arrives as a CXMLError
/// with its class and text; one of a class derived from it, CXMLError itself among them, arrives
/// unchanged.
NORVASK_API void XMLLoad(const SXMLSource& source, const SXMLLoadSettings& settings,
                         CXMLSaxHandler& handler);

}  // namespace norvask

#endif
