// The figures of a tone: frequency, level, harmonics, noise, and what they make of each other.

import { LineFit } from "./line_fit.js";

const half_lobe = 8; // bins: half of the main lobe of the window for noise, and one for a line between two bins
const least_samples = 32 * half_lobe;
export const most_samples = 2 ** 22;

const db = (power) => 10 * Math.log10(power);

/** Noise: the power of all bins but `taken` lines, as if these held as much as the others. */
function noise_of(dsp, record, taken) {
  const bins = dsp.spectrum_dft(record, "p601");
  const power = dsp.magsq(bins, { out: bins });
  const p = power.samples;
  p[0] *= 0.25; // has no other side to be doubled for, nor has half the sample rate
  if (record.length % 2 === 0) p[p.length - 1] *= 0.25;
  for (const centre of taken) p.fill(NaN, Math.max(centre - half_lobe, 0), centre + half_lobe + 1);
  let [sum, count] = [0, 0];
  for (const x of p) if (!Number.isNaN(x)) [sum, count] = [sum + x, count + 1];
  const noise = ((sum / count) * p.length) / dsp.window_enbw("p601", record.length);
  power.free();
  return noise;
}

/** The tone, or an error that says why it cannot be read. */
function find_tone(lines, harmonics) {
  const place = lines.strongest(0, lines.half_rate);
  if (place < 0) throw new Error("There is no tone.");
  const tone = lines.tone(place, harmonics);
  if (tone.bin < 2.9) throw new Error("The strongest component has fewer than 3 periods in the recording.");
  if (lines.half_rate - tone.bin < 2.9) throw new Error("The strongest component is too close to half the sample rate.");
  const error = 20 * Math.log10(1 + tone.amplitude_error / tone.amplitude);
  if (!(error <= 10)) throw new Error("No tone stands out.");
  if (error > 0.002) throw new Error(`What lies around the tone can change its level by ${Number(error.toPrecision(2))} dB.`);
  return tone;
}

/** Rows of name, value and unit for a record, a signal. */
export function tone_figures(dsp, record, harmonics = 10) {
  if (record.length < least_samples) throw new Error(`A tone takes ${least_samples} samples at least.`);
  const lines = new LineFit(dsp, record);
  const tone = find_tone(lines, harmonics);
  const shares = lines.amplitudes(tone.bin, harmonics).slice(1).map((a) => (a / tone.amplitude) ** 2);
  const level = tone.amplitude ** 2;
  const distortion = shares.reduce((sum, share) => (share > 0 ? sum + share : sum), 0) * level;
  const taken = shares.map((_, i) => Math.round(lines.folded(tone.bin, i + 2).bin));
  const noise = noise_of(dsp, record, [0, Math.round(tone.bin), ...taken]);
  const to_hz = 1 / (record.dx * record.length);
  const decimals = Math.min(Math.max(Math.ceil(-Math.log10(tone.bin_error * to_hz)), 3), 12);
  const shown = (name, value, unit, digits = 2) => [name, Number.isFinite(value) ? value.toFixed(digits) : "none", unit];
  return [
    shown("frequency", tone.bin * to_hz, "Hz", decimals),
    shown("level", db(level), "dB of full scale", 3),
    ...shares.slice(0, 4).map((share, i) => shown(`harmonic ${i + 2}`, db(share), "dB of the tone")),
    shown("total distortion", db(distortion / level), "dB of the tone"),
    shown("noise", db(noise), "dB of full scale"),
    shown("noise density", db(noise * 2 * record.dx), "dB of full scale in 1 Hz"),
    shown("signal to noise", db(level / noise), "dB"),
    shown("SINAD", db(level / (noise + distortion)), "dB"),
    shown("effective bits", (db(1 / (noise + distortion)) - db(1.5)) / db(4), ""),
  ];
}
