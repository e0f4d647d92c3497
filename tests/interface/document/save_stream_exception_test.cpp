// Saving to a stream that throws while another exception is under way, or that ends its thread.
#include <pthread.h>

#include <ios>
#include <ostream>
#include <streambuf>
#include <thread>

#include "support/sanitizers.h"
#include "support/streams.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// Ends the thread that writes to it.
class CLastBuffer : public std::streambuf {
public:
    std::streamsize m_nSeen = 0;

protected:
    std::streamsize xsputn(const char*, std::streamsize count) override {
        m_nSeen += count;
        pthread_exit(nullptr);
    }
};

}  // namespace

TEST(StreamException, DoesNotHideTheExceptionThatCameFirst) {
    const Document document = NewDocumentWithRoot("root");
    document->GetRoot()->SetAttribute("good", "value");
    document->GetRoot()->GetAttributes()[0]->SetName("no name");
    // The declaration is written before the tree is.
    CLimitedBuffer full(DECLARATION.size());
    std::ostream out(&full);
    out.exceptions(std::ios::badbit);
    EXPECT_INVALID_NAME(document->Save(out, false), "no name");
    EXPECT_TRUE(out.bad());
}

TEST(StreamException, LetsAThreadEndInTheMiddleOfASave) {
    // What unwinds a thread is no object, and the sanitizer takes its handler for a null reference.
    if (IS_SANITIZED) GTEST_SKIP() << "a thread cannot end under the sanitizers";
    const Document document = NewDocumentWithRoot("root");
    CLastBuffer last;
    std::ostream out(&last);
    bool returned = false;
    bool unwound = false;
    struct SUnwound {
        bool& m_bUnwound;
        ~SUnwound() { m_bUnwound = true; }
    };
    std::thread thread([&] {
        const SUnwound atEnd{unwound};
        document->Save(out, false);
        returned = true;
    });
    thread.join();
    EXPECT_GT(last.m_nSeen, 0);
    EXPECT_TRUE(unwound);
    EXPECT_FALSE(returned);
    EXPECT_TRUE(out.bad());
}
