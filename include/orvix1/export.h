#ifndef ORVIX1_EXPORT_H
#define ORVIX1_EXPORT_H
/// @file
/// The library is built with hidden symbols; what carries ORVIX1_API is its ABI.
#define ORVIX1_API __attribute__((visibility("default")))

#endif
