// Internal. CDocumentSource: where a document comes from: its bytes for the fast lane, how the
// parser is set going, and how the parser's own exceptions are told.
#ifndef NORVASK_LOAD_PARSER_DOCUMENT_SOURCE_H
#define NORVASK_LOAD_PARSER_DOCUMENT_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <xercesc/sax2/SAX2XMLReader.hpp>

#include "load/parser/parser_file.h"
#include "load/source/byte_source.h"
#include "load/watch/watch.h"

namespace norvask {

// A read of the program that failed, with the error number of the system.
struct SReadFailure {
    int error;
};

class CDocumentSource {
public:
    CDocumentSource() = default;
    CDocumentSource(const CDocumentSource&) = delete;
    CDocumentSource& operator=(const CDocumentSource&) = delete;
    virtual ~CDocumentSource() = default;

    // Reads so many bytes of what cannot be read twice, as long as there is time. If there are no
    // more, it can be. Throws SReadFailure.
    virtual void ReadAhead(std::size_t, CWatch&) {}

    // The bytes, at the first of them, for whoever reads them before the parser or behind it; NULL
    // for what the lane cannot read, or not twice.
    virtual CByteSource* Bytes() = 0;

    // Lets the reader read the document from its first byte on. With a wrapper the reader gets what
    // that makes of the source. Throws what the reader throws.
    using CWrap = std::function<std::unique_ptr<xercesc::InputSource>(
        const xercesc::InputSource& source, std::uint64_t size)>;
    virtual void Parse(xercesc::SAX2XMLReader& reader, const CWrap& wrap) = 0;

    [[noreturn]] virtual void ThrowFailed(const char* parserMessage) const = 0;

    // What errors call it, and why the system does not let it be read: empty if it does, or if that
    // is not known.
    virtual std::string Name() const = 0;
    virtual std::string WhyNot() const { return ""; }
};

// As the parser takes a name: a file or a URL.
class CFileSource final : public CDocumentSource {
public:
    explicit CFileSource(const char* fileName) noexcept : m_pFileName(fileName) {}

    CByteSource* Bytes() override;
    void Parse(xercesc::SAX2XMLReader& reader, const CWrap& wrap) override;
    [[noreturn]] void ThrowFailed(const char* parserMessage) const override;
    std::string Name() const override;
    std::string WhyNot() const override;

private:
    const char* m_pFileName;
    std::optional<CParserFile> m_File;
};

// A path and nothing else, which the parser's narrow names can show.
class CPathSource final : public CDocumentSource {
public:
    explicit CPathSource(const char* path) noexcept : m_pPath(path) {}

    CByteSource* Bytes() override;
    void Parse(xercesc::SAX2XMLReader& reader, const CWrap& wrap) override;
    [[noreturn]] void ThrowFailed(const char* parserMessage) const override;
    std::string Name() const override;
    std::string WhyNot() const override;

private:
    CParserFile& File();

    const char* m_pPath;
    std::optional<CParserFile> m_File;
};

// A block of the caller's, which outlives this.
class CMemorySource final : public CDocumentSource {
public:
    CMemorySource(const unsigned char* buffer, std::size_t length,
                  const char* name = "Memfile") noexcept
        : m_pBuffer(buffer), m_nLength(length), m_pName(name), m_Bytes(buffer, length) {}

    CByteSource* Bytes() noexcept override;
    void Parse(xercesc::SAX2XMLReader& reader, const CWrap& wrap) override;
    [[noreturn]] void ThrowFailed(const char* parserMessage) const override;
    std::string Name() const override { return m_pName; }

private:
    const unsigned char* m_pBuffer;
    std::size_t m_nLength;
    const char* m_pName;
    CMemoryBytes m_Bytes;
};

// What a function reads, as SXMLSource::read.
class CReadSource final : public CDocumentSource {
public:
    using CRead = std::function<std::ptrdiff_t(char* to, std::size_t room)>;
    CReadSource(CRead read, const char* name) : m_Read(std::move(read)), m_pName(name) {}

    void ReadAhead(std::size_t most, CWatch& watch) override;

    CByteSource* Bytes() noexcept override;
    void Parse(xercesc::SAX2XMLReader& reader, const CWrap& wrap) override;
    [[noreturn]] void ThrowFailed(const char* parserMessage) const override;
    std::string Name() const override { return m_pName; }

private:
    class CInput;

    void ReadBeginning();
    std::size_t Read(char* to, std::size_t room);
    std::size_t ReadOn(char* to, std::size_t room);

    const CRead m_Read;
    const char* m_pName;
    std::string m_Ahead;
    std::size_t m_nAhead = 0;  // bytes in it
    std::size_t m_nUsed = 0;   // of them, by the parser
    bool m_bIsOver = false;
    std::optional<CMemoryBytes> m_Bytes;  // those read ahead, if they are all
};

}  // namespace norvask

#endif
