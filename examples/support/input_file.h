#pragma once

#include <cstdint>
#include <string>

namespace examples {

/** The size of a file that can be read and is not empty; all else is a failure. */
int64_t readable_size(const std::string &path);

}  // namespace examples
