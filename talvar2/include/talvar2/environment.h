#ifndef TALVAR2_ENVIRONMENT_H
#define TALVAR2_ENVIRONMENT_H

#include <string>

#include "talvar2/export.h"

namespace talvar2 {

/// Reads an environment variable. Returns false when it is not set; `value`
/// is then left untouched.
TALVAR2_API bool get_environment_variable(const std::string& name, std::string& value);

/// True when the variable is set to a non-empty value.
TALVAR2_API bool environment_flag_set(const std::string& name);

}  // namespace talvar2

#endif
