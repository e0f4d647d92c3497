// The one macro that makes a name visible outside the library. Everything else stays hidden.
#ifndef NORVASK_EXPORT_H
#define NORVASK_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#define NORVASK_API __attribute__((visibility("default")))
#else
#define NORVASK_API
#endif

#endif
