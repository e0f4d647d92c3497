// Internal. CParserFile: a file, opened once and as the parser opens it, and read from its first
// byte on as often as need be.
//
// A name goes the parser's own way to a file, so that the same names open and messages show the
// same one. What is read again is the file that was opened, whatever became of its name meanwhile.
// A small file is held as a whole, since the parser would not see either what becomes of its
// content while it is loaded: a program may read its settings and write them in a callback.
#ifndef NORVASK_LOAD_PARSER_PARSER_FILE_H
#define NORVASK_LOAD_PARSER_PARSER_FILE_H

#include <memory>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/util/BinInputStream.hpp>

#include "load/source/byte_source.h"

namespace norvask {

class CParserFile final : public xercesc::LocalFileInputSource, public CByteSource {
public:
    // Whether the parser takes this for the name of a file and for nothing else.
    static bool IsFileName(const char* fileName) noexcept;

    // Opens such a file. Throws what the parser's file source throws.
    explicit CParserFile(const char* fileName);

    bool IsOpen() const noexcept { return m_pStream != nullptr; }
    // Whether it can be read twice: what has a size can.
    bool HasSize() const noexcept { return m_nSize != 0; }

    // For the parser: a view of the open file, which it reads on from where it is.
    xercesc::BinInputStream* makeStream() const override;

    std::size_t Size() const noexcept override { return m_nSize; }
    std::size_t Read(char* to, std::size_t room) override;
    bool IsGood() const noexcept override { return m_bIsGood; }
    const char* Bytes() const noexcept override { return m_pWhole.get(); }
    bool Rewind() noexcept override;

private:
    void Hold();
    std::size_t ReadStream(char* to, std::size_t room);

    const std::unique_ptr<xercesc::BinInputStream> m_pStream;  // NULL if it could not be opened
    std::size_t m_nSize;                                       // 0 if it is not known
    bool m_bIsGood;
    std::unique_ptr<char[]> m_pWhole;  // NULL for a file that is read
    std::size_t m_nRead;               // of the whole
};

}  // namespace norvask

#endif
