/// @file
/// @class norvask::CXMLException
/// The one exception type of the library.
///
/// Every failure that the library itself finds is thrown as a CXMLException, by value; catch it by
/// reference. It carries an error class (GetID) for programs and a finished English text
/// (GetMessage) for people. What the library does not find itself passes through as it is:
/// std::bad_alloc, the exceptions of a stream that has them switched on, whatever a callback or a
/// derived class throws, and the parser's transcoding and out-of-memory errors (which are no
/// std::exception).
///
/// The pairs of error class and message that the library throws:
///
///     ID  number  text
///      1    2     "Error loading '%s':\n\n'%s'"          parser exception, file load
///      1    4     "Error saving '%s'."                   file not opened, stream not good
///      1    5     "The last written document is not closed."
///      1    8     "The document is not open."            writer
///      1    9     "Wrong XML format"                     writer: no element to end
///      1   11     "XML parser error\n\n'%s'"             parser exception, memory load
///      1   12     "invalid parameter"
///      1   13     "Function is not supported by this node type."
///      2    3     "Load error:\nFile: '%s'  Line '%s':\n\n'%s'"
///      2    7     "The node '%s' does not contain valid text"
///      3    6     "Invalid XML name: '%s'."
///      4    1     "Error during initialisation of the XML parser"
///      6    9     "Wrong XML format"                     text child cannot be set
///      7   14     "Error during conversion."             date or time out of range
///      8    9     "Wrong XML format"                     writer: document ended, elements open
///      9    3     "Load error:\nFile: '%s'  Line '%s':\n\n'%s'"
///                 a document beyond the limits for strangers, or a load that the program stopped
///                 (load.h)
///
/// The message table has one more text, 10 "Invalid character in string '%s'.". Nothing raises it;
/// it keeps its place so that the numbers of the others stay what they are.
///
/// **Threads:** exceptions may be built, copied, assigned and destroyed on any thread; one object
/// belongs to one thread at a time, as usual.
#ifndef NORVASK_EXCEPTION_H
#define NORVASK_EXCEPTION_H

#include "norvask/export.h"

namespace norvask {

// Deliberate: the destructor is not virtual, and a client need not hear of it.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class NORVASK_API CXMLException {
public:
    /// A ready-made text, copied. NULL gives an empty text.
    CXMLException(int id, const char* text);

    /// The text of the message table with this number (1 to 14), taken as it stands: a "%s" in it
    /// stays visible. Any other number gives an empty text; the ID is kept all the same.
    CXMLException(int id, unsigned int number);

    /// As above, with the "%s" places filled from the arguments in order. Of each argument the
    /// first 255 bytes are used, less where the cut would split a UTF-8 character; NULL prints as
    /// nothing. Arguments for which the text has no place are ignored, and a place without an
    /// argument prints as nothing.
    CXMLException(int id, unsigned int number, const char* arg1);
    CXMLException(int id, unsigned int number, const char* arg1, const char* arg2);
    CXMLException(int id, unsigned int number, const char* arg1, const char* arg2,
                  const char* arg3);

    /// Makes a text of its own, so the copy outlives its source. May throw std::bad_alloc.
    /// Deliberate: the source is a non-const reference. The class has always been declared so, and
    /// with it an exception is copied only where somebody names the object, never from a const
    /// view.
    CXMLException(CXMLException& other);

    /// Deliberate: assignment shares the text instead of copying it, so it cannot fail and both
    /// objects return the same pointer. The last object that shows a text releases it.
    CXMLException& operator=(const CXMLException& other) noexcept;

    /// Deliberate: not virtual. The virtual table holds the two operations below and nothing else.
    ~CXMLException();

    /// The finished text. Never NULL. It stays valid until the exception is assigned to or
    /// destroyed, and beyond that as long as another object shares it.
    virtual const char* GetMessage();

    /// The error class: the first argument of the constructor, not the number of the message.
    virtual int GetID();

private:
    friend class CXMLError;

    /// Shares the text of another, as assignment does.
    struct SShared {
        const CXMLException& other;
    };
    explicit CXMLException(const SShared& text) noexcept;

    char* m_pMessage;
    int m_nID;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace norvask

#endif
