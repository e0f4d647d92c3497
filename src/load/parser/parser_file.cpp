// CParserFile: the parser's own stream of the file, and views of it.
#include "load/parser/parser_file.h"

#include <cstring>
#include <xercesc/util/BinFileInputStream.hpp>
#include <xercesc/util/XMLException.hpp>

#include "foundation/parser_text.h"
#include "foundation/utf8.h"

namespace norvask {
namespace {

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

// Pipes and devices have no size, and what the system makes up when it is read has none either.
std::size_t SizeOf(BinInputStream* stream) noexcept {
    const auto* const file = dynamic_cast<const BinFileInputStream*>(stream);
    if (file == nullptr) {
        return 0;
    }
    try {
        return static_cast<std::size_t>(file->getSize());
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
      m_bIsGood(true) {}

BinInputStream* CParserFile::makeStream() const {
    return new (getMemoryManager()) CStreamView(*m_pStream);
}

std::size_t CParserFile::Read(char* to, std::size_t room) {
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
    try {
        static_cast<BinFileInputStream&>(*m_pStream).reset();
        return true;
    } catch (const xercesc::XMLException&) {
        return false;
    }
}

}  // namespace norvask
