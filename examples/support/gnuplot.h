#pragma once

#include <string>
#include <vector>

#include "examples/support/output_file.h"

namespace examples {

/** Fails without gnuplot, and for a picture whose name does not end in .png or .svg. Called before the work starts. */
void require_gnuplot(const std::string &picture);

/** A picture drawn by gnuplot: commands and tables, sent when draw() is called. */
class gnuplot {
 public:
  explicit gnuplot(int width = 1100, int height = 620) : width_(width), height_(height) {}

  /** Adds a command; its line break is added. */
  void command(const std::string &line) { script_ += line + "\n"; }

  /** Defines the data block $name; each row is one line of numbers, NaN a gap. */
  void table(const std::string &name, const std::vector<std::vector<double>> &columns);

  /** Runs the commands, of which the last plots, into the file. */
  void draw(output_file &picture) const;

  /** A string literal of gnuplot's. */
  static std::string quoted(const std::string &text);

 private:
  int width_, height_;
  std::string script_;
};

}  // namespace examples
