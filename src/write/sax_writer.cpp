// CXMLSaxWriter: every call passes its bytes to the stream in one piece, made by the rules of
// output.h. What the writer remembers changes step by step as they are made.
#include "norvask/sax_writer.h"

#include <cstring>
#include <fstream>
#include <memory>
#include <utility>

#include "foundation/base64.h"
#include "foundation/errors.h"
#include "foundation/known_text.h"
#include "foundation/value_text.h"
#include "tree/attribute_strings.h"
#include "write/output.h"
#include "write/pen.h"
#include "write/writer_body.h"

namespace norvask {
namespace {

std::unique_ptr<char[]> CopyOf(const char* text) {
    const std::size_t bytes = std::strlen(text) + 1;
    std::unique_ptr<char[]> copy(new char[bytes]);
    std::memcpy(copy.get(), text, bytes);
    return copy;
}

// Empty names are left out, not refused.
bool IsSkipped(const SKnownText& attributeName) { return attributeName.IsEmpty(); }

SKnownText NameOf(const CXMLAttribut* attribute) noexcept {
    return CAttributeAccess::Name(attribute).Known();
}

// The first attribute whose name is none; NULL when all are right.
const CXMLAttribut* FirstRefused(CXMLAttribut** attributes) {
    for (; attributes != nullptr && *attributes != nullptr; ++attributes) {
        const SKnownText name = NameOf(*attributes);
        if (!IsSkipped(name) && !name.Is(KNOWN_NAME) && !JudgeName(name.text).Is(KNOWN_NAME)) {
            return *attributes;
        }
    }
    return nullptr;
}

void RequireOpen(const SWriterBody& writer) {
    if (!writer.stream.IsGood()) {
        ThrowDocumentNotOpen();
    }
}

// One call's output, to a stream that is there.
class CWriterCall {
public:
    explicit CWriterCall(SWriterBody& writer)
        : m_Writer(writer), m_Output(writer.stream.Get(), m_Buffer, sizeof(m_Buffer)) {}

    // Runs the steps of a call; whatever is thrown, what they wrote before is written.
    template <typename Steps>
    void Run(Steps steps) {
        m_Output.FlushAfter([this, steps] { steps(m_Output); });
    }

    // Closes a start tag: the element gets content.
    void CloseTag(CPen& pen) {
        if (m_Writer.tagOpen) {
            pen.Literal(">");
            m_Writer.tagOpen = false;
        }
    }
    void CloseTag() {
        if (m_Writer.tagOpen) {
            m_Output.Literal(">");
            m_Writer.tagOpen = false;
        }
    }

    void NewLine(CPen& pen) {
        if (m_Writer.format && !m_Writer.textWritten) {
            pen.PlainNewLine(m_Writer.depth);
        }
    }

private:
    SWriterBody& m_Writer;
    char m_Buffer[COutput::SMALL];
    COutput m_Output;
};

}  // namespace

CXMLSaxWriter::CXMLSaxWriter() : m_pBody(new SWriterBody) {}

CXMLSaxWriter::~CXMLSaxWriter() {
    if (m_pBody->stream.IsThere()) {
        m_pBody->stream.Abandon();
        m_pBody->file.Remove();
    }
    delete m_pBody;
}

void CXMLSaxWriter::StartDocument(std::ostream* stream, bool format, bool ownStream) {
    m_pBody->stream.Take(stream, ownStream);
    m_pBody->format = format;
    m_pBody->depth = 0;
    if (!m_pBody->stream.IsGood()) {
        m_pBody->stream.Drop();
        ThrowSavingFailed(m_pBody->file.Name());
    }
    try {
        *stream << "<?xml version=\"1.0\"?>";
    } catch (...) {
        m_pBody->stream.Drop();
        throw;
    }
}

void CXMLSaxWriter::StartDocument(const char* fileName, bool format) {
    if (m_pBody->stream.IsThere()) {
        ThrowDocumentStillOpen();
    }
    std::unique_ptr<char[]> name = CopyOf(fileName == nullptr ? "" : fileName);
    std::unique_ptr<std::ofstream> file = std::make_unique<std::ofstream>(
        name.get(), std::ios::out | std::ios::trunc | std::ios::binary);
    m_pBody->file.Remember(std::move(name), file->is_open());
    StartDocument(file.release(), format, true);
}

void CXMLSaxWriter::EndDocument() {
    RequireOpen(*m_pBody);
    if (!m_pBody->names.IsEmpty()) {
        ThrowElementsStillOpen();
    }
    m_pBody->stream.Close();
    m_pBody->stream.Drop();
    m_pBody->file.Forget();
    m_pBody->depth = 0;
}

void CXMLSaxWriter::StartElement(const char* name, CXMLAttribut** attributes) {
    RequireOpen(*m_pBody);
    // What mostly needs memory comes before anything is written: the checks of names, whose results
    // count where the name's turn has come, and room for the element's name, since an element whose
    // tag stands in the document is open.
    const SKnownText judged = JudgeName(name);
    m_pBody->names.Reserve(judged.length);
    const bool isName = judged.Is(KNOWN_NAME);
    const CXMLAttribut* const refused = isName ? FirstRefused(attributes) : nullptr;
    CWriterCall call(*m_pBody);
    call.Run([&](COutput& output) {
        CPen pen(output);
        call.CloseTag(pen);
        call.NewLine(pen);
        ++m_pBody->depth;
        pen.Give();
        if (!isName) {
            ThrowInvalidName(name);
        }
        output.Name("<", judged);
        pen.Take();
        for (; attributes != nullptr && *attributes != nullptr; ++attributes) {
            if (*attributes == refused) {
                pen.Give();
                ThrowInvalidName(NameOf(refused).text);
            }
            const CTreeString attribute = CAttributeAccess::Name(*attributes);
            if (attribute.IsEmpty()) {
                continue;  // left out, not refused
            }
            if (!pen.ShortName(" ", attribute)) {
                pen.Give();
                output.Name(" ", attribute.Known());
                pen.Take();
            }
            pen.Literal("=\"");
            pen.Text(CAttributeAccess::Value(*attributes));
            pen.Literal("\"");
        }
        pen.Give();
    });
    m_pBody->tagOpen = true;
    m_pBody->names.Push(judged);
    m_pBody->textWritten = false;
}

void CXMLSaxWriter::EndElement() {
    RequireOpen(*m_pBody);
    if (m_pBody->names.IsEmpty()) {
        ThrowNoElementToEnd();
    }
    if (m_pBody->depth > 0) {
        --m_pBody->depth;
    }
    CWriterCall call(*m_pBody);
    if (m_pBody->tagOpen) {
        call.Run([](COutput& output) { output.Literal("/>"); });
        m_pBody->tagOpen = false;
    } else {
        call.Run([&](COutput& output) {
            CPen pen(output);
            call.NewLine(pen);
            const SKnownText name = m_pBody->names.Top();
            if (!pen.ShortName("</", name)) {
                pen.Give();
                output.Name("</", name);
                pen.Take();
            }
            pen.Literal(">");
            pen.Give();
        });
        m_pBody->textWritten = false;
    }
    m_pBody->names.Pop();
}

void CXMLSaxWriter::Characters(const char* text) {
    RequireOpen(*m_pBody);
    CWriterCall call(*m_pBody);
    call.Run([&](COutput& output) {
        call.CloseTag();
        output.Text(text);
    });
    m_pBody->textWritten = true;
}

void CXMLSaxWriter::Data(const unsigned char* data, long length, bool cdata) {
    RequireOpen(*m_pBody);
    const CBase64Text text(data, length < 1 ? 0 : static_cast<std::size_t>(length));
    CWriterCall call(*m_pBody);
    call.Run([&](COutput& output) {
        call.CloseTag();
        output.Base64(text, cdata);
    });
    m_pBody->textWritten = true;
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
