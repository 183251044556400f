// Two windows side by side: shape, spectrum, and the figures one chooses by.

const points = 256; // of the window
const padding = 32; // bins of the spectrum in one of the window

function spectrum_of(dsp, shape) {
  const power = dsp.magsq(dsp.rdft(dsp.zpad(shape, padding * points)));
  dsp.scale(power, 1 / power.samples[0], { out: power });
  return dsp.db(power, 10).samples.slice();
}

/** The loss midway between two bins; the highest side lobe, beyond the first valley; the width at half power. */
function figures(dsp, window, spectrum) {
  let valley = spectrum.findIndex((level) => level < -6);
  if (valley < 0) valley = spectrum.length - 1;
  while (valley + 1 < spectrum.length && spectrum[valley + 1] < spectrum[valley]) ++valley;
  const highest = spectrum.subarray(valley).reduce((a, b) => Math.max(a, b), -Infinity);
  const width = (2 * spectrum.findIndex((level) => level < -3.0103)) / padding;
  return [
    ["noise bandwidth", dsp.window_enbw(window, points).toFixed(4), "bins"],
    ["scalloping", Math.abs(spectrum[padding / 2]).toFixed(3), "dB"],
    ["highest side lobe", highest.toFixed(1), "dB"],
    ["width at half power", width.toFixed(2), "bins"],
    ["main lobe", ((2 * valley) / padding).toFixed(1), "bins"],
  ];
}

export function compare(dsp, { first, second }) {
  const x = Float64Array.from({ length: points }, (_, i) => i / points - 0.5);
  const bins = Float64Array.from({ length: (padding * points) / 2 + 1 }, (_, i) => i / padding);
  const of = (window) => {
    const shape = dsp.window(new Float64Array(points).fill(1), window, "raw, no_swap");
    const spectrum = spectrum_of(dsp, shape);
    return { shape: shape.samples.slice(), spectrum, figures: figures(dsp, window, spectrum) };
  };
  return { x, bins, first: of(first), second: of(second) };
}
