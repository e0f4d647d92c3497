// A client that uses the library before main and after it: the manager is there first and goes
// last.
#include <norvask/norvask.h>

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace {

class CEarly {
public:
    CEarly() : m_pDocument(norvask::CXMLManager::GetInstance().CreateDocument(nullptr, nullptr)) {
        m_pDocument->CreateRoot("early");
    }

    // A program's result is decided here: exit codes of main are too early.
    ~CEarly() {
        std::ostringstream out;
        m_pDocument->Save(out, false);
        m_pDocument->Delete();
        unsigned char xml[] = "<late/>";
        try {
            norvask::CXMLManager::GetInstance()
                .LoadDocument(xml, sizeof xml - 1, false, false, nullptr, false, false)
                ->Delete();
        } catch (norvask::CXMLException& e) {
            std::cerr << "failed after main: " << e.GetMessage() << '\n';
            std::_Exit(1);
        }
        if (out.str().find("<early/>") == std::string::npos) std::_Exit(1);
        std::cout << "ok" << std::endl;
    }

    CEarly(const CEarly&) = delete;
    CEarly& operator=(const CEarly&) = delete;

private:
    norvask::CXMLDocument* m_pDocument;
};

const CEarly early;

}  // namespace

int main() {}
