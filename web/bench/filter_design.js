// A filter by its kind, edges and window: taps, responses, and recordings through it.

/** Frequencies in hertz become cycles per sample; a band is a centre and a width. */
function taps_of(dsp, { kind, taps, low, high, rate, window }) {
  const is_band = kind.startsWith("band");
  const [f, p] = is_band ? [(low + high) / 2 / rate, (high - low) / rate] : [low / rate, 0];
  if (!(low > 0 && low < rate / 2) || (is_band && !(high > low && high < rate / 2)))
    throw new Error("The edges do not lie in order between 0 and half the sample rate.");
  const h = dsp.fir(kind, taps, f, p);
  return dsp.window_fir(h, window, { out: h });
}

export function design(dsp, settings) {
  const h = taps_of(dsp, settings);
  const length = 2 ** Math.ceil(Math.log2(Math.max(16 * h.length, 4096)));
  const bins = dsp.fft(dsp.scale(dsp.zpad(h, length), length));
  const step = dsp.integ(h);
  return {
    frequency: Float64Array.from({ length: length / 2 + 1 }, (_, i) => (i * settings.rate) / length),
    response: dsp.db(dsp.mag(bins)).samples.slice(0, length / 2 + 1),
    taps: h.samples.slice(),
    step: step.samples.slice(),
  };
}

/** The record through the filter, then at a lower rate, for listening. */
export function filtered(dsp, record, { through, ratio, ...settings }) {
  let [out, rate] = [record, 1 / record.dx];
  if (through) out = new dsp.FirFilter(taps_of(dsp, { ...settings, rate })).filter(out);
  if (ratio > 1) [out, rate] = [new dsp.Resampler(ratio).convert(out), rate / ratio];
  return { samples: Float32Array.from(out.samples), rate };
}
