#include "examples/support/gnuplot.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "examples/support/failure.h"

#if defined(_WIN32)
#define popen _popen
#define pclose _pclose
#define NOWHERE " >NUL 2>NUL"
#else
#define NOWHERE " >/dev/null 2>&1"
#endif

namespace examples {
namespace {

bool ends_with(const std::string &text, const std::string &end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/** The same look for every picture: a quiet grid, two borders, colours that can be told apart by everyone. */
const char *const look =
    "set border 3 linecolor rgb '#606060'\n"
    "set tics nomirror out textcolor rgb '#404040'\n"
    "set grid linetype 1 linewidth 0.5 linecolor rgb '#d8d8d8'\n"
    "set key top right noenhanced\n"
    "set linetype 1 linewidth 1.4 linecolor rgb '#0060a8'\n"
    "set linetype 2 linewidth 1.4 linecolor rgb '#d06010'\n"
    "set linetype 3 linewidth 1.4 linecolor rgb '#208040'\n";

}  // namespace

void require_gnuplot(const std::string &picture) {
  if (!ends_with(picture, ".png") && !ends_with(picture, ".svg"))
    throw failure(picture + ": a picture's name ends in .png or .svg");
  if (std::system("gnuplot --version" NOWHERE) != 0)
    throw failure("gnuplot, which draws the picture, cannot be run (Debian: gnuplot-nox)");
}

std::string gnuplot::quoted(const std::string &text) {
  // Single quotes keep gnuplot from running what stands between backquotes, but cannot hold a line break.
  std::string literal = "'";
  for (char c : text) literal += c == '\'' ? "''" : c == '\n' ? "'.\"\\n\".'" : std::string(1, c);
  return literal + "'";
}

void gnuplot::table(const std::string &name, const std::vector<std::vector<double>> &columns) {
  script_ += "$" + name + " << END_OF_TABLE\n";
  for (std::size_t row = 0; row < columns.at(0).size(); ++row) {
    for (const std::vector<double> &column : columns) {
      char number[32];
      std::snprintf(number, sizeof number, "%.9g ", column[row]);
      script_ += number;
    }
    script_ += "\n";
  }
  script_ += "END_OF_TABLE\n";
}

void gnuplot::draw(output_file &picture) const {
  const std::string size = std::to_string(width_) + "," + std::to_string(height_);
  const std::string terminal = ends_with(picture.path(), ".svg")
                                   ? "svg size " + size + " dynamic font 'sans,13' background '#ffffff'"
                                   : "pngcairo size " + size + " font 'sans,11'";
#if !defined(_WIN32)
  std::signal(SIGPIPE, SIG_IGN);
#endif
  std::FILE *pipe = popen("gnuplot" NOWHERE, "w");
  if (!pipe) throw failure("gnuplot cannot be run");
  const std::string all =
      "set terminal " + terminal + "\nset output " + quoted(picture.temporary()) + "\n" + look + script_;
  const bool sent = std::fwrite(all.data(), 1, all.size(), pipe) == all.size();
  const bool drawn = pclose(pipe) == 0 && sent;
  std::error_code error;
  if (!drawn || std::filesystem::file_size(picture.temporary(), error) == 0 || error)
    throw failure("gnuplot could not draw " + picture.path());
}

}  // namespace examples
