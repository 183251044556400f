#include "tests/support/scene.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>

#include "tests/support/heap.h"

namespace support {
namespace {

bool writes(char role) { return role == 'o' || role == 'b' || role == 's'; }

// Values that routines treat apart, among them the double next to 1e100, among ordinary ones.
void make_hostile(reals *x, unsigned seed) {
  const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
  const double special[] = {
      0.0,   -0.0,   nan,    inf,     -inf, 1e100, -1e100, 1e-308, -4e-324, 0x1.249ad2594c37ep+332,
      1e200, -1e308, 1e-200, -1e-100, 1.0,  -1.0,  0.5,    4e9};
  std::mt19937 engine(seed);
  for (double &value : *x)
    if (const auto pick = engine() % 40; pick < std::size(special)) value = special[pick];
}

record content(const part &s, int n, bool is_complex, unsigned seed, bool hostile) {
  const std::size_t doubles = static_cast<std::size_t>(n) * (is_complex ? 2 : 1);
  reals x = random_reals(doubles, seed);
  if (s.kind == 'u')
    for (std::size_t i = 1; i < doubles; ++i) x[i] = x[i - 1] + 0.01 + x[i] * x[i];
  if (hostile && s.kind != 't') make_hostile(&x, seed);
  if (s.kind == 't') x[0] = 8;
  record v(x, 0.1 * seed);
  v.length = n;
  v.is_complex = is_complex;
  return v;
}

bool may_share(char a, char b) {
  if (a == 's' || b == 's' || (writes(a) && writes(b))) return false;
  if (a == 'f' || b == 'f') return (a == 'f' || a == 'i') && (b == 'f' || b == 'i');
  return true;
}

// Adds every way to go on from the first signals of `a`; a signal takes a buffer and on it a record, seen or new.
void extend(const std::vector<part> &signals, const arrangement &a, std::vector<arrangement> *all) {
  const std::size_t i = a.buffer.size();
  if (i == signals.size()) {
    all->push_back(a);
    return;
  }
  const int buffers = a.buffer.empty() ? 0 : *std::max_element(a.buffer.begin(), a.buffer.end()) + 1;
  const int records = a.record.empty() ? 0 : *std::max_element(a.record.begin(), a.record.end()) + 1;
  for (int buffer = buffers; buffer >= 0; --buffer) {
    bool allowed = true;
    std::vector<int> on_it = {records};
    for (std::size_t j = 0; j < i; ++j) {
      if (a.buffer[j] != buffer) continue;
      allowed = allowed && may_share(signals[j].role, signals[i].role);
      if (std::find(on_it.begin(), on_it.end(), a.record[j]) == on_it.end()) on_it.push_back(a.record[j]);
    }
    for (std::size_t k = 0; allowed && k < on_it.size(); ++k) {
      arrangement next = a;
      next.buffer.push_back(buffer);
      next.record.push_back(on_it[k]);
      extend(signals, next, all);
    }
  }
}

bool has_views(const arrangement &a) {
  for (std::size_t i = 0; i < a.buffer.size(); ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (a.buffer[i] == a.buffer[j] && a.record[i] != a.record[j]) return true;
  return false;
}

}  // namespace

std::vector<part> parts_of(const routine &r) {
  std::vector<part> signals;
  std::istringstream words(r.signals);
  for (std::string word; words >> word;)
    signals.push_back({word[0], word.size() > 1 ? word[1] : 'r', word.size() > 2 ? std::stoi(word.substr(2)) : -1});
  return signals;
}

unsigned choices(const std::vector<part> &signals) {
  unsigned n = 1;
  for (const part &s : signals) n <<= s.kind == '*' ? 1 : 0;
  return n;
}

std::vector<record> contents(const std::vector<part> &signals, int n, unsigned choice, bool hostile) {
  std::vector<record> all;
  for (const part &s : signals) {
    bool is_complex = s.kind == 'c';
    if (s.kind == '*') {
      is_complex = choice % 2 != 0;
      choice /= 2;
    }
    const int length = s.length >= 0 ? s.length : s.role == 'o' ? 3 : n;
    all.push_back(content(s, length, is_complex, static_cast<unsigned>(all.size()) + 1, hostile));
  }
  return all;
}

arrangement separate(const std::vector<part> &signals) {
  arrangement a = {{}, {}, owner::first};
  for (int i = 0; i < static_cast<int>(signals.size()); ++i) {
    a.record.push_back(i);
    a.buffer.push_back(i);
  }
  return a;
}

std::vector<arrangement> arrangements(const std::vector<part> &signals) {
  std::vector<arrangement> all, owned;
  extend(signals, {{}, {}, owner::first}, &owned);
  for (const arrangement &a : owned)
    for (const owner by : {owner::first, owner::last, owner::none}) {
      if (by == owner::last && !has_views(a)) continue;
      all.push_back(a);
      all.back().owned_by = by;
    }
  return all;
}

std::string name_of(const arrangement &a) {
  std::string name = "records";
  for (const int r : a.record) name += " " + std::to_string(r);
  name += " on buffers";
  for (const int b : a.buffer) name += " " + std::to_string(b);
  constexpr const char *by[] = {", owned by the first", ", owned by the last", ", borrowed"};
  return name + by[static_cast<int>(a.owned_by)];
}

std::vector<record> shared_contents(std::vector<record> contents, const arrangement &a) {
  for (std::size_t i = 0; i < contents.size(); ++i)
    for (std::size_t j = 0; j < i; ++j)
      if (a.buffer[i] == a.buffer[j]) {
        contents[i] = contents[j];
        break;
      }
  return contents;
}

scene::scene(const std::vector<record> &contents, const arrangement &a)
    : memory_(contents.size()), records_(contents.size()), pointers_(contents.size()) {
  const exempt building;
  const auto index = [](int i) { return static_cast<std::size_t>(i); };
  std::vector<int> owners(contents.size(), -1);
  for (std::size_t i = 0; i < contents.size(); ++i) {
    int &by = owners[index(a.buffer[i])];
    if (by < 0 || a.owned_by == owner::last) by = a.record[i];
    pointers_[i] = &records_[index(a.record[i])];
  }
  for (std::size_t i = 0; i < contents.size(); ++i) {
    const std::size_t buffer = index(a.buffer[i]);
    dsp_vec &owning = records_[index(owners[buffer])];
    if (owning.data == nullptr && a.owned_by != owner::none) {
      dsp_init(&owning);
      dsp_copy(&owning, &contents[i]);
    } else if (owning.data == nullptr) {
      memory_[buffer] = doubles_of(contents[i]);
      owning = view(contents[i]);
      owning.data = memory_[buffer].data();
    }
    if (pointers_[i] != &owning) *pointers_[i] = view(owning);
  }
}

scene::~scene() {
  const exempt destroying;
  for (dsp_vec &v : records_) dsp_destroy(&v);
}

int32_t scene::run(const routine &r, int variant) {
  call c = {pointers_.data(), variant, {}};
  const int32_t status = r.run(c);
  numbers_ = c.numbers;
  return status;
}

::testing::AssertionResult same_results(const std::vector<part> &signals, const scene &a, const scene &b) {
  for (std::size_t i = 0; i < signals.size(); ++i)
    if (writes(signals[i].role))
      if (auto result = same(a[i], b[i]); !result) return result << ", signal " << i;
  return same(borrow(const_cast<reals &>(a.numbers())), borrow(const_cast<reals &>(b.numbers())));
}

}  // namespace support
