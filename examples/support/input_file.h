#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <string>

namespace examples {

/** The size of a file that can be read and is not empty; all else is a failure. */
int64_t readable_size(const std::string &path);

/** The bytes of such a file. */
std::unique_ptr<std::istream> open_input(const std::string &path);

}  // namespace examples
