// Internal. CDOMString: a parser string as a narrow string, through the converter in force.
#ifndef NORVASK_LOAD_DOM_STRING_H
#define NORVASK_LOAD_DOM_STRING_H

namespace norvask {

class CDOMString {
public:
    // NULL gives a NULL text without asking the converter, which may answer NULL itself.
    explicit CDOMString(const char16_t* text);
    CDOMString(const CDOMString&) = delete;
    CDOMString& operator=(const CDOMString&) = delete;
    virtual ~CDOMString();

    virtual const char* GetString();

private:
    char* m_pText;
};

}  // namespace norvask

#endif
