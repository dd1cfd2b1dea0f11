#ifndef TALVAR2_EXPORT_H
#define TALVAR2_EXPORT_H
/// @file
/// The library is built with hidden symbols; what carries TALVAR2_API is its ABI.
#define TALVAR2_API __attribute__((visibility("default")))

#endif
