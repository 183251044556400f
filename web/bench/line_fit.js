// Fits lines to the bins of a windowed spectrum, several at once where they are so close to each other, to frequency 0 or
// to half the sample rate that one reaches into the next. Places and errors are in bins, amplitudes in the record's unit.

import { LeastSquares, norm } from "./least_squares.js";

const reach = 17; // bins: lines farther away than this do not enter a fit
const fitted = 12; // bins to either side of a line that its fit looks at
const judged = 8; // and those whose residual tells its errors
const least_distance = 1.5; // of lines that can be told from each other

const clamp = (x, lo, hi) => Math.min(Math.max(x, lo), hi);

/** A spectrum of `n` ones about the record's middle, an even record counting as one that holds half of either end. */
function ones(offset, n) {
  const angle = (offset - n * Math.round(offset / n)) * Math.PI;
  if (Math.abs(angle) < 1e-9) return 1;
  const smooth = n % 2 === 0 ? Math.cos(angle / n) : 1;
  return (Math.sin(angle) * smooth) / (n * Math.sin(angle / n));
}

export class LineFit {
  constructor(dsp, record) {
    this.n = record.length;
    this.half_rate = this.n / 2;
    const work = dsp.offset(record, -dsp.mean(record));
    dsp.window(work, "hann", "no_swap", { out: work });
    dsp.window(work, "hann", 0, { out: work });
    this.bins = dsp.rdft(work, { out: work }).samples.slice(); // phase 0 in the middle of the record
    work.free();
  }

  // (1 + cos x)^2 is 1.5 + 2 cos x + 0.5 cos 2x: a line 3 bins wide that falls by 30 dB an octave beyond.
  kernel(d) {
    const { n } = this;
    const pair = (k) => ones(d - k, n) + ones(d + k, n);
    return 1.5 * ones(d, n) + pair(1) + 0.25 * pair(2);
  }
  kernel_slope(d) {
    return (this.kernel(d + 1e-4) - this.kernel(d - 1e-4)) / 2e-4;
  }

  around(lo, hi, margin) {
    const first = Math.ceil(Math.max(lo - margin, 0));
    const last = Math.floor(Math.min(hi + margin, this.half_rate));
    return Array.from({ length: last - first + 1 }, (_, i) => first + i);
  }

  // A column holds the real parts of the rows' bins, then their imaginary parts.
  data(rows) {
    return [0, 1].flatMap((part) => rows.map((k) => this.bins[2 * k + part]));
  }
  column(rows, re, im) {
    return [...rows.map(re), ...rows.map(im)];
  }
  cosine(bin, rows) {
    return this.column(rows, (k) => 0.5 * (this.kernel(k - bin) + this.kernel(k + bin)), () => 0);
  }
  sine(bin, rows) {
    return this.column(rows, () => 0, (k) => 0.5 * (this.kernel(k + bin) - this.kernel(k - bin)));
  }
  slope_of_line(bin, a, b, rows) {
    const image = (k) => 0.5 * this.kernel_slope(k + bin);
    const line = (k) => 0.5 * this.kernel_slope(k - bin);
    return this.column(rows, (k) => a * (image(k) - line(k)), (k) => b * (image(k) + line(k)));
  }

  /** Cosine and sine of every line; where a line comes close to frequency 0, offset and slope as well. */
  model(bins, rows) {
    const columns = bins.flatMap((bin) => [this.cosine(bin, rows), this.sine(bin, rows)]);
    if (rows[0] < reach - fitted)
      columns.push(this.cosine(0, rows), this.column(rows, () => 0, (k) => this.kernel_slope(k)));
    return columns;
  }

  /** Where harmonic h of a tone shows after folding at both ends, and how its place follows the tone's. */
  folded(bin, h) {
    const turn = (h * bin) % this.n;
    return turn > this.half_rate ? { bin: this.n - turn, slope: -h } : { bin: turn, slope: h };
  }

  is_apart(place, others) {
    const from_ends = Math.min(place, this.half_rate - place);
    return from_ends > least_distance && others.every((other) => Math.abs(other.bin - place) > least_distance);
  }

  /** The tone itself, and its harmonics within reach that are lines of their own. */
  neighbours(bin, harmonics) {
    const lines = [{ bin, slope: 1 }];
    for (let h = 2; h <= harmonics; ++h) {
      const line = this.folded(bin, h);
      if (Math.abs(line.bin - bin) < reach && this.is_apart(line.bin, lines)) lines.push(line);
    }
    return lines;
  }

  /** The strongest line within lo ... hi bins, to a quarter of a bin; -1 in silence. */
  strongest(lo, hi) {
    let [best, most] = [-1, 0];
    const consider = (bin, power) => {
      if (power > most && bin >= lo && bin <= hi) [most, best] = [power, bin];
    };
    const power_of = (k) => this.bins[2 * k] ** 2 + this.bins[2 * k + 1] ** 2;
    for (let k = fitted - 3; k <= Math.trunc(this.half_rate - fitted) + 3; ++k) {
      let sum = 0; // over the seven bins of a line
      for (let i = k - 3; i <= k + 3; ++i) sum += power_of(i);
      consider(k, sum);
    }
    // At the ends a line overlaps its own image, or the offset.
    for (const end of [0, this.half_rate]) {
      const rows = this.around(end, end, 2 * fitted);
      const left = (bins) => norm(new LeastSquares(this.model(bins, rows), this.data(rows)).residual) ** 2;
      const silent = left([]);
      for (let d = 0.5; d <= fitted; d += 0.25) consider(Math.abs(end - d), silent - left([Math.abs(end - d)]));
    }
    return best;
  }

  /** One step of Gauss and Newton: the amplitudes with the places held, then all with the way the lines move along. */
  step(bin, harmonics) {
    const lines = this.neighbours(bin, harmonics);
    const rows = this.around(bin, bin, fitted);
    const y = this.data(rows);
    const held = new LeastSquares(this.model(lines.map((l) => l.bin), rows), y);
    const columns = this.model(lines.map((l) => l.bin), rows);
    const along = new Array(y.length).fill(0);
    lines.forEach((line, i) => {
      const slope = this.slope_of_line(line.bin, held.solution[2 * i], held.solution[2 * i + 1], rows);
      slope.forEach((s, k) => (along[k] += line.slope * s));
    });
    const moved = new LeastSquares([...columns, along], y);
    return { rows, held, moved, unknowns: columns.length + 1, move: moved.solution.at(-1) };
  }

  /** The length of what the fit leaves of the bins that matter, as if its unknowns had taken none of it. */
  rest_of({ rows, held, unknowns }, bin) {
    const near = new Set(this.around(bin, bin, judged));
    const rest = held.residual.filter((_, i) => near.has(rows[i % rows.length]));
    return norm(rest) * Math.sqrt(rest.length / Math.max(rest.length - unknowns, 1));
  }

  /** The tone near `bin`, fitted with those of its harmonics that lie close. */
  tone(bin, harmonics) {
    const settle = (h) => {
      let s = this.step(bin, h);
      for (let i = 0; i < 50 && Math.abs(s.move) > 1e-10; ++i) {
        bin = clamp(bin + clamp(s.move, -0.25, 0.25), 0, this.half_rate);
        s = this.step(bin, h);
      }
      return s;
    };
    settle(1); // first alone: harmonics can be told from each other once the place is known
    const s = settle(harmonics);
    const [a, b] = s.held.solution;
    const amplitude = Math.hypot(a, b);
    const rest = 2 * this.rest_of(s, bin); // twice: noise of neighbouring bins is correlated
    const weights = new Array(s.unknowns).fill(0);
    const to_place = weights.with(-1, 1);
    return {
      bin, amplitude,
      amplitude_error: rest * s.moved.sensitivity(weights.with(0, a / amplitude).with(1, b / amplitude)),
      bin_error: rest * s.moved.sensitivity(to_place) + Math.abs(s.move),
    };
  }

  /** The amplitudes of harmonics 1 ... `harmonics` of a tone at a known place; NaN: not to be told from another. */
  amplitudes(bin, harmonics) {
    const found = new Array(harmonics).fill(NaN);
    const lines = [];
    for (let h = 1; h <= harmonics; ++h) {
      const place = this.folded(bin, h).bin;
      if (h === 1 || this.is_apart(place, lines)) lines.push({ bin: place, h });
    }
    lines.sort((p, q) => p.bin - q.bin);
    while (lines.length > 0) {
      const gap = lines.findIndex((line, i) => i > 0 && line.bin - lines[i - 1].bin > 2 * judged);
      const group = lines.splice(0, gap < 0 ? lines.length : gap);
      const rows = this.around(group[0].bin, group.at(-1).bin, judged);
      const { solution } = new LeastSquares(this.model(group.map((l) => l.bin), rows), this.data(rows));
      group.forEach((line, i) => (found[line.h - 1] = Math.hypot(solution[2 * i], solution[2 * i + 1])));
    }
    return found;
  }
}
