// Internal. CUnfinishedFile: the file that a streaming writer opened by name, so that it can be
// removed when its document is not ended.
//
// What is removed is that file and no other: not what has its name by now, nothing that is no
// regular file, and not from a forked process, to which the file does not belong.
#ifndef NORVASK_WRITE_UNFINISHED_FILE_H
#define NORVASK_WRITE_UNFINISHED_FILE_H

#include <sys/types.h>

#include <memory>

namespace norvask {

class CUnfinishedFile {
public:
    CUnfinishedFile() noexcept
        : m_Identity(EIdentity::NONE), m_nDevice(0), m_nNode(0), m_nProcess(0) {}
    CUnfinishedFile(const CUnfinishedFile&) = delete;
    CUnfinishedFile& operator=(const CUnfinishedFile&) = delete;

    // This process opened a file of this name, or failed to: then it is any file that has the name
    // later.
    void Remember(std::unique_ptr<char[]> name, bool isOpen) noexcept;
    // The document is complete.
    void Forget() noexcept;

    // The name; NULL when there is none.
    const char* Name() const noexcept { return m_pName.get(); }

    void Remove() const noexcept;

private:
    enum class EIdentity : unsigned char {
        NONE,   // nothing that may be removed
        ANY,    // whatever has the name
        KNOWN,  // the file that was opened
    };

    std::unique_ptr<char[]> m_pName;
    EIdentity m_Identity;
    dev_t m_nDevice;
    ino_t m_nNode;
    pid_t m_nProcess;  // the one that opened it
};

}  // namespace norvask

#endif
