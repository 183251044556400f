// The strongest peaks of a spectrum in dB: maxima that stand out, and are no side lobes of stronger ones, with their
// places between the bins by the shape of the window's own line.

const steps = 8; // of the table of side lobes, in a bin of the window

/** The line that a tone shows: places in bins of the spectrum, powers relative to its centre. */
class WindowLine {
  constructor(dsp, window, active, grid) {
    const shape = dsp.window(new Float64Array(Math.min(active, 2048)).fill(1), window, "raw, no_swap");
    const bins = dsp.rdft(dsp.zpad(shape, steps * shape.length));
    const power = dsp.magsq(bins);
    dsp.scale(power, 1 / power.samples[0], { out: power });
    this.table = dsp.db(power, 10).samples.slice();
    this.shape = shape.samples.slice();
    this.widening = grid / active;
    const below = (decibels) => {
      const k = this.table.findIndex((level) => !(level > decibels));
      return k < 0 ? this.table.length : k;
    };
    this.half_width = Math.min(Math.ceil((below(-40) * this.widening) / steps), grid / 2);
    this.shoulder = Math.max(Math.round((below(-6) * this.widening) / steps), 1);
    this.keep_highest(below(-6));
  }

  /** From the first valley on, the table keeps the highest of what follows. */
  keep_highest(valley) {
    const { table } = this;
    while (valley + 1 < table.length && table[valley + 1] < table[valley]) ++valley;
    for (let k = table.length - 2; k >= valley; --k) table[k] = Math.max(table[k], table[k + 1]);
    table.fill(table[Math.min(valley, table.length - 1)], 0, valley);
  }

  side_lobe(distance) {
    return this.table[Math.trunc(Math.min((distance / this.widening) * steps, this.table.length - 1))];
  }

  power(distance) {
    const { shape, widening } = this;
    const n = shape.length;
    let sum = 0;
    for (let i = 0; i < n; ++i)
      sum += shape[i] * Math.cos((((2 * Math.PI * distance) / widening) * (i - Math.floor(n / 2))) / n);
    return sum * sum;
  }

  /** The peak around bin i: the two shoulders balance where the line's centre is. Below -30 dB they are lost. */
  centre(levels, i) {
    const { shoulder } = this;
    const unrefined = { bin: i, level: levels[i] };
    if (i < shoulder || i + shoulder >= levels.length) return unrefined;
    const [left, right] = [levels[i - shoulder], levels[i + shoulder]];
    if (Math.max(left, right) < levels[i] - 30) return unrefined;
    const ratio = 10 ** (-Math.abs(right - left) / 10);
    let [lo, hi] = [0, Math.max(shoulder / 2, 0.5)];
    for (let halving = 0; halving < 40; ++halving) {
      const middle = (lo + hi) / 2;
      if (this.power(shoulder + middle) > ratio * this.power(shoulder - middle)) lo = middle;
      else hi = middle;
    }
    return { bin: i + (right > left ? lo : -lo), level: levels[i] - 10 * Math.log10(this.power(lo) / this.power(0)) };
  }
}

/** Does bin i rise 6 dB above the valleys towards higher maxima, or towards the ends? */
function stands_out(levels, i) {
  return [-1, 1].every((step) => {
    let valley = levels[i];
    for (let k = i + step; k >= 0 && k < levels.length && levels[k] <= levels[i]; k += step)
      valley = Math.min(valley, levels[k]);
    return levels[i] - valley >= 6;
  });
}

/** At most `count` peaks {bin, level}, strongest first. */
export function find_peaks(dsp, levels, window, active, grid, count) {
  const line = new WindowLine(dsp, window, active, grid);
  const last = levels.length - 1;
  const maxima = [];
  for (let i = line.half_width; i < last; ++i)
    if (levels[i] > levels[i - 1] && levels[i] >= levels[i + 1] && stands_out(levels, i)) maxima.push(i);
  maxima.sort((a, b) => levels[b] - levels[a]);
  // Both ends of the spectrum, which were not doubled, are lines like the others in what they leak.
  const lines = [{ bin: 0, level: levels[0] + 6.02 }, { bin: last, level: levels[last] + 6.02 }];
  const is_side_lobe = (i) => lines.some((p) => levels[i] < p.level + line.side_lobe(Math.abs(i - p.bin)) + 4);
  const peaks = [];
  for (const i of maxima) {
    if (peaks.length === count) break;
    if (is_side_lobe(i)) continue;
    peaks.push(line.centre(levels, i));
    lines.push(peaks.at(-1));
  }
  return peaks.sort((a, b) => b.level - a.level);
}
