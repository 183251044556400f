// WAV files of any depth, read piece by piece and unchanged in rate.

const placeholder = 0x7ffff000; // lengths from here on were not known when the header was written

const most_chunks = 1000; // of a file; more are no sound

async function chunks(blob) {
  const found = {};
  for (let at = 12, count = 0; at + 8 <= blob.size && !found["data"] && count < most_chunks; ++count) {
    const head = new DataView(await blob.slice(at, at + 8).arrayBuffer());
    const name = String.fromCharCode(...new Uint8Array(head.buffer, 0, 4));
    const size = head.getUint32(4, true);
    found[name] = { start: at + 8, size };
    at += 8 + size + (size % 2);
  }
  return found;
}

/** How to read samples of a format: the array that holds them, and what full scale is there. */
function depth(format, bits) {
  if (format === 3 && bits === 32) return { bytes: 4, numbers: (b) => new Float32Array(b), full: 1 };
  if (format === 3 && bits === 64) return { bytes: 8, numbers: (b) => new Float64Array(b), full: 1 };
  if (format !== 1) return undefined;
  if (bits === 8) return { bytes: 1, numbers: (b) => new Uint8Array(b), full: 128, zero: 128 };
  if (bits === 16) return { bytes: 2, numbers: (b) => new Int16Array(b), full: 2 ** 15 };
  if (bits === 24) return { bytes: 3, numbers: triples, full: 2 ** 23 };
  if (bits === 32) return { bytes: 4, numbers: (b) => new Int32Array(b), full: 2 ** 31 };
}

function triples(buffer) {
  const bytes = new Uint8Array(buffer);
  const numbers = new Int32Array(Math.floor(bytes.length / 3));
  for (let i = 0, k = 0; i < numbers.length; ++i, k += 3)
    numbers[i] = ((bytes[k] << 8) | (bytes[k + 1] << 16) | (bytes[k + 2] << 24)) >> 8;
  return numbers;
}

/** One channel of interleaved numbers, counted from 1, or 0: the mean of all. */
function channel_of(numbers, channels, channel, { full, zero = 0 }) {
  const samples = new Float64Array(numbers.length / channels);
  if (channel > 0 || channels === 1) {
    for (let i = 0, k = Math.max(channel - 1, 0); i < samples.length; ++i, k += channels)
      samples[i] = (numbers[k] - zero) / full;
    return samples;
  }
  for (let i = 0, k = 0; i < samples.length; ++i) {
    let sum = 0;
    for (let c = 0; c < channels; ++c) sum += (numbers[k++] - zero) / full;
    samples[i] = sum / channels;
  }
  return samples;
}

export async function is_wav(blob) {
  const head = new Uint8Array(await blob.slice(0, 12).arrayBuffer());
  const text = String.fromCharCode(...head);
  return text.startsWith("RIFF") && text.endsWith("WAVE");
}

export async function open_wav(blob) {
  const { "fmt ": fmt, data } = await chunks(blob);
  if (!fmt || !data || fmt.size < 16) throw new Error("is no complete WAV file: its format or its samples are missing");
  const head = new DataView(await blob.slice(fmt.start, fmt.start + Math.min(fmt.size, 40)).arrayBuffer());
  if (head.byteLength < 16) throw new Error("is truncated");
  const tag = head.getUint16(0, true);
  const format = tag === 0xfffe && head.byteLength >= 26 ? head.getUint16(24, true) : tag;
  const [channels, rate, bits] = [head.getUint16(2, true), head.getUint32(4, true), head.getUint16(14, true)];
  const reading = depth(format, bits);
  if (!reading) throw new Error(`has samples of format ${format} with ${bits} bits, which this page does not read`);
  if (channels < 1 || rate < 1) throw new Error(`states ${channels} channels at ${rate} Hz`);
  const present = blob.size - data.start;
  if (data.size > present && data.size < placeholder) throw new Error("is truncated");
  const frame = reading.bytes * channels;
  const frames = Math.floor(Math.min(data.size, present) / frame);
  if (frames === 0) throw new Error("holds no samples");
  return {
    rate, channels, frames,
    async read(start, count, channel) {
      const from = data.start + start * frame;
      const buffer = await blob.slice(from, from + Math.min(count, frames - start) * frame).arrayBuffer();
      const samples = channel_of(reading.numbers(buffer), channels, channel, reading);
      if (format === 3 && !samples.every(Number.isFinite)) throw new Error("holds samples that are not finite");
      return samples;
    },
  };
}

/** What the browser decoded, or numbers: an array for each channel. */
export function open_arrays(arrays, rate) {
  const [first] = arrays;
  const mean = (start, end) =>
    Float64Array.from({ length: end - start }, (_, i) => arrays.reduce((sum, a) => sum + a[start + i], 0) / arrays.length);
  return {
    rate, channels: arrays.length, frames: first.length,
    async read(start, count, channel) {
      const end = Math.min(start + count, first.length);
      if (channel === 0 && arrays.length > 1) return mean(start, end);
      return Float64Array.from(arrays[Math.max(channel - 1, 0)].subarray(start, end));
    },
  };
}
