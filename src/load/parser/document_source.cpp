// The sources, one by one.
#include "load/parser/document_source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/URLInputSource.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLURL.hpp>

#include "foundation/errors.h"
#include "foundation/parser_text.h"
#include "load/parser/dom_string.h"
#include "load/source/file_access.h"

namespace norvask {
namespace {

using xercesc::InputSource;
using xercesc::SAX2XMLReader;
using xercesc::XMLException;

void ParseWrapped(SAX2XMLReader& reader, const InputSource& source, std::uint64_t size,
                  const CDocumentSource::CWrap& wrap) {
    if (wrap) {
        reader.parse(*wrap(source, size));
    } else {
        reader.parse(source);
    }
}

// What the parser makes of a name. Throws what it reports of one that it cannot use.
std::unique_ptr<InputSource> SourceNamed(const char* name) {
    const CParserString wide(name);
    xercesc::XMLURL url;
    if (xercesc::XMLURL::parse(wide.Get(), url) && !url.isRelative()) {
        return std::make_unique<xercesc::URLInputSource>(url);
    }
    return std::make_unique<xercesc::LocalFileInputSource>(wide.Get());
}

bool IsUrl(const char* name) {
    try {
        const CParserString wide(name);
        xercesc::XMLURL url;
        return xercesc::XMLURL::parse(wide.Get(), url) && !url.isRelative();
    } catch (const XMLException&) {
        return true;  // of a kind that the parser does not know
    }
}

CByteSource* BytesOf(std::optional<CParserFile>& file) {
    return file->HasSize() && file->Rewind() ? &*file : nullptr;
}

}  // namespace

CByteSource* CFileSource::Bytes() {
    if (!m_File.has_value()) {
        if (!CParserFile::IsFileName(m_pFileName)) {
            return nullptr;
        }
        try {
            m_File.emplace(m_pFileName);
        } catch (const XMLException&) {
            return nullptr;  // which the reader will throw once more
        }
    }
    return BytesOf(m_File);
}

// A file that is open is not opened again.
void CFileSource::Parse(SAX2XMLReader& reader, const CWrap& wrap) {
    if (m_File.has_value() && m_File->IsOpen() && (!m_File->HasSize() || m_File->Rewind())) {
        ParseWrapped(reader, *m_File, m_File->Size(), wrap);
        return;
    }
    std::unique_ptr<InputSource> source;
    if (wrap) {
        try {
            source = SourceNamed(m_pFileName);
        } catch (const XMLException&) {
            source = nullptr;  // the reader reports it
        }
    }
    if (source != nullptr) {
        ParseWrapped(reader, *source, 0, wrap);
    } else {
        reader.parse(m_pFileName);
    }
}

void CFileSource::ThrowFailed(const char* parserMessage) const {
    ThrowFileLoadFailed(m_pFileName, parserMessage);
}

std::string CFileSource::Name() const {
    return IsUrl(m_pFileName) ? m_pFileName : AbsolutePath(m_pFileName);
}

std::string CFileSource::WhyNot() const {
    return IsUrl(m_pFileName) ? "" : WhyNotReadable(m_pFileName);
}

CParserFile& CPathSource::File() {
    if (!m_File.has_value()) {
        m_File.emplace(m_pPath);
    }
    return *m_File;
}

CByteSource* CPathSource::Bytes() {
    try {
        File();
    } catch (const XMLException&) {
        return nullptr;
    }
    return BytesOf(m_File);
}

void CPathSource::Parse(SAX2XMLReader& reader, const CWrap& wrap) {
    CParserFile& file = File();
    if (file.IsOpen() && (!file.HasSize() || file.Rewind())) {
        ParseWrapped(reader, file, file.Size(), wrap);
    } else {
        reader.parse(xercesc::LocalFileInputSource(CParserString(m_pPath).Get()));
    }
}

void CPathSource::ThrowFailed(const char* parserMessage) const {
    ThrowFileLoadFailed(m_pPath, parserMessage);
}

std::string CPathSource::Name() const { return AbsolutePath(m_pPath); }

std::string CPathSource::WhyNot() const { return WhyNotReadable(m_pPath); }

CByteSource* CMemorySource::Bytes() noexcept {
    m_Bytes.Rewind();
    return &m_Bytes;
}

void CMemorySource::Parse(SAX2XMLReader& reader, const CWrap& wrap) {
    xercesc::MemBufInputSource source(m_pBuffer, m_nLength, m_pName);
    // The caller keeps the buffer alive, so the parser can read it where it lies.
    source.setCopyBufToStream(false);
    ParseWrapped(reader, source, m_nLength, wrap);
}

void CMemorySource::ThrowFailed(const char* parserMessage) const {
    ThrowMemoryLoadFailed(parserMessage);
}

// Lets the parser read what was read ahead, and then what comes.
class CReadSource::CInput final : public InputSource {
public:
    explicit CInput(CReadSource& source)
        : InputSource(CParserString(source.m_pName).Get()), m_Source(source) {}

    xercesc::BinInputStream* makeStream() const override {
        return new (getMemoryManager()) CStream(m_Source);
    }

private:
    class CStream final : public xercesc::BinInputStream {
    public:
        explicit CStream(CReadSource& source) noexcept : m_Source(source) {}
        XMLFilePos curPos() const override { return m_nRead; }
        // The parser tells the encoding by the first of its reads, however little that returns.
        XMLSize_t readBytes(XMLByte* const to, const XMLSize_t room) override {
            char* const bytes = reinterpret_cast<char*>(to);
            std::size_t count = m_Source.Read(bytes, room);
            for (std::size_t more = count; m_nRead == 0 && more != 0 && IsForMore(bytes, count);) {
                more = m_Source.Read(bytes + count, std::min(room, MOST_FIRST) - count);
                count += more;
            }
            m_nRead += count;
            return count;
        }
        const XMLCh* getContentType() const override { return nullptr; }

    private:
        static constexpr std::size_t MOST_FIRST = 1024;

        // Whether the first markup, which may be the declaration, is not there yet; as far as that
        // shows in any encoding. Characters are of up to four bytes.
        static bool IsForMore(const char* bytes, std::size_t count) noexcept {
            const char END_IN_EBCDIC = 0x6E;
            const bool isEbcdic = bytes[0] == 0x4C;
            return count < MOST_FIRST &&
                   (count % 4 != 0 ||
                    std::memchr(bytes, isEbcdic ? END_IN_EBCDIC : '>', count) == nullptr);
        }

        CReadSource& m_Source;
        XMLFilePos m_nRead = 0;
    };

    CReadSource& m_Source;
};

std::size_t CReadSource::Read(char* to, std::size_t room) {
    if (m_nUsed < m_nAhead) {
        const std::size_t count = std::min(room, m_nAhead - m_nUsed);
        std::memcpy(to, m_Ahead.data() + m_nUsed, count);
        m_nUsed += count;
        return count;
    }
    return m_bIsOver ? 0 : ReadOn(to, room);
}

// Behind the end nothing is asked for any more.
std::size_t CReadSource::ReadOn(char* to, std::size_t room) {
    const std::ptrdiff_t MOST_ERROR = 4095;  // what the system has
    const std::ptrdiff_t count = m_Read(to, room);
    if (count < 0) {
        throw SReadFailure{count < -MOST_ERROR ? EIO : static_cast<int>(-count)};
    }
    m_bIsOver = count == 0;
    return std::min(static_cast<std::size_t>(count), room);
}

void CReadSource::ReadAhead(std::size_t most, CWatch& watch) {
    const std::size_t BLOCK = 65536;
    while (m_nAhead < most && watch.IsInTime()) {
        if (m_nAhead == m_Ahead.size()) {
            m_Ahead.resize(std::min(most, std::max(BLOCK, 2 * m_nAhead)));
        }
        m_nAhead += ReadOn(&m_Ahead[m_nAhead], m_Ahead.size() - m_nAhead);
        if (m_bIsOver) {
            m_Bytes.emplace(reinterpret_cast<const unsigned char*>(m_Ahead.data()), m_nAhead);
            return;
        }
    }
}

CByteSource* CReadSource::Bytes() noexcept {
    if (!m_Bytes.has_value()) {
        return nullptr;
    }
    m_Bytes->Rewind();
    return &*m_Bytes;
}

// The parser tells the encoding by what its first read gives: the byte order mark, and the
// declaration to its end. Of a document without one that is the first tag, or not much.
void CReadSource::ReadBeginning() {
    const std::size_t FEW = 4;  // and the units of the encodings have as many bytes, at most
    const std::size_t MOST = 1024;
    const std::size_t BLOCK = 49152;
    const auto isEnough = [&] {
        if (m_nAhead < FEW) {
            return false;
        }
        const char end = m_Ahead[0] == '\x4C' ? '\x6E' : '>';  // EBCDIC has others
        const bool isWide = std::memchr(m_Ahead.data(), '\0', FEW) != nullptr;
        return m_nAhead >= MOST || (std::memchr(m_Ahead.data(), end, m_nAhead) != nullptr &&
                                    (!isWide || m_nAhead % FEW == 0));
    };
    while (!m_bIsOver && !isEnough()) {
        m_Ahead.resize(std::max(m_Ahead.size(), BLOCK));
        m_nAhead += ReadOn(&m_Ahead[m_nAhead], m_Ahead.size() - m_nAhead);
    }
}

void CReadSource::Parse(SAX2XMLReader& reader, const CWrap& wrap) {
    m_nUsed = 0;
    ReadBeginning();
    ParseWrapped(reader, CInput(*this), m_Bytes.has_value() ? m_nAhead : 0, wrap);
}

void CReadSource::ThrowFailed(const char* parserMessage) const {
    ThrowFileLoadFailed(m_pName, parserMessage);
}

}  // namespace norvask
