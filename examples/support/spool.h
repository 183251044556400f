#pragma once

#include <cstdio>

namespace examples {

/** A temporary file without a name: buffers a pipe whose data is read or written out of order. */
std::FILE *new_spool();
int descriptor_of(std::FILE *file);
/** Copies all from one file to another, both in binary, and rewinds the spool. */
void fill_spool(std::FILE *from, std::FILE *spool);
void copy_spool(std::FILE *spool, std::FILE *to);

}  // namespace examples
