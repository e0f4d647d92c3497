// Internal. CCountingMemory: memory for one reader of the parser, counted.
//
// Whoever watches ends the load when it is too much. Deliberate: it refuses nothing itself, since
// the parser, when an allocation fails, may release a block twice.
#ifndef NORVASK_LOAD_PARSER_COUNTING_MEMORY_H
#define NORVASK_LOAD_PARSER_COUNTING_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <new>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace norvask {

class CCountingMemory final : public xercesc::MemoryManager {
public:
    std::uint64_t InUse() const noexcept { return m_nInUse; }

    // What an exception shows outlives the reader.
    xercesc::MemoryManager* getExceptionMemoryManager() override { return Below(); }
    void* allocate(XMLSize_t size) override {
        char* const block = static_cast<char*>(Below()->allocate(HEADER + size));
        new (block) std::size_t(HEADER + size);
        m_nInUse += HEADER + size;
        return block + HEADER;
    }
    void deallocate(void* content) override {
        if (content != nullptr) {
            char* const block = static_cast<char*>(content) - HEADER;
            m_nInUse -= *std::launder(reinterpret_cast<std::size_t*>(block));
            Below()->deallocate(block);
        }
    }

private:
    // Keeps the alignment.
    static const std::size_t HEADER = alignof(std::max_align_t);

    static xercesc::MemoryManager* Below() noexcept {
        return xercesc::XMLPlatformUtils::fgMemoryManager;
    }

    std::uint64_t m_nInUse = 0;
};

}  // namespace norvask

#endif
