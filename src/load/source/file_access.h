// Internal. What the system says of a file.
#ifndef NORVASK_LOAD_SOURCE_FILE_ACCESS_H
#define NORVASK_LOAD_SOURCE_FILE_ACCESS_H

#include <string>

namespace norvask {

// A path from the root, without "." and "..". A relative one begins in the working directory; it
// stays as it is where that is not known.
std::string AbsolutePath(const std::string& path);

// The system's reason why a file cannot be opened or read; empty if it can. Does not wait for the
// other end of a pipe.
std::string WhyNotReadable(const std::string& path);

// The system's words for an error number.
std::string WordsOf(int error);

}  // namespace norvask

#endif
