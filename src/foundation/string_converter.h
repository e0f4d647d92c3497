// Internal. CStringConverter: one narrow string with the checks and the output encoding that tree
// editing and writing need.
//
// This is the plain way, which asks the parser's transcoders for everything. known_text.h and the
// writers have faster ways for text of which the outcome is known; whatever they do not know comes
// here.
#ifndef NORVASK_FOUNDATION_STRING_CONVERTER_H
#define NORVASK_FOUNDATION_STRING_CONVERTER_H

#include <cstddef>

namespace norvask {

class CStringConverter {
public:
    // Whether a run of character data is layout: empty, or only blanks, line ends and TABs with at
    // least one line end or TAB among them. A load drops such a run. Deliberate: blanks alone are
    // content.
    static bool IsFormattingWhitespace(const char* text, std::size_t length) noexcept;

    CStringConverter();
    explicit CStringConverter(const char* text);
    CStringConverter(const CStringConverter& other);
    CStringConverter& operator=(const CStringConverter& other) = delete;
    virtual ~CStringConverter();

    // Takes a copy; NULL gives an empty string. The text may be this object's own.
    virtual void SetString(const char* text);

    // Whether the text is an XML 1.0 name, after conversion to the parser's UTF-16.
    virtual bool IsValidName();

    virtual const char* GetString();

    // The text with markup characters escaped and forbidden control characters dropped, as UTF-8.
    // `data` is not terminated, belongs to this object and is valid until the next call or
    // SetString. Throws the parser's transcoding exception for what UTF-8 cannot express.
    virtual void GetEscapedUTF8(char*& data, std::size_t& bytes);

private:
    char* m_pText;
    char* m_pEncoded;
};

}  // namespace norvask

#endif
