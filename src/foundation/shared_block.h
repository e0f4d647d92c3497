// Internal. CSharedBlock: the one block of decoded bytes that the whole process shares.
//
// A typed value that is binary is shown in it. Its pointer and its length are public data of
// CXMLSaxHandler, which lies far above; whoever defines them tells this class where they are.
#ifndef NORVASK_FOUNDATION_SHARED_BLOCK_H
#define NORVASK_FOUNDATION_SHARED_BLOCK_H

#include <cstddef>

namespace norvask {

class CSharedBlock {
public:
    // Where the pointer and the length lie. Called once, when the library is loaded.
    static void SetPlace(unsigned char*& data, std::size_t& length) noexcept;

    // Decodes a Base64 text; the result replaces the block of before, in which the text may lie.
    // Returns whether there is a result, in `data` and `length`; if not, they are left alone, and
    // the block of before is released all the same. NULL counts as an empty text. Throws
    // std::bad_alloc, and then nothing has changed.
    static bool Decode(const char* text, unsigned char*& data, std::size_t& length);

    // Releases the block, if there is one. Any number of threads may call it at once.
    static void Release() noexcept;

private:
    static unsigned char** sm_ppData;
    static std::size_t* sm_pLength;
};

}  // namespace norvask

#endif
