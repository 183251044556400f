#include <algorithm>
#include <cmath>

#include "examples/support/failure.h"
#include "examples/support/input_file.h"
#include "examples/support/sample_reader.h"
#include "examples/support/table_layout.h"
#include "examples/support/table_line.h"

namespace examples {
namespace {

/** The lines of a text file, without comments and without a byte-order mark. */
class text_lines {
 public:
  explicit text_lines(const std::string &path) : path_(path), file_(open_input(path)), source_(*file_->rdbuf()) {}

  bool next(std::string *line) {
    if (source_.sgetc() == end) return false;
    read(line);
    if (number_++ == 0 && line->compare(0, 3, "\xef\xbb\xbf") == 0) line->erase(0, 3);
    *line = without_comment(*line);
    return true;
  }
  int64_t number() const { return number_; }
  int64_t bytes() const { return bytes_; }

 private:
  static constexpr int end = std::char_traits<char>::eof();

  /** Up to a line feed, a carriage return or both. What holds a zero or has no end is not read to its end. */
  void read(std::string *line) {
    line->clear();
    int c;
    for (; (c = source_.sbumpc()) != end && c != '\n' && c != '\r'; *line += static_cast<char>(c)) {
      if (c == '\0') throw failure(path_ + " is not a text file in ASCII or UTF-8; --rate and --column read text");
      if (line->size() == 1 << 20) throw failure(path_ + " is no table: a line has more than a million characters");
    }
    bytes_ += static_cast<int64_t>(line->size()) + 1;
    if (c == '\r' && source_.sgetc() == '\n') source_.sbumpc();
  }

  std::string path_;
  std::unique_ptr<std::istream> file_;
  std::streambuf &source_;
  int64_t number_ = 0, bytes_ = 0;
};

table_layout layout_of(const std::string &path) {
  constexpr std::size_t enough = 400;
  text_lines lines(path);
  std::vector<std::string> head;
  for (std::string line; head.size() < enough && lines.next(&line);) head.push_back(line);
  return find_layout(path, head);
}

/** The rows of a table from its first data on; numbers of its columns, or a failure that names the line. */
class table_rows {
 public:
  table_rows(const std::string &path, const table_layout &layout) : path_(path), layout_(layout), lines_(path) {
    std::string line;
    for (std::size_t i = 0; i < layout.first; ++i) lines_.next(&line);
  }

  bool next() {
    for (std::string line; lines_.next(&line);) {
      if (!split_line(line, layout_.separator, &fields_)) refuse("a quote that is not closed");
      if (fields_.empty()) continue;
      if (fields_.size() != layout_.columns.size())
        refuse(std::to_string(fields_.size()) + (fields_.size() == 1 ? " field" : " fields") +
               "; the other lines have " + std::to_string(layout_.columns.size()));
      return true;
    }
    return false;
  }

  const std::string &field(std::size_t column) const { return fields_[column]; }

  double number(std::size_t column) const {
    double value = 0.0;
    if (!parse_field(fields_[column], layout_.decimal, &value) || !std::isfinite(value))
      refuse("'" + fields_[column].substr(0, 40) + "' is not a number");
    return value;
  }

  [[noreturn]] void refuse(const std::string &what) const {
    throw failure(path_ + ", line " + std::to_string(lines_.number()) + ": " + what);
  }
  int64_t bytes() const { return lines_.bytes(); }
  int64_t line() const { return lines_.number(); }

 private:
  std::string path_;
  const table_layout &layout_;
  text_lines lines_;
  std::vector<std::string> fields_;
};

class number_column : public sample_reader {
 public:
  number_column(const std::string &path, const std::string &column, double rate)
      : path_(path), size_(readable_size(path)), layout_(layout_of(path)), rows_(path, layout_), rate_(rate) {
    index_ = layout_.find(path, column);
    if (!layout_.columns[index_].has_numbers) throw failure(path + ": column '" + column + "' holds no numbers");
    scale_ = unit_scale(layout_.columns[index_].unit);
    time_ = layout_.time();
    const bool has_time = time_ < layout_.columns.size() && time_ != index_;
    if (!has_time && rate == 0.0) throw failure(path + " holds numbers: their sample rate is needed, --rate HZ");
    if (rate == 0.0) measure_spacing();
    const std::string name = layout_.columns[index_].text;
    what_ = "column " + (name.empty() ? std::to_string(index_ + 1) : name) +
            (rate != 0.0 && has_time ? "; the sample rate is that of --rate, not of the time column" : "");
  }

  double rate() const override { return rate_; }
  double rate_error() const override { return rate_error_; }
  int channels() const override { return 1; }
  int64_t frames() const override { return -1; }
  double progress() const override { return static_cast<double>(rows_.bytes()) / static_cast<double>(size_); }
  std::string what() const override { return layout_.columns.size() > 1 ? what_ : ""; }

  int64_t read(double *samples, int64_t count) override {
    int64_t done = 0;
    for (; done < count && rows_.next(); ++done, ++read_) {
      samples[done] = scale_ * rows_.number(index_);
      if (spacing_ > 0.0) check_time();
    }
    return done;
  }

 private:
  /** The sample spacing, from the first and the last time. */
  void measure_spacing() {
    const std::string unit = layout_.columns[time_].unit;
    if (!unit.empty() && !is_time(unit))
      throw failure(path_ + ": the unit '" + unit + "' of the time is not known; give --rate HZ");
    table_rows rows(path_, layout_);
    int64_t count = 0, line = 0;
    double last = 0.0, greatest = 0.0, leap = 0.0;
    number_digits digits;
    for (double before = 0.0; rows.next(); ++count, before = last) {
      last = rows.number(time_);
      greatest = std::max(greatest, std::abs(last));
      digits.look_at(rows.field(time_), layout_.decimal);
      if (count == 0) start_ = last;
      if (count == 0 || last - before <= leap) continue;
      leap = last - before;
      line = rows.line();
    }
    spacing_ = count > 1 ? (last - start_) / static_cast<double>(count - 1) : 0.0;
    rate_ = 1.0 / (spacing_ * unit_scale(unit));
    if (!(spacing_ > 0.0) || !std::isfinite(rate_)) throw failure(path_ + ": its times do not rise; give --rate HZ");
    if (leap > 1.9 * spacing_)
      throw failure(path_ + ", line " + std::to_string(line) + ": the times leap here; --rate HZ ignores them");
    const double rounding = std::max(digits.last_place(greatest), 0x1p-52 * greatest);
    rate_error_ = rounding / (last - start_);
    tolerance_ = std::min(0.005 * spacing_ + std::max(rounding, 0x1p-23 * greatest), 0.25 * spacing_);
  }

  void check_time() const {
    const double off = rows_.number(time_) - start_ - spacing_ * static_cast<double>(read_);
    if (std::abs(off) > tolerance_)
      rows_.refuse("the times are not evenly spaced, or written with too few digits; --rate HZ ignores them");
  }

  std::string path_, what_;
  int64_t size_;
  table_layout layout_;
  table_rows rows_;
  double rate_, scale_ = 1.0;
  std::size_t index_ = 0, time_ = 0;
  // In the time column's unit; spacing 0: it is not used. Times off by 0.005 of the spacing change the level of a tone
  // by at most 0.001 dB; the rounding of written times, be it to single precision, says nothing of when samples were
  // taken.
  double start_ = 0.0, spacing_ = 0.0, tolerance_ = 0.0;
  double rate_error_ = 0.0;
  int64_t read_ = 0;
};

}  // namespace

std::vector<std::string> columns_of(const std::string &path) {
  readable_size(path);
  const table_layout layout = layout_of(path);
  std::vector<std::string> names;
  for (std::size_t k = 0; k < layout.columns.size(); ++k) {
    const table_column &c = layout.columns[k];
    if (c.has_numbers && k != layout.time()) names.push_back(c.text.empty() ? std::to_string(k + 1) : c.text);
  }
  return names;
}

std::unique_ptr<sample_reader> open_column(const std::string &path, const std::string &column, double rate) {
  return std::make_unique<number_column>(path, column, rate);
}

}  // namespace examples
