#include "talvar2/environment.h"

#include <cstdlib>

namespace talvar2 {

bool get_environment_variable(const std::string& name, std::string& value) {
  const char* found = std::getenv(name.c_str());
  if (found == nullptr) return false;
  value = found;
  return true;
}

bool environment_flag_set(const std::string& name) {
  std::string value;
  return get_environment_variable(name, value) && !value.empty();
}

}  // namespace talvar2
