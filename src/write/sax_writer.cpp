// CXMLSaxWriter: every call hands its bytes to the stream in one piece, made by the rules of output.h. What the
// writer remembers changes step by step as they are made.
#include "norvask/sax_writer.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>

#include "foundation/errors.h"
#include "foundation/parser_text.h"
#include "foundation/text_rules.h"
#include "foundation/utf8.h"
#include "foundation/value_text.h"
#include "write/output.h"
#include "write/string_stack.h"
#include "write/tree_markup.h"

namespace norvask {
namespace {

std::unique_ptr<char[]> CopyOf(const char* text) {
    const std::size_t bytes = std::strlen(text) + 1;
    std::unique_ptr<char[]> copy(new char[bytes]);
    std::memcpy(copy.get(), text, bytes);
    return copy;
}

// The name of an element. Well-formed UTF-8 needs no escaping, since no character of markup is part of a name.
template <std::size_t N>
void WriteTagName(COutput& output, const char (&token)[N], const char* name, std::size_t length) {
    if (LocalEncodingIsUtf8() && (IsAscii(name, length) || IsUtf8(name))) {
        output.LiteralAndPlain(token, name, length);
    } else {
        output.Literal(token);
        output.Escaped(name);
    }
}

// Empty names are left out, not refused.
bool IsSkipped(const CXMLAttribut* attribute) { return *CAttributeAccess::Name(attribute) == '\0'; }

// The first attribute whose name is none; NULL when all are right.
const CXMLAttribut* FirstRefused(CXMLAttribut** attributes) {
    for (; attributes != nullptr && *attributes != nullptr; ++attributes) {
        if (!IsSkipped(*attributes) && !IsName(CAttributeAccess::Name(*attributes))) {
            return *attributes;
        }
    }
    return nullptr;
}

void CloseIfFile(std::ostream* stream) {
    std::ofstream* file = dynamic_cast<std::ofstream*>(stream);
    if (file != nullptr && file->good()) {
        file->close();
    }
}

// A link may be anybody's, so it is not followed.
bool IsRegularFile(const char* name, struct stat& status) noexcept {
    return lstat(name, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

// One call's output.
class CWriterCall {
public:
    explicit CWriterCall(CXMLSaxWriter& writer)
        : m_Writer(writer), m_Output(*writer.m_pStream, m_Buffer, sizeof(m_Buffer)) {}

    static void RequireOpen(const CXMLSaxWriter& writer) {
        if (writer.m_pStream == nullptr || !writer.m_pStream->good()) {
            ThrowDocumentNotOpen();
        }
    }

    static void EndStream(CXMLSaxWriter& writer) noexcept {
        if (writer.m_bOwnStream) {
            delete writer.m_pStream;
        }
        writer.m_pStream = nullptr;
        writer.m_bOwnStream = false;
    }

    // Remembers which file was opened under the stored name: no particular one after a failure, none at all when
    // the name is not that of a regular file.
    static void NoteFile(CXMLSaxWriter& writer, bool isOpen) noexcept {
        struct stat status;
        const bool isKnown = isOpen && IsRegularFile(writer.m_pFileName, status);
        writer.m_nFileDevice = isKnown ? status.st_dev : 0;
        writer.m_nFileNode = isKnown ? status.st_ino : isOpen ? NO_FILE : ANY_FILE;
    }

    // The name may lead to another file by now, which then is not ours.
    static void RemoveUnfinished(const CXMLSaxWriter& writer) noexcept {
        struct stat status;
        if (IsRegularFile(writer.m_pFileName, status) &&
            (writer.m_nFileNode == ANY_FILE ||
             (status.st_dev == writer.m_nFileDevice && status.st_ino == writer.m_nFileNode))) {
            std::remove(writer.m_pFileName);
        }
    }

    // Runs the steps of a call; whatever is thrown, what they wrote before is written.
    template <typename Steps>
    void Run(Steps steps) {
        m_Output.FlushAfter([this, steps] { steps(m_Output); });
    }

    // Closes a start tag: the element gets content.
    void CloseTag() {
        if (m_Writer.m_bTagOpen) {
            m_Output.Literal(">");
            m_Writer.m_bTagOpen = false;
        }
    }

    void NewLine() {
        if (m_Writer.m_bFormat && !m_Writer.m_bTextWritten) {
            m_Output.PlainNewLine(static_cast<std::size_t>(m_Writer.m_nDepth));
        }
    }

private:
    static const std::uint64_t ANY_FILE = 0;
    static const std::uint64_t NO_FILE = static_cast<std::uint64_t>(-1);

    CXMLSaxWriter& m_Writer;
    char m_Buffer[COutput::SMALL];
    COutput m_Output;
};

CXMLSaxWriter::CXMLSaxWriter()
    : m_pElementStack(new CStringStack),
      m_pStream(nullptr),
      m_bOwnStream(false),
      m_pFileName(nullptr),
      m_nFileDevice(0),
      m_nFileNode(0),
      m_nDepth(0),
      m_bFormat(true),
      m_bTextWritten(false),
      m_bTagOpen(false) {}

CXMLSaxWriter::~CXMLSaxWriter() {
    if (m_pStream != nullptr) {
        try {
            CloseIfFile(m_pStream);
        } catch (...) {  // a stream with exceptions; the document is lost anyway
        }
        CWriterCall::EndStream(*this);
        if (m_pFileName != nullptr && *m_pFileName != '\0') {
            CWriterCall::RemoveUnfinished(*this);
        }
    }
    delete m_pElementStack;
    delete[] m_pFileName;
}

void CXMLSaxWriter::StartDocument(std::ostream* stream, bool format, bool ownStream) {
    if (m_pStream != stream) {
        CWriterCall::EndStream(*this);
    }
    m_pStream = stream;
    m_bFormat = format;
    m_bOwnStream = ownStream;
    m_nDepth = 0;
    if (stream == nullptr || !stream->good()) {
        CWriterCall::EndStream(*this);
        ThrowSavingFailed(m_pFileName);
    }
    try {
        *stream << "<?xml version=\"1.0\"?>";
    } catch (...) {
        CWriterCall::EndStream(*this);
        throw;
    }
}

void CXMLSaxWriter::StartDocument(const char* fileName, bool format) {
    if (m_pStream != nullptr) {
        ThrowDocumentStillOpen();
    }
    std::unique_ptr<char[]> name = CopyOf(fileName == nullptr ? "" : fileName);
    std::unique_ptr<std::ofstream> file = std::make_unique<std::ofstream>(
        name.get(), std::ios::out | std::ios::trunc | std::ios::binary);
    delete[] m_pFileName;
    m_pFileName = name.release();
    CWriterCall::NoteFile(*this, file->is_open());
    StartDocument(file.release(), format, true);
}

void CXMLSaxWriter::EndDocument() {
    CWriterCall::RequireOpen(*this);
    if (!m_pElementStack->IsEmpty()) {
        ThrowElementsStillOpen();
    }
    CloseIfFile(m_pStream);
    CWriterCall::EndStream(*this);
    delete[] m_pFileName;
    m_pFileName = nullptr;
    m_nDepth = 0;
}

void CXMLSaxWriter::StartElement(const char* name, CXMLAttribut** attributes) {
    CWriterCall::RequireOpen(*this);
    // What mostly needs memory comes before anything is written: room for the name, since an element whose tag
    // stands in the document is open, and the checks of names. Their answers count where the name's turn has come.
    const std::size_t length = name == nullptr ? 0 : std::strlen(name);
    m_pElementStack->Reserve(length);
    const bool isName = IsXmlName(name);
    const CXMLAttribut* const refused = isName ? FirstRefused(attributes) : nullptr;
    CWriterCall call(*this);
    call.Run([&](COutput& output) {
        call.CloseTag();
        call.NewLine();
        ++m_nDepth;
        if (!isName) {
            ThrowInvalidName(name);
        }
        WriteTagName(output, "<", name, length);
        for (; attributes != nullptr && *attributes != nullptr; ++attributes) {
            if (*attributes == refused) {
                ThrowInvalidName(CAttributeAccess::Name(refused));
            }
            if (!IsSkipped(*attributes)) {
                WriteAttribute(output, *attributes);
            }
        }
    });
    m_bTagOpen = true;
    m_pElementStack->Push(name, length);
    m_bTextWritten = false;
}

void CXMLSaxWriter::EndElement() {
    CWriterCall::RequireOpen(*this);
    if (m_pElementStack->IsEmpty()) {
        ThrowNoElementToEnd();
    }
    if (m_nDepth > 0) {
        --m_nDepth;
    }
    CWriterCall call(*this);
    if (m_bTagOpen) {
        call.Run([](COutput& output) { output.Literal("/>"); });
        m_bTagOpen = false;
    } else {
        call.Run([&](COutput& output) {
            call.NewLine();
            WriteTagName(output, "</", m_pElementStack->Top(), m_pElementStack->TopLength());
            output.Literal(">");
        });
        m_bTextWritten = false;
    }
    m_pElementStack->Pop();
}

void CXMLSaxWriter::Characters(const char* text) {
    CWriterCall::RequireOpen(*this);
    CWriterCall call(*this);
    call.Run([&](COutput& output) {
        call.CloseTag();
        output.Escaped(text);
    });
    m_bTextWritten = true;
}

void CXMLSaxWriter::Data(const unsigned char* data, long length, bool cdata) {
    CWriterCall::RequireOpen(*this);
    const CBase64Text text(data, length < 1 ? 0 : static_cast<std::size_t>(length));
    CWriterCall call(*this);
    call.Run([&](COutput& output) {
        call.CloseTag();
        output.Base64(text, cdata);
    });
    m_bTextWritten = true;
}

void CXMLSaxWriter::Date(int year, int month, int day) {
    SValueText text;
    Characters(FormatDate(text, year, month, day));
}

void CXMLSaxWriter::DateTime(int year, int month, int day, int hour, int minute, int second) {
    SValueText text;
    Characters(FormatDateTime(text, year, month, day, hour, minute, second));
}

void CXMLSaxWriter::Time(int hour, int minute, int second) {
    SValueText text;
    Characters(FormatTime(text, hour, minute, second));
}

void CXMLSaxWriter::Double(const double& value) {
    SValueText text;
    Characters(FormatDouble(text, value));
}

void CXMLSaxWriter::Long(long value) {
    SValueText text;
    Characters(FormatLong(text, value));
}

void CXMLSaxWriter::Bool(bool value, bool numeric) { Characters(FormatBool(value, numeric)); }

}  // namespace norvask
