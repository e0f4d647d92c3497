// Internal, for convenience_saving.h: a file that replaces another once it is complete.
#ifndef NORVASK_CONVENIENCE_FILE_H
#define NORVASK_CONVENIENCE_FILE_H

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

namespace norvask {
namespace convenience_inside {

// Writes to a file handle, which it does not own. After the first failure it takes nothing any
// more, whatever becomes of the state of the stream.
class CHandleBuffer : public std::streambuf {
public:
    CHandleBuffer() : m_Block(std::size_t{64} * 1024) {
        setp(m_Block.data(), m_Block.data() + m_Block.size());
    }

    void Attach(int handle) { m_nHandle = handle; }

    // Hands on what is gathered.
    bool Flush() {
        const bool isWritten = Write(pbase(), static_cast<std::size_t>(pptr() - pbase()));
        setp(m_Block.data(), m_Block.data() + m_Block.size());
        return isWritten;
    }

protected:
    int_type overflow(int_type c) override {
        if (!Flush()) return traits_type::eof();
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            sputc(traits_type::to_char_type(c));
        }
        return traits_type::not_eof(c);
    }
    int sync() override { return Flush() ? 0 : -1; }

private:
    bool Write(const char* bytes, std::size_t count) {
        while (count > 0 && !m_bFailed) {
            const ssize_t written = write(m_nHandle, bytes, count);
            if (written > 0) {
                bytes += written;
                count -= static_cast<std::size_t>(written);
            } else if (written == 0 || errno != EINTR) {
                m_bFailed = true;
            }
        }
        return !m_bFailed;
    }

    std::vector<char> m_Block;
    int m_nHandle = -1;
    bool m_bFailed = false;
};

// Unless it is finished, its end leaves everything as it was before Open.
class CSafeFile {
public:
    CSafeFile() = default;
    CSafeFile(const CSafeFile&) = delete;
    CSafeFile& operator=(const CSafeFile&) = delete;
    ~CSafeFile() {
        Close();
        if (!m_NewName.empty()) unlink(m_NewName.c_str());
    }

    bool Open(const char* name) {
        if (name == nullptr || *name == '\0') return false;
        // Asks the system whether the old file may be written; nothing is written to it.
        m_nHandle = open(name, O_WRONLY | O_CLOEXEC | O_NOCTTY);
        const bool isThere = m_nHandle >= 0;
        if (!isThere && errno != ENOENT) return false;
        struct stat old = {};
        if (isThere) {
            if (fstat(m_nHandle, &old) != 0) return false;
            if (!S_ISREG(old.st_mode)) {
                m_Buffer.Attach(m_nHandle);
                return true;
            }
            Close();
        }
        if (!FindTarget(name) || !MakeNew(isThere ? mode_t{0600} : mode_t{0666})) return false;
        if (isThere && !TakeOver(old)) return false;
        m_Buffer.Attach(m_nHandle);
        return true;
    }

    CHandleBuffer& Buffer() { return m_Buffer; }

    bool Finish() {
        if (!m_Buffer.Flush() || !Sync() || !Close()) return false;
        if (m_NewName.empty()) return true;
        if (std::rename(m_NewName.c_str(), m_Target.c_str()) != 0) return false;
        m_NewName.clear();
        SyncFolder();
        return true;
    }

private:
    // Follows the links that a name is, to a file that need not exist.
    bool FindTarget(const char* name) {
        m_Target = name;
        for (int links = 0; links < 40; ++links) {
            std::vector<char> read(4096);
            const ssize_t length = readlink(m_Target.c_str(), read.data(), read.size());
            if (length < 0) return errno == EINVAL || errno == ENOENT;  // no link; nothing yet
            if (IsOfProcesses(m_Target)) return false;
            if (length == 0 || static_cast<std::size_t>(length) == read.size()) return false;
            const std::string leadsTo(read.data(), static_cast<std::size_t>(length));
            m_Target = leadsTo[0] == '/' ? leadsTo : Folder() + leadsTo;
        }
        return false;
    }

    // The links of /proc are open files of a process, /dev/stdout among them: the name that such a
    // link shows may be another file's by now, and the process would go on in the old one.
    static bool IsOfProcesses(const std::string& link) {
        struct stat processes = {};
        struct stat here = {};
        return stat("/proc/self", &processes) == 0 && lstat(link.c_str(), &here) == 0 &&
               here.st_dev == processes.st_dev;
    }

    // Of the target, with the "/" at its end; empty for the working directory.
    std::string Folder() const { return m_Target.substr(0, m_Target.rfind('/') + 1); }

    // A name that nobody else uses: the system makes the file only if there is none. Short, since
    // the target's own name may have the greatest length already.
    bool MakeNew(mode_t permissions) {
        static std::atomic<unsigned> count{0};
        const std::string folder = Folder();
        for (int attempt = 0; attempt < 10000; ++attempt) {
            std::string name = folder + ".norvask-" + std::to_string(getpid()) + "-" +
                               std::to_string(count.fetch_add(1));
            m_nHandle = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
            if (m_nHandle >= 0) {
                m_NewName.swap(name);
                return true;
            }
            if (errno != EEXIST) return false;
        }
        return false;
    }

    // Owner first: a change of it may take permissions away.
    bool TakeOver(const struct stat& old) {
        struct stat now = {};
        if (fstat(m_nHandle, &now) != 0) return false;
        mode_t permissions = old.st_mode & mode_t{0777};
        if (now.st_gid != old.st_gid &&
            fchown(m_nHandle, static_cast<uid_t>(-1), old.st_gid) != 0) {
            const mode_t everybody = permissions & mode_t{0007};
            permissions &= mode_t{0707} | (everybody << 3);
        }
        if (now.st_uid != old.st_uid &&
            fchown(m_nHandle, old.st_uid, static_cast<gid_t>(-1)) != 0) {
            errno = 0;  // an owner that cannot be kept is no reason to refuse
        }
        return fchmod(m_nHandle, permissions) == 0;
    }

    // A pipe or a terminal has nothing to wait for, and says so.
    bool Sync() const {
        if (fsync(m_nHandle) == 0) return true;
        return m_NewName.empty() && (errno == EINVAL || errno == ENOTSUP);
    }

    // The handle is gone even if the call was interrupted.
    bool Close() {
        if (m_nHandle < 0) return true;
        const int handle = m_nHandle;
        m_nHandle = -1;
        return close(handle) == 0 || errno == EINTR;
    }

    // Lets a halt of the system not undo the replacement. The file is whole either way, so a system
    // that cannot do this is no failure.
    void SyncFolder() const {
        const std::string folder = Folder();
        const int handle = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
        if (handle < 0) return;
        fsync(handle);
        close(handle);
    }

    CHandleBuffer m_Buffer;
    int m_nHandle = -1;
    std::string m_Target;
    std::string m_NewName;  // empty: nothing to remove
};

}  // namespace convenience_inside
}  // namespace norvask

#endif
