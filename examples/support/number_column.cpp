#include <cmath>
#include <fstream>

#include "examples/support/arguments.h"
#include "examples/support/failure.h"
#include "examples/support/input_file.h"
#include "examples/support/sample_reader.h"

namespace examples {
namespace {

/** The fields of a line; a comma, a semicolon or a run of blanks separates two. */
std::vector<std::string> fields_of(const std::string &line) {
  std::vector<std::string> fields;
  const std::string text = line.substr(0, line.find('#'));
  const char *blanks = " \t\r";
  std::size_t at = text.find_first_not_of(blanks);
  while (at != std::string::npos) {
    const std::size_t end = std::min(text.find_first_of(",; \t\r", at), text.size());
    fields.push_back(text.substr(at, end - at));
    at = text.find_first_not_of(blanks, end);
    if (at != std::string::npos && (text[at] == ',' || text[at] == ';')) {
      at = text.find_first_not_of(blanks, at + 1);
      if (at == std::string::npos) fields.emplace_back();
    }
  }
  return fields;
}

class number_column : public sample_reader {
 public:
  number_column(const std::string &path, const std::string &column, double rate)
      : path_(path), rate_(rate), size_(readable_size(path)), file_(path, std::ios::binary) {
    std::vector<std::string> fields;
    if (!next_line(&fields)) throw failure(path + " holds no numbers");
    double number = 0.0;
    if (parse_number(column, &number) && number >= 1.0 && number == std::floor(number) && number < 1e6) {
      index_ = static_cast<std::size_t>(number) - 1;
    } else {
      while (index_ < fields.size() && fields[index_] != column) ++index_;
      if (index_ == fields.size()) throw failure(path + " has no column '" + column + "'");
    }
    for (const std::string &field : fields) has_pending_ = has_pending_ || parse_number(field, &number);
    if (has_pending_) pending_ = value(fields);
  }

  double rate() const override { return rate_; }
  int channels() const override { return 1; }
  int64_t frames() const override { return -1; }
  double progress() const override { return static_cast<double>(bytes_) / static_cast<double>(size_); }

  int64_t read(double *samples, int64_t count) override {
    int64_t done = 0;
    if (has_pending_ && count > 0) {
      samples[done++] = pending_;
      has_pending_ = false;
    }
    for (std::vector<std::string> fields; done < count && next_line(&fields);) samples[done++] = value(fields);
    return done;
  }

 private:
  /** The next line that holds anything; false at the end. */
  bool next_line(std::vector<std::string> *fields) {
    for (std::string line; std::getline(file_, line);) {
      ++line_;
      bytes_ += static_cast<int64_t>(line.size()) + 1;
      if (line.find('\0') != std::string::npos) throw failure(path_ + " is not a text file");
      *fields = fields_of(line);
      if (!fields->empty()) return true;
    }
    return false;
  }

  double value(const std::vector<std::string> &fields) const {
    const std::string where = path_ + ", line " + std::to_string(line_) + ": ";
    if (index_ >= fields.size()) throw failure(where + "no column " + std::to_string(index_ + 1));
    double number = 0.0;
    if (!parse_number(fields[index_], &number) || !std::isfinite(number))
      throw failure(where + "'" + fields[index_].substr(0, 40) + "' is not a number");
    return number;
  }

  std::string path_;
  double rate_;
  int64_t size_;
  std::ifstream file_;
  std::size_t index_ = 0;
  int64_t line_ = 0, bytes_ = 0;
  bool has_pending_ = false;  // the first line, met while looking for a header
  double pending_ = 0.0;
};

}  // namespace

std::unique_ptr<sample_reader> open_column(const std::string &path, const std::string &column, double rate) {
  return std::make_unique<number_column>(path, column, rate);
}

}  // namespace examples
