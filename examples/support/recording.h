#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "examples/support/arguments.h"
#include "examples/support/sample_reader.h"
#include "examples/support/signal.h"

namespace examples {

/** What a path ends in, from its last dot on, in small letters. */
std::string extension_of(const std::string &path);

/** The options of a program that reads a recording, behind its own ones: --channel, --rate, --column, --full-scale. */
std::vector<option> with_recording_options(std::vector<option> own);

/** A sound file, or a column of a text file where its name or the options --rate and --column say so. */
std::unique_ptr<sample_reader> open_recording(const arguments &given, const std::string &path);

/** The channel that --channel names, from 1; 0 for "mix", the mean of all, which is the default. */
int channel_of(const arguments &given);

/** Reads at most so many samples of the channel that --channel names; `report` is told the share read so far. */
void read_record(const arguments &given, sample_reader &recording, int64_t most, signal *record,
                 const std::function<void(double)> &report);

/** What is read of a recording of several channels or columns, in words; empty for a single one. */
std::string channel_read(const arguments &given, const sample_reader &recording);

}  // namespace examples
