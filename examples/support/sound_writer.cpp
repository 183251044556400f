#include "examples/support/sound_writer.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "examples/support/failure.h"
#include "examples/support/recording.h"
#include "examples/support/spool.h"

namespace examples {
namespace {

const struct {
  const char *extension;
  int format;
} containers[] = {{".wav", SF_FORMAT_WAV},  {".flac", SF_FORMAT_FLAC}, {".aiff", SF_FORMAT_AIFF},
                  {".aif", SF_FORMAT_AIFF}, {".au", SF_FORMAT_AU},     {".caf", SF_FORMAT_CAF},
                  {".w64", SF_FORMAT_W64},  {".rf64", SF_FORMAT_RF64}, {".ogg", SF_FORMAT_OGG},
                  {".oga", SF_FORMAT_OGG},  {".opus", SF_FORMAT_OGG}};

int container_of(const std::string &path) {
  if (path == "-") return SF_FORMAT_WAV;
  const std::string extension = extension_of(path);
  std::string known;
  for (const auto &c : containers) {
    if (extension == c.extension) return c.format;
    known += std::string(" ") + (c.extension + 1);
  }
  throw failure(path + ": the end of its name tells no format; known are" + known);
}

bool is_one_of(int value, std::initializer_list<int> all) {
  return std::find(all.begin(), all.end(), value) != all.end();
}

bool is_float(int encoding) {
  return is_one_of(encoding, {SF_FORMAT_FLOAT, SF_FORMAT_DOUBLE, SF_FORMAT_VORBIS, SF_FORMAT_OPUS});
}

}  // namespace

sound_encoding encoding_named(const std::string &name) {
  static const struct {
    const char *name;
    int encoding;
  } encodings[] = {{"s16", SF_FORMAT_PCM_16},
                   {"s24", SF_FORMAT_PCM_24},
                   {"s32", SF_FORMAT_PCM_32},
                   {"f32", SF_FORMAT_FLOAT},
                   {"f64", SF_FORMAT_DOUBLE}};
  for (const auto &e : encodings)
    if (name == e.name) return e.encoding;
  throw failure("--encoding: '" + name + "' is not one of s16, s24, s32, f32, f64");
}

sound_writer::sound_writer(const std::string &path, sound_encoding encoding, bool exactly, double rate, int channels)
    : path_(path), channels_(channels) {
  if (path != "-") output_ = std::make_unique<output_file>(path);
  SF_INFO info{};
  info.samplerate = static_cast<int>(std::lround(rate));
  info.channels = channels;
  const int container = container_of(path);
  const int finer = is_one_of(encoding, {SF_FORMAT_FLOAT, SF_FORMAT_DOUBLE, SF_FORMAT_PCM_32}) ? SF_FORMAT_PCM_24 : 0;
  const int vorbis_or_opus = extension_of(path) == ".opus" ? SF_FORMAT_OPUS : SF_FORMAT_VORBIS;
  for (const int e : {encoding, finer, int{SF_FORMAT_PCM_16}, vorbis_or_opus}) {
    info.format = container | e;
    if (e != 0 && (e == encoding || !exactly) && sf_format_check(&info)) break;
    info.format = 0;
  }
  if (info.format == 0) fail("its format cannot hold this encoding, rate or number of channels");
  clips_ = !is_float(info.format & SF_FORMAT_SUBMASK);
  if (!output_) spool_ = new_spool();
  file_ = output_ ? sf_open(output_->temporary().c_str(), SFM_WRITE, &info)
                  : sf_open_fd(descriptor_of(spool_), SFM_WRITE, &info, SF_FALSE);
  if (!file_) fail(sf_strerror(nullptr));
  sf_command(file_, SFC_SET_CLIPPING, nullptr, SF_TRUE);
}

sound_writer::~sound_writer() {
  if (file_) sf_close(file_);
  if (spool_) std::fclose(spool_);
}

void sound_writer::fail(const char *reason) const { throw failure("cannot write " + path_ + ": " + reason); }

void sound_writer::write(const double *frames, int64_t count) {
  const int64_t samples = count * channels_;
  for (int64_t i = 0; i < samples; ++i) {
    largest_ = std::max(largest_, std::abs(frames[i]));
    clipped_ += clips_ && std::abs(frames[i]) > 1.0;
  }
  if (sf_writef_double(file_, frames, count) != count) fail(sf_strerror(file_));
}

void sound_writer::commit() {
  const int status = sf_close(file_);
  file_ = nullptr;
  if (status != 0) fail(sf_error_number(status));
  if (output_)
    output_->commit();
  else
    copy_spool(spool_, stdout);
}

}  // namespace examples
