// Exceptions of every kind: throwing them, and telling as a line of text which one arrived.
#ifndef NORVASK_TESTS_SUPPORT_THROWN_H
#define NORVASK_TESTS_SUPPORT_THROWN_H

#include <norvask/norvask.h>

#include <new>
#include <stdexcept>
#include <string>

namespace norvask_test {

// A client's own type, which no class of the library or the runtime knows.
struct SOwnThrow {
    int number;
    std::string text;
};

class COwnException : public norvask::CXMLException {
public:
    COwnException() : CXMLException(5, "of a derived class") {}
};

struct SThrow {
    const char* told;
    void (*now)();
};
inline const SThrow THROWS[] = {
    {"CXMLException 77 the client's own \xC3\xA9 %s",
     [] { throw norvask::CXMLException(77, "the client's own \xC3\xA9 %s"); }},
    {"CXMLException 5 of a derived class", [] { throw COwnException(); }},
    {"runtime_error the client's own", [] { throw std::runtime_error("the client's own"); }},
    {"bad_alloc", [] { throw std::bad_alloc(); }},
    {"int 42", [] { throw 42; }},
    {"const char* text", [] { throw "text"; }},
    {"SOwnThrow 7 100",
     [] {
         throw SOwnThrow{7, std::string(100, 'o')};
     }},
};

// What the work throws.
template <typename Work>
std::string Thrown(const Work& work) {
    try {
        work();
    } catch (norvask::CXMLException& e) {
        return "CXMLException " + std::to_string(e.GetID()) + " " + e.GetMessage();
    } catch (const std::runtime_error& e) {
        return std::string("runtime_error ") + e.what();
    } catch (const std::bad_alloc&) {
        return "bad_alloc";
    } catch (int number) {
        return "int " + std::to_string(number);
    } catch (const char* text) {
        return std::string("const char* ") + text;
    } catch (const SOwnThrow& own) {
        return "SOwnThrow " + std::to_string(own.number) + " " + std::to_string(own.text.size());
    } catch (...) {
        return "something else";
    }
    return "nothing";
}

}  // namespace norvask_test

#endif
