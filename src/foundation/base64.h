// Internal. Base64, by the parser's encoder and decoder, with owners for the blocks that they
// return.
#ifndef NORVASK_FOUNDATION_BASE64_H
#define NORVASK_FOUNDATION_BASE64_H

#include <cstddef>

namespace norvask {

// A block of bytes as Base64, line ends included; no text for an empty block.
class CBase64Text {
public:
    CBase64Text(const unsigned char* data, std::size_t length);
    CBase64Text(const CBase64Text&) = delete;
    CBase64Text& operator=(const CBase64Text&) = delete;
    ~CBase64Text();

    // Terminated; NULL when there is nothing.
    const char* Get() const noexcept { return reinterpret_cast<const char*>(m_pText); }
    std::size_t Length() const noexcept { return m_nLength; }

private:
    unsigned char* m_pText;
    std::size_t m_nLength;
};

// The bytes that a Base64 text stands for (blanks and line ends allowed); none when the text is no
// Base64 or stands for nothing.
class CBase64Bytes {
public:
    // `text` is terminated and has this length. Throws std::bad_alloc.
    CBase64Bytes(const char* text, std::size_t length);
    CBase64Bytes(const CBase64Bytes&) = delete;
    CBase64Bytes& operator=(const CBase64Bytes&) = delete;
    ~CBase64Bytes();

    // NULL and 0 when there are none.
    const unsigned char* Get() const noexcept { return m_pBytes; }
    std::size_t Length() const noexcept { return m_nLength; }

    // The block, which from now on belongs to the caller, who releases it with ::operator delete.
    unsigned char* Take() noexcept;

private:
    unsigned char* m_pBytes;
    std::size_t m_nLength;
};

}  // namespace norvask

#endif
