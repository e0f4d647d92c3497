/// @file
/// @class norvask::CXMLDocument
/// One XML document, the owner of its tree.
///
/// **Role:** holds the root element and the reference to a DTD, answers queries from the root,
/// copies and saves. Made by CXMLManager::CreateDocument, CXMLManager::LoadDocument or Clone.
///
/// **Owner:** whoever received it, and ends it with Delete. The document owns its root and through
/// it the whole tree.
///
/// **Threads:** a document with its tree belongs to one thread at a time; different documents are
/// independent. Several threads may save one document at once as long as nobody changes or queries
/// it.
#ifndef NORVASK_DOCUMENT_H
#define NORVASK_DOCUMENT_H

#include <iosfwd>

#include "norvask/export.h"
#include "norvask/node.h"

namespace norvask {

struct SDocumentBody;

class NORVASK_API CXMLDocument {
public:
    /// Deliberate: copy and assignment copy what the fields say, not the tree: both documents show
    /// the same root and the same DTD reference from then on, and what one changes the other shows.
    /// The last of them to be deleted releases what they share. Clone makes a real copy.
    CXMLDocument(const CXMLDocument& other) noexcept;
    CXMLDocument& operator=(const CXMLDocument& other) noexcept;

protected:
    /// As SetDTDRef. Throws std::bad_alloc.
    CXMLDocument(const char* dtdName, const char* dtdPath);
    /// Destroys the object.
    virtual ~CXMLDocument();

public:
    /// Ends the document with its whole tree. The only way for a client to end a document that it
    /// did not derive; the pointer is invalid afterwards.
    virtual void Delete();

    /// Writes the document as UTF-8. With `format` tags stand on lines of their own, CR LF ends a
    /// line and TABs indent it; no whitespace is ever added inside or around character data, so
    /// from the first text or binary child of an element on, its children follow each other
    /// directly. Without `format` everything is one run. The last tag is not followed by a line
    /// end.
    /// Texts, values and names are escaped: `<`, `>`, `&`, the apostrophe and the quotation mark
    /// become `&#x3c;` `&#x3e;` `&#x26;` `&#x27;` `&#x22;`, and the control characters that XML
    /// cannot hold are left out. A TAB, CR or LF stays as it is, which parsers normalise when they
    /// read it back: in attribute values to a blank, and CR to LF in texts.
    ///
    /// Every element and attribute name, and the DTD's, is checked once more; an invalid one throws
    /// CXMLException (3, "Invalid XML name: '%s'.") with everything before it written (for an
    /// attribute, up to the attribute before). A text that the parser's transcoders cannot carry to
    /// UTF-8 throws their exception; with Debian's parser there is none.
    /// A document loaded with keepPrefixes may hold attributes named "xmlns:" (see manager.h),
    /// which are written as they are and which no parser accepts; XMLNameDefaultNamespaces
    /// (convenience_saving.h) renames them.
    ///
    /// To a stream: one that is not good throws CXMLException (1, "Error saving 'Stream'."), and a
    /// document without a root throws (1, "invalid parameter"), both before anything is written.
    /// After that the stream's state is not looked at: check it yourself when you are done. A
    /// stream with exceptions switched on throws them through this call.
    virtual void Save(std::ostream& out, bool format);

    /// To a file, which is created or emptied, through the stream variant. Does nothing at all, and
    /// reports nothing, when the document has no root or `fileName` is NULL. A file that cannot be
    /// opened throws CXMLException (1, "Error saving '%s'.") with its name. Deliberate: a device
    /// that becomes full, or any other failure half-way, is not reported and leaves a part of the
    /// document in the file, as does an exception. What the file held before is then lost.
    /// XMLSaveSafely (convenience_saving.h) reports every failure and keeps the old file until the
    /// new one is complete.
    virtual void Save(const char* fileName, bool format);

    /// The root element; NULL when there is none.
    virtual CXMLNode* GetRoot();

    /// Makes a new root, which is the answer, and ends the old one with its whole tree. `name` may
    /// be a string of the old tree. NULL or an invalid name throws CXMLException (3, "Invalid XML
    /// name: '%s'.") and the old root stays.
    virtual CXMLNode* CreateRoot(const char* name);

    /// A new document with a copy of the tree and of the DTD reference; it belongs to the caller.
    /// As with CXMLNode::CopyChild, attributes with an empty value are not copied. Throws
    /// CXMLException (4, "Error during initialisation of the XML parser") without a parser, (3,
    /// "Invalid XML name: '%s'.") for a name that the source got past the checks, and
    /// std::bad_alloc; nothing is left behind.
    virtual CXMLDocument* Clone();

    /// Sets the name and the system path that the document type declaration shows. Unless both are
    /// given and not empty, the reference is removed: it is never half set. The arguments may be
    /// the stored strings. The name is checked only when the document is saved, the path never.
    virtual void SetDTDRef(const char* dtdName, const char* dtdPath);

    /// The stored strings; NULL when there is no reference. Valid until SetDTDRef or the document's
    /// end.
    virtual const char* GetDTDName();
    virtual const char* GetDTDPath();

    /// As CXMLNode::GetNodes, but the first name is that of the root. The answer is never NULL; it
    /// is valid until the next query of this document, or of its root when the path has two steps
    /// or more.
    virtual CXMLNode** GetNodes(const char* path);

private:
    friend class CDocumentAccess;

    // The content (document_body.h), shared by copies.
    SDocumentBody* m_pBody;
};

}  // namespace norvask

#endif
