// CXMLError by itself: how it is caught, asked, copied and kept.
#include <cerrno>
#include <cstring>
#include <exception>
#include <future>
#include <stdexcept>
#include <thread>
#include <type_traits>

#include "support/problems.h"
#include "support/testing.h"
#include "support/threads.h"
#include "support/thrown.h"

using namespace norvask_test;

static_assert(std::is_base_of_v<CXMLException, CXMLError>);
static_assert(std::is_base_of_v<std::exception, CXMLError>);
static_assert(std::is_nothrow_copy_constructible_v<CXMLError>);
static_assert(std::is_nothrow_move_constructible_v<CXMLError>);
static_assert(std::is_nothrow_copy_assignable_v<CXMLError>);
static_assert(std::is_nothrow_move_assignable_v<CXMLError>);
static_assert(std::is_nothrow_destructible_v<CXMLError>);
static_assert(std::has_virtual_destructor_v<CXMLError>);
static_assert(std::is_nothrow_constructible_v<CXMLError, const CXMLException&>);
static_assert(!std::is_convertible_v<const CXMLException&, CXMLError>);
static_assert(noexcept(std::declval<const CXMLError&>().GetMessage()));
static_assert(noexcept(std::declval<const CXMLError&>().GetID()));
static_assert(noexcept(std::declval<const CXMLError&>().Problems()));
static_assert(noexcept(std::declval<const CXMLError&>().what()));

namespace {

// All that an error shows, in every way there is to ask.
std::string Shown(const CXMLError& error) {
    CXMLError copy(error);
    CXMLException& base = copy;
    const std::exception& standard = error;
    EXPECT_STREQ(error.what(), error.GetMessage());
    EXPECT_STREQ(standard.what(), error.GetMessage());
    EXPECT_STREQ(copy.GetMessage(), error.GetMessage());
    EXPECT_STREQ(base.GetMessage(), error.GetMessage());
    EXPECT_EQ(copy.GetID(), error.GetID());
    EXPECT_EQ(base.GetID(), error.GetID());
    std::string shown = std::to_string(error.GetID()) + " " + error.GetMessage();
    for (const SXMLProblem& problem : error.Problems())
        shown += "\n" + ProblemLine(problem);
    return shown;
}

SXMLProblem Problem(const std::string& text) {
    SXMLProblem problem;
    problem.severity = EXMLSeverity::ERROR;
    problem.file = "a.xml";
    problem.line = 3;
    problem.column = 7;
    problem.text = text;
    problem.path = "/a/b[2]";
    return problem;
}
const char* const WHOLE = "2 text\nerror a.xml:3:7: one @ /a/b[2]\nerror a.xml:3:7: two @ /a/b[2]";
CXMLError Whole() { return CXMLError(2, "text", {Problem("one"), Problem("two")}); }

void LoadMalformed() { XMLLoadText("<a>\n<b></a>"); }

}  // namespace

TEST(Error, IsCaughtAsEachOfItsBases) {
    const std::string text = LoadError("Memfile", 2, "expected end of tag 'b'");
    EXPECT_XML_ERROR(LoadMalformed(), 2, text);
    try {
        LoadMalformed();
        FAIL() << "nothing was thrown";
    } catch (const CXMLException& e) {
        const auto* const error = dynamic_cast<const CXMLError*>(&e);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(error->GetMessage(), text);
    }
    try {
        LoadMalformed();
        FAIL() << "nothing was thrown";
    } catch (const std::exception& e) {
        EXPECT_EQ(e.what(), text);
        EXPECT_NE(dynamic_cast<const CXMLException*>(&e), nullptr);
    }
    try {
        LoadMalformed();
        FAIL() << "nothing was thrown";
    } catch (const CXMLError& e) {
        EXPECT_EQ(e.what(), text);
        EXPECT_EQ(e.GetID(), 2);
        ASSERT_EQ(e.Problems().size(), 1U);
        EXPECT_EQ(ProblemLine(e.Problems()[0]),
                  "fatal Memfile:2:6: expected end of tag 'b' @ /a/b[1]");
    }
    EXPECT_THROW(LoadMalformed(), CXMLError);
    EXPECT_THROW(LoadMalformed(), CXMLException);
    EXPECT_THROW(LoadMalformed(), std::exception);
}

TEST(Error, ShowsWhatItWasMadeOf) {
    EXPECT_EQ(Shown(CXMLError(77, "own \xC3\xA9 %s")), "77 own \xC3\xA9 %s");
    EXPECT_EQ(Shown(CXMLError(0, "")), "0 ");
    EXPECT_EQ(Shown(CXMLError(-1, nullptr)), "-1 ");
    EXPECT_EQ(Shown(CXMLError(1, nullptr, {Problem("one")})), "1 \nerror a.xml:3:7: one @ /a/b[2]");
    EXPECT_EQ(Shown(Whole()), WHOLE);
    const std::string longText(100000, 'x');
    EXPECT_EQ(CXMLError(1, longText.c_str()).what(), longText);
}

TEST(Error, AProblemThatNothingIsKnownOfIsEmpty) {
    const SXMLProblem problem;
    EXPECT_EQ(problem.severity, EXMLSeverity::FATAL);
    EXPECT_EQ(ProblemLine(problem), "fatal :0:0: ");
}

TEST(Error, WithoutProblemsTheListIsEmpty) {
    const CXMLError none(1, "text");
    EXPECT_TRUE(none.Problems().empty());
    EXPECT_EQ(none.Problems().begin(), none.Problems().end());
    EXPECT_TRUE(CXMLError(1, "text", {}).Problems().empty());
    EXPECT_TRUE(CXMLError(CXMLException(1, "text")).Problems().empty());
}

TEST(Error, TakesClassAndTextOfAnother) {
    EXPECT_EQ(Shown(CXMLError(CXMLException(3, 6, "a b"))), "3 Invalid XML name: 'a b'.");
    EXPECT_EQ(Shown(CXMLError(CXMLException(1, 99U))), "1 ");
    CXMLException source(5, "text");
    const CXMLError error(source);
    source = CXMLException(6, "other");
    EXPECT_EQ(Shown(error), "5 text");
}

// The base reads them through its virtual functions, which a derived class may have changed.
TEST(Error, ACopyOfTheBaseHasClassAndText) {
    CXMLError error = Whole();
    CXMLException copy(error);
    EXPECT_EQ(copy.GetID(), 2);
    EXPECT_STREQ(copy.GetMessage(), "text");
    copy = CXMLError(4, "assigned");
    EXPECT_EQ(copy.GetID(), 4);
    EXPECT_STREQ(copy.GetMessage(), "assigned");
}

TEST(Error, CopiesOutliveWhatTheyWereMadeOf) {
    auto first = std::make_unique<CXMLError>(Whole());
    const CXMLError copy(*first);
    CXMLError assigned(9, "before", {Problem("before")});
    assigned = *first;
    const CXMLError moved(std::move(*first));
    first.reset();
    EXPECT_EQ(Shown(copy), WHOLE);
    EXPECT_EQ(Shown(assigned), WHOLE);
    EXPECT_EQ(Shown(moved), WHOLE);
}

TEST(Error, PointersStayValidAsLongAsACopyLives) {
    auto first = std::make_unique<CXMLError>(Whole());
    const char* const text = first->what();
    const std::vector<SXMLProblem>* const problems = &first->Problems();
    const CXMLError copy(*first);
    first.reset();
    EXPECT_STREQ(text, "text");
    EXPECT_EQ(copy.what(), text);
    EXPECT_EQ(&copy.Problems(), problems);
    EXPECT_EQ(problems->at(1).text, "two");
}

TEST(Error, AssigningItToItselfChangesNothing) {
    CXMLError error = Whole();
    CXMLError& same = error;
    error = same;
    EXPECT_EQ(Shown(error), WHOLE);
    error = std::move(same);
    EXPECT_EQ(Shown(error), WHOLE);
}

TEST(Error, AssigningChangesOneOnly) {
    CXMLError error = Whole();
    const CXMLError copy(error);
    error = CXMLError(3, "other");
    EXPECT_EQ(Shown(error), "3 other");
    EXPECT_EQ(Shown(copy), WHOLE);
    CXMLError chain(1, "");
    CXMLError last(1, "");
    last = chain = copy;
    EXPECT_EQ(Shown(last), WHOLE);
    std::swap(error, chain);
    EXPECT_EQ(Shown(error), WHOLE);
    EXPECT_EQ(Shown(chain), "3 other");
}

TEST(Error, GoesIntoContainers) {
    std::vector<CXMLError> errors;
    for (int i = 0; i < 100; ++i)
        errors.emplace_back(i, "text", std::vector<SXMLProblem>(1, Problem("one")));
    errors.erase(errors.begin(), errors.begin() + 50);
    EXPECT_EQ(Shown(errors.front()), "50 text\nerror a.xml:3:7: one @ /a/b[2]");
    EXPECT_EQ(Shown(errors.back()), "99 text\nerror a.xml:3:7: one @ /a/b[2]");
}

TEST(Error, IsDeletedThroughTheStandardBase) {
    std::unique_ptr<std::exception> error(new CXMLError(Whole()));
    EXPECT_STREQ(error->what(), "text");
}

TEST(Error, GoesThroughPointersToExceptions) {
    std::exception_ptr kept = std::make_exception_ptr(Whole());
    try {
        std::rethrow_exception(kept);
    } catch (const CXMLError& e) {
        EXPECT_EQ(Shown(e), WHOLE);
    }
    try {
        LoadMalformed();
    } catch (...) {
        kept = std::current_exception();
    }
    for (int i = 0; i < 2; ++i) {
        try {
            std::rethrow_exception(kept);
        } catch (const std::exception& e) {
            EXPECT_EQ(e.what(), LoadError("Memfile", 2, "expected end of tag 'b'"));
        }
    }
    std::promise<int> promise;
    promise.set_exception(kept);
    EXPECT_THROW(promise.get_future().get(), CXMLError);
}

TEST(Error, IsThrownOnAndNested) {
    try {
        try {
            LoadMalformed();
        } catch (const CXMLError& e) {
            throw CXMLError(e);  // NOLINT: a copy of it
        }
    } catch (const CXMLError& e) {
        EXPECT_EQ(e.Problems().size(), 1U);
    }
    try {
        try {
            LoadMalformed();
        } catch (...) {
            std::throw_with_nested(std::runtime_error("outer"));
        }
    } catch (const std::runtime_error& outer) {
        EXPECT_THROW(std::rethrow_if_nested(outer), CXMLError);
    }
}

// A class of the client's own.
TEST(Error, MayBeDerivedFrom) {
    class COwn : public CXMLError {
    public:
        explicit COwn(const CXMLError& of) : CXMLError(of) {}
        const char* what() const noexcept override { return "own"; }
    };
    const COwn own(Whole());
    const std::exception& standard = own;
    EXPECT_STREQ(standard.what(), "own");
    EXPECT_STREQ(own.GetMessage(), "text");
    EXPECT_EQ(Shown(CXMLError(own)), WHOLE);
}

namespace {

template <typename Throw>
void ThrowOnAsError(Throw throwing) {
    try {
        throwing();
    } catch (...) {
        XMLRethrowAsError();
    }
}

}  // namespace

TEST(Error, IsMadeOfAnExceptionThatIsBeingHandled) {
    const SFailure failure =
        FailureOf([] { ThrowOnAsError([] { throw CXMLException(77, "own %s"); }); });
    EXPECT_TRUE(failure.isError);
    EXPECT_EQ(failure.Told(), "77 own %s");
    EXPECT_TRUE(failure.problems.empty());
    EXPECT_EQ(FailureOf([] { ThrowOnAsError([] { throw Whole(); }); }).problems.size(), 2U);
}

// All others stay what they are.
TEST(Error, LeavesOtherExceptionsAlone) {
    for (const SThrow& what : THROWS) {
        const std::string told = what.told;
        EXPECT_EQ(Thrown([&] { ThrowOnAsError(what.now); }), told);
        if (told.find("CXMLException 77") == 0) continue;
        // From a callback, progress and a function that reads, too.
        CXMLLambdaHandler handler;
        handler.onStartElement = [&](const SXMLStartTag&) { what.now(); };
        EXPECT_EQ(Thrown([&] { XMLLoadText("<a/>", handler); }), told);
        const auto progress = SXMLLoadOptions().Progress([&](auto, auto) { what.now(); });
        EXPECT_EQ(Thrown([&] { XMLLoadText("<a/>", progress); }), told);
        EXPECT_EQ(Thrown([&] {
                      XMLLoadReader([&](char*, std::size_t) {
                          what.now();
                          return std::ptrdiff_t{0};
                      });
                  }),
                  told);
    }
    EXPECT_THROW(ThrowOnAsError([] { throw COwnException(); }), COwnException);
    CXMLLambdaHandler handler;
    handler.onStartElement = [](const SXMLStartTag&) { throw COwnException(); };
    EXPECT_THROW(XMLLoadText("<a/>", handler), COwnException);
    EXPECT_THROW(XMLLoadText("<a b='&lt;'>&#65;</a>", handler, SXMLLoadOptions().Untrusted()),
                 COwnException);
}

// Not only loads.
TEST(Error, IsWhatTheConveniencesForDocumentsThrow) {
    EXPECT_TRUE(FailureOf([] { XMLNewDocument("no name"); }).isError);
    const CXMLDocumentPtr empty = XMLNewDocument();
    EXPECT_TRUE(FailureOf([&] { XMLSaveSafely(*empty, "/tmp/none", false); }).isError);
    const CXMLDocumentPtr document = XMLNewDocument("a");
    const SFailure failure =
        FailureOf([&] { XMLSaveSafely(*document, "/no/such/folder/a.xml", false); });
    EXPECT_TRUE(failure.isError);
    EXPECT_EQ(failure.Told(), "1 " + SavingError("/no/such/folder/a.xml"));
    EXPECT_EQ(failure.Lines(),
              std::string("fatal /no/such/folder/a.xml:0:0: ") + std::strerror(ENOENT) + "\n");
}

TEST(ErrorThreads, CopiesAreReadAndReleasedOnSeveral) {
    auto first = std::make_unique<CXMLError>(Whole());
    std::vector<CXMLError> copies(THREADS, *first);
    std::thread ending([&first] { first.reset(); });
    OnThreads([&copies](int number) {
        CXMLError& own = copies[static_cast<std::size_t>(number)];
        for (int i = 0; i < 1000; ++i) {
            const CXMLError copy(own);
            EXPECT_STREQ(copy.what(), "text");
            EXPECT_EQ(copy.Problems()[1].text, "two");
            own = CXMLError(copy);
        }
        own = CXMLError(number, "other");
    });
    ending.join();
    for (int i = 0; i < THREADS; ++i)
        EXPECT_EQ(copies[static_cast<std::size_t>(i)].GetID(), i);
}

TEST(ErrorThreads, IsThrownOnOneAndCaughtOnAnother) {
    std::future<void> loading = std::async(std::launch::async, LoadMalformed);
    try {
        loading.get();
        FAIL() << "nothing was thrown";
    } catch (const CXMLError& e) {
        EXPECT_EQ(e.Problems().at(0).path, "/a/b[1]");
    }
}

TEST(ErrorThreads, LoadsFailOnSeveral) {
    OnThreads([](int number) {
        const std::string name = "name" + std::to_string(number);
        const std::string xml = "<a>\n<" + name + "></a>";
        for (int i = 0; i < 50; ++i) {
            EXPECT_EQ(ProblemsOf([&] { XMLLoadText(xml, SXMLLoadOptions().Name(name)); }),
                      "fatal " + name + ":2:10: expected end of tag '" + name + "' @ /a/" + name +
                          "[1]\n");
        }
    });
}
