// Asking the system about files.
#include "load/source/file_access.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace norvask {

std::string AbsolutePath(const std::string& path) {
    std::error_code failed;
    const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
    return failed ? path : absolute.lexically_normal().string();
}

std::string WhyNotReadable(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0) {
        return WordsOf(errno);
    }
    // What a pipe has can be read once only.
    struct stat what = {};
    char byte = 0;
    const bool isReadable = (fstat(descriptor, &what) == 0 && S_ISFIFO(what.st_mode)) ||
                            read(descriptor, &byte, 1) >= 0 || errno == EAGAIN;
    const int error = errno;
    close(descriptor);
    return isReadable ? "" : WordsOf(error);
}

std::string WordsOf(int error) { return std::generic_category().message(error); }

}  // namespace norvask
