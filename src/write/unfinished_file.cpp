// CUnfinishedFile: a file is known by its device and its node, and looked at without following
// links, since a link may be anybody's.
#include "write/unfinished_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace norvask {
namespace {

bool IsRegularFile(const char* name, struct stat& status) noexcept {
    return lstat(name, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

void CUnfinishedFile::Remember(std::unique_ptr<char[]> name, bool isOpen) noexcept {
    m_pName = std::move(name);
    m_nProcess = getpid();
    struct stat status;
    if (!isOpen) {
        m_Identity = EIdentity::ANY;
    } else if (!IsRegularFile(m_pName.get(), status)) {
        m_Identity = EIdentity::NONE;
    } else {
        m_Identity = EIdentity::KNOWN;
        m_nDevice = status.st_dev;
        m_nNode = status.st_ino;
    }
}

void CUnfinishedFile::Forget() noexcept {
    m_pName.reset();
    m_Identity = EIdentity::NONE;
}

void CUnfinishedFile::Remove() const noexcept {
    struct stat status;
    if (m_Identity == EIdentity::NONE || m_nProcess != getpid() ||
        !IsRegularFile(m_pName.get(), status)) {
        return;
    }
    if (m_Identity == EIdentity::ANY || (status.st_dev == m_nDevice && status.st_ino == m_nNode)) {
        std::remove(m_pName.get());
    }
}

}  // namespace norvask
