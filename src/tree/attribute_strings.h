// Internal. The two strings of an attribute, and who keeps them.
//
//   attribute in an element      a name of the tree, with one use, and a value in the tree's memory
//   ... that was assigned to     two strings wherever they lie, retained (HOLDS)
//   attribute of an application  the same
//
// Both strings are retained or neither is. The low bits of the name tell, and whether the attribute is in the index
// of its tree (attribute_index.h).
#ifndef NORVASK_TREE_ATTRIBUTE_STRINGS_H
#define NORVASK_TREE_ATTRIBUTE_STRINGS_H

#include <cstdint>
#include <new>

#include "norvask/attribut.h"
#include "tree/memory/tree.h"

namespace norvask {

class CAttributeAccess {
public:
    // An attribute in the tree's memory, which keeps the use of the name and frees the value. Throws std::bad_alloc,
    // then the name is still the caller's, and so is the value.
    static CXMLAttribut* New(CTree& tree, CNameUse& name, CTreeString value) {
        void* const block = tree.Arena().AllocatePlain(sizeof(CXMLAttribut));
        return new (block) CXMLAttribut(CXMLAttribut::SOwned(), name.Keep().Text(), value.Text());
    }

    // Destroys an attribute of an element, and frees its memory too.
    static void Destroy(CTree& tree, CXMLAttribut* attribute) noexcept;

    // Releases only what an attribute of an element holds outside of its tree.
    static void ReleaseHeld(CXMLAttribut* attribute) noexcept {
        if (Holds(attribute)) {
            ReleaseString(Name(attribute));
            ReleaseString(Value(attribute));
        }
    }

    static CTreeString Name(const CXMLAttribut* attribute) noexcept {
        return CTreeString::At(reinterpret_cast<const char*>(attribute->m_nName & ~BITS));
    }
    static CTreeString Value(const CXMLAttribut* attribute) noexcept {
        return CTreeString::At(reinterpret_cast<const char*>(attribute->m_nValue));
    }
    static bool Holds(const CXMLAttribut* attribute) noexcept {
        return (attribute->m_nName & HOLDS) != 0;
    }

    static bool IsIndexed(const CXMLAttribut* attribute) noexcept {
        return (attribute->m_nName & INDEXED) != 0;
    }
    static void SetIndexed(CXMLAttribut* attribute, bool isIndexed) noexcept {
        attribute->m_nName = (attribute->m_nName & ~INDEXED) | (isIndexed ? INDEXED : 0);
    }

    // Sets the value of an attribute of any kind. Throws std::bad_alloc, then nothing has changed.
    static void SetValue(CXMLAttribut* attribute, const SKnownText& value);

private:
    static const std::uintptr_t HOLDS = 1;
    static const std::uintptr_t INDEXED = 2;
    static const std::uintptr_t BITS = 3;
    static_assert(CTreeString::ALIGNMENT > BITS, "the low bits of a name must be free");

    static void ReplaceName(CXMLAttribut* attribute, CTreeString name, bool holds) noexcept;
    static void ReplaceValue(CXMLAttribut* attribute, CTreeString value, bool held) noexcept;
    static void FreeName(CTreeString name, bool held) noexcept;
    static void FreeValue(CTreeString value, bool held) noexcept;

    friend class CXMLAttribut;
};

}  // namespace norvask

#endif
