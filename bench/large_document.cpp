// How flat the heap stays while a large document is read as callbacks.

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

#include "documents.h"
#include "heap.h"
#include "norvask/norvask.h"
#include "peers.h"

namespace norvask_bench {

namespace {

class CTemporaryFile {
public:
    CTemporaryFile()
        : m_Name((std::filesystem::temp_directory_path() / "norvask_bench_XXXXXX").string()) {
        const int file = mkstemp(m_Name.data());
        if (file == -1) throw std::runtime_error("no temporary file: " + m_Name);
        close(file);
    }
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;
    ~CTemporaryFile() { std::remove(m_Name.c_str()); }

    const std::string& Name() const { return m_Name; }

private:
    std::string m_Name;
};

// Asks for the heap at every 256th element: often enough that it sees each state of the parser's
// buffers, seldom enough that the walk through malloc's lists costs little.
class CSamplingHandler : public norvask::CXMLSaxHandler {
public:
    void StartDocument() override { Sample(); }
    void EndDocument() override { Sample(); }

    void StartElement(const char*, const char*, const char*, norvask::CXMLSaxAttribut**) override {
        if (m_nElements++ % 256 == 0) Sample();
    }

    std::size_t Peak() const { return m_nPeak; }
    unsigned long long Elements() const { return m_nElements; }

private:
    void Sample() { m_nPeak = std::max(m_nPeak, HeapInUse()); }

    std::size_t m_nPeak = 0;
    unsigned long long m_nElements = 0;
};

// On a thread that ends, for the reason that heap.h gives. Answers what went wrong.
std::string ReadOnThread(const std::string& fileName, norvask::CXMLSaxHandler& handler) {
    std::string failure;
    std::thread([&] {
        try {
            norvask::CXMLManager::GetInstance().LoadDocument(fileName.c_str(), &handler, false,
                                                             false, nullptr, false, true);
        } catch (norvask::CXMLException& error) {
            failure = error.GetMessage();
        }
    }).join();
    return failure;
}

}  // namespace

std::size_t MeasureCallbackHeap(unsigned long long documentBytes) {
    const CTemporaryFile file;
    // What a library sets up once in a process is no part of a load.
    WriteLargeDocument(file.Name(), 1);
    norvask::CXMLSaxHandler first;
    std::string failure = ReadOnThread(file.Name(), first);
    WriteLargeDocument(file.Name(), documentBytes);
    CSamplingHandler handler;
    const std::size_t before = HeapInUse();
    if (failure.empty()) failure = ReadOnThread(file.Name(), handler);
    if (!failure.empty()) throw std::runtime_error("Norvask, large document: " + failure);
    // A record of the document has six elements in fewer than 300 bytes.
    if (handler.Elements() < documentBytes / 300 * 6) {
        throw std::runtime_error("Norvask, large document: elements are missing");
    }
    if (handler.Peak() <= before) {
        throw std::runtime_error("malloc does not tell the heap in use (a sanitizer?)");
    }
    return handler.Peak() - before;
}

}  // namespace norvask_bench
