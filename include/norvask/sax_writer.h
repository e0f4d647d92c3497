/// @file
/// @class norvask::CXMLSaxWriter
/// Writes a document element by element, without a tree.
///
///     CXMLSaxWriter writer;
///     writer.StartDocument("list.xml", true);
///     writer.StartElement("list", nullptr);
///     writer.Long(42);
///     writer.EndElement();
///     writer.EndDocument();
///
/// **Role:** checks that the calls form a nested document and writes each of them at once, in the
/// form in which trees are saved (document.h): UTF-8, markup escaped, CR LF as line end. It keeps
/// nothing but the names of the open elements, so a document may have any size.
///
/// **Owner:** the writer owns the file that it opened, and a stream that it was given for its own.
/// Any other stream is yours and must live until EndDocument or the writer's end.
///
/// **Threads:** a writer belongs to one thread at a time; writers on different streams are
/// independent.
///
/// **States:** no document; document open; document open with a start tag that is not closed yet,
/// since it may still become an empty element. "Not open" below means no document, or a stream that
/// is not good(): a stream that goes bad in the middle is found by the next call, not by the one
/// that wrote. Exceptions of a stream that has them switched on pass through, as do std::bad_alloc
/// and the parser's own out-of-memory exception. A stream must not call its own writer.
#ifndef NORVASK_SAX_WRITER_H
#define NORVASK_SAX_WRITER_H

#include <iosfwd>

#include "norvask/attribut.h"
#include "norvask/export.h"

namespace norvask {

struct SWriterBody;

class NORVASK_API CXMLSaxWriter {
public:
    /// No document. Throws std::bad_alloc.
    CXMLSaxWriter();

    /// Deliberate: a writer is not copied. Two that write one document would each close its
    /// elements and end its stream.
    CXMLSaxWriter(const CXMLSaxWriter& other) = delete;
    CXMLSaxWriter& operator=(const CXMLSaxWriter& other) = delete;

    /// Ends a document that is still open as unfinished: a std::ofstream that is good() is closed
    /// (a caller's too), an owned stream is deleted, and the file whose name is stored is removed:
    /// a regular file only, never a device, a pipe, a directory, a symbolic link or what it leads
    /// to, and not when the name by now leads to another file than the one that was opened. A name
    /// is stored by the file variant of StartDocument and dropped by EndDocument; deliberate: a
    /// start that failed leaves it, so the destructor of a writer that then goes on with a stream
    /// of the caller honours it still. Nothing is thrown.
    ///
    /// A process that was forked meanwhile has a copy of the writer, but the document is its
    /// parent's: there nothing is removed, a stream of the caller is left as it is, and an owned
    /// std::ofstream is closed without the bytes that it has not written yet.
    virtual ~CXMLSaxWriter();

    /// @name The order of the declarations is part of the binary interface
    /// @{

    /// Starts a document on a stream and writes the declaration. NULL or a stream that is not
    /// good() throws (1, "Error saving '%s'.") with the stored file name, normally empty.
    ///
    /// - format: line ends and indentation, see StartElement.
    /// - ownStream: the writer deletes the stream when the document ends, also when it fails to
    ///   start.
    ///
    /// Whatever is thrown, the writer then has no document, and an owned stream is gone. An
    /// override must take over an owned stream in the same way.
    /// Deliberate: does not refuse when a document is open, so a derived class can go on with
    /// another stream in the middle: the open elements stay open, a start tag that is not closed
    /// yet is closed on the new stream, and the depth of the indentation begins again. An owned
    /// stream of before is deleted, except when it is given again: then it is owned or not as said
    /// now.
    virtual void StartDocument(std::ostream* stream, bool format, bool ownStream);

    /// Starts a document in a new file; an existing one is emptied. Throws (1, "The last written
    /// document is not closed.") when a document is open, which is left alone; (1, "Error saving
    /// '%s'.") when the file cannot be opened. NULL counts as an empty name. Opens the stream and
    /// hands it to the operation above.
    virtual void StartDocument(const char* fileName, bool format);

    /// Ends the document; nothing is written. A std::ofstream is closed (a caller's too), an owned
    /// stream deleted, the file name dropped. Throws (1, "The document is not open."); (8, "Wrong
    /// XML format") when elements are open, which can then still be ended.
    /// Deliberate: closing is not checked, so a disk that fills up with the last bytes goes
    /// unnoticed here. Where that matters, switch on the exceptions of the stream; a derived class
    /// does it for files too, in StartDocument(std::ostream*, ...). A document of which the closing
    /// throws stays open, so the destructor removes its file.
    virtual void EndDocument();

    /// Writes a start tag. `attributes` is NULL or an array ended by a NULL, of which names and
    /// values are read and nothing is kept; deliberate: one with an empty name is left out in
    /// silence. With format the tag stands on a line of its own, indented by one TAB for each open
    /// element, unless content was the last that was written: exactly one line end is left out
    /// behind content, and the tags after it are indented again.
    /// Throws (1, "The document is not open."); (3, "Invalid XML name: '%s'.") for the element's
    /// name or an attribute's. Then what came before the name has been written, the depth of
    /// indentation is one higher for the rest of the document, and the element is not open.
    virtual void StartElement(const char* name, CXMLAttribut** attributes);

    /// Ends the innermost open element: as an empty element if it has no content, else with an end
    /// tag, which with format stands like a start tag on a line of its own except directly behind
    /// content. Throws (1, "The document is not open."); (1, "Wrong XML format") when no element is
    /// open.
    virtual void EndElement();

    /// Writes character data, escaped; NULL writes none, and still counts as content like an empty
    /// text. Outside of an element it is written as it comes. Throws (1, "The document is not
    /// open.").
    virtual void Characters(const char* text);

    /// Writes bytes as Base64, with `cdata` in a CDATA section, which a tree reads back as a binary
    /// node, else as character data. NULL, or a length in bytes of 0 or less, writes none; the
    /// section then is empty. Throws (1, "The document is not open.").
    virtual void Data(const unsigned char* data, long length, bool cdata);

    /// Write a typed value in the form that convert.h describes, with its ranges, through
    /// Characters: an override of that receives them all. A value out of range throws (7, "Error
    /// during conversion.") before anything else is looked at.
    virtual void Date(int year, int month, int day);
    virtual void DateTime(int year, int month, int day, int hour, int minute, int second);
    virtual void Time(int hour, int minute, int second);
    virtual void Double(const double& value);
    virtual void Long(long value);
    virtual void Bool(bool value, bool numeric);
    /// @}

private:
    // What the writer holds (write/writer_body.h).
    SWriterBody* m_pBody;
};

}  // namespace norvask

#endif
