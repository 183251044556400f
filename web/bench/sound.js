// Sounds as WAV files in single precision, which is what the programs read of those that the browser decodes.

import { breath } from "./breath.js";

const piece = 2 ** 18; // frames

/** RIFF, WAVE and a chunk fmt; then the chunk data begins. */
function header(channels, rate, frames) {
  const frame = 4 * channels;
  const bytes = Math.min(frames * frame, 0xfffff000);
  return Uint32Array.of(0x46464952, bytes + 36, 0x45564157, 0x20746d66, 16, (channels << 16) | 3, rate, rate * frame,
    (32 << 16) | frame, 0x61746164, bytes); // prettier-ignore
}

/** An array of samples for each channel as a file. */
export async function as_wav(channels, rate) {
  const [{ length }] = channels;
  const parts = [header(channels.length, rate, length)];
  for (let at = 0; at < length; at += piece) {
    const frames = new Float32Array(Math.min(piece, length - at) * channels.length);
    for (let i = 0, k = at; i < frames.length; ++k) for (const samples of channels) frames[i++] = samples[k];
    parts.push(new Blob([frames]));
    await breath();
  }
  return new Blob(parts);
}

export async function decode(file) {
  const sound = await new OfflineAudioContext(1, 1, 48000).decodeAudioData(await file.arrayBuffer());
  const channels = Array.from({ length: sound.numberOfChannels }, (_, c) => sound.getChannelData(c));
  return as_wav(channels, sound.sampleRate);
}
