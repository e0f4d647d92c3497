// CParserFile: the parser's own stream of the file, and views of it.
#include "load/parser/parser_file.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <xercesc/util/BinFileInputStream.hpp>
#include <xercesc/util/BinMemInputStream.hpp>
#include <xercesc/util/XMLException.hpp>

#include "foundation/parser_text.h"
#include "foundation/utf8.h"

namespace norvask {
namespace {

// What the parser reads of a file before it begins, and never again.
const std::size_t PARSER_BLOCK = 49152;

using xercesc::BinFileInputStream;
using xercesc::BinInputStream;

class CStreamView final : public BinInputStream {
public:
    explicit CStreamView(BinInputStream& stream) noexcept : m_Stream(stream) {}

    XMLFilePos curPos() const override { return m_Stream.curPos(); }
    XMLSize_t readBytes(XMLByte* const to, const XMLSize_t room) override {
        return m_Stream.readBytes(to, room);
    }
    const XMLCh* getContentType() const override { return m_Stream.getContentType(); }

private:
    BinInputStream& m_Stream;
};

// Pipes and devices have no size, and what the system makes up when it is read has none either. The
// end of a directory may be as far away as can be.
std::size_t SizeOf(BinInputStream* stream) {
    const auto* const file = dynamic_cast<const BinFileInputStream*>(stream);
    if (file == nullptr) {
        return 0;
    }
    try {
        const XMLFilePos size = file->getSize();
        return size < std::numeric_limits<std::int64_t>::max() ? static_cast<std::size_t>(size) : 0;
    } catch (const xercesc::XMLException&) {
        return 0;
    }
}

}  // namespace

// A colon may be that of a URL, and after a percent sign a URL has a number.
bool CParserFile::IsFileName(const char* fileName) noexcept {
    return std::strpbrk(fileName, ":%") == nullptr && IsUtf8(fileName);
}

CParserFile::CParserFile(const char* fileName)
    : LocalFileInputSource(CParserString(fileName).Get()),
      m_pStream(LocalFileInputSource::makeStream()),
      m_nSize(SizeOf(m_pStream.get())),
      m_bIsGood(true),
      m_nRead(0) {
    if (m_nSize != 0 && m_nSize < PARSER_BLOCK) {
        Hold();
    }
}

// One byte more is asked for, to learn whether that is all. A file that does not have its size, or
// cannot be read, is not held.
void CParserFile::Hold() {
    std::unique_ptr<char[]> whole(new char[m_nSize + 1]);
    if (ReadStream(whole.get(), m_nSize + 1) == m_nSize && m_bIsGood) {
        m_pWhole.swap(whole);
    } else {
        m_bIsGood = Rewind() && m_bIsGood;
    }
}

BinInputStream* CParserFile::makeStream() const {
    if (m_pWhole != nullptr) {
        return new (getMemoryManager())
            xercesc::BinMemInputStream(reinterpret_cast<const XMLByte*>(m_pWhole.get()), m_nSize,
                                       xercesc::BinMemInputStream::BufOpt_Reference);
    }
    return new (getMemoryManager()) CStreamView(*m_pStream);
}

std::size_t CParserFile::Read(char* to, std::size_t room) {
    if (m_pWhole == nullptr) {
        return ReadStream(to, room);
    }
    const std::size_t count = std::min(room, m_nSize - m_nRead);
    std::memcpy(to, m_pWhole.get() + m_nRead, count);
    m_nRead += count;
    return count;
}

std::size_t CParserFile::ReadStream(char* to, std::size_t room) {
    std::size_t count = 0;
    try {
        std::size_t more = 1;
        while (count < room && more != 0) {
            more = m_pStream->readBytes(reinterpret_cast<XMLByte*>(to) + count, room - count);
            count += more;
        }
    } catch (const xercesc::XMLException&) {
        m_bIsGood = false;
    }
    return count;
}

bool CParserFile::Rewind() noexcept {
    m_nRead = 0;
    if (m_pWhole != nullptr) {
        return true;
    }
    try {
        static_cast<BinFileInputStream&>(*m_pStream).reset();
        return true;
    } catch (...) {  // not only why, but also why not even that could be told
        return false;
    }
}

}  // namespace norvask
