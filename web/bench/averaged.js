// The averaged spectrum of a stream: overlapping blocks are windowed, transformed and folded into one average, and into
// the rows of a waterfall.

const row_bins = 1024;

/** The greatest of each group of powers, at most `row_bins` of them, in dB. */
function row_of(powers) {
  const group = Math.ceil(powers.length / row_bins);
  const row = new Float32Array(Math.ceil(powers.length / group));
  for (let i = 0; i < row.length; ++i) {
    let most = 1e-40;
    for (let k = i * group; k < Math.min((i + 1) * group, powers.length); ++k) most = Math.max(most, powers[k]);
    row[i] = 10 * Math.log10(most);
  }
  return row;
}

export class AveragedSpectrum {
  /** settings: block, overlap (0 to 0.99), window, average ("mean", "max_hold", "limit", ...), limit. */
  constructor(dsp, { block, overlap, window, average, limit, blocks_per_row = 8 }, rate) {
    const mode = average === "limit" ? "mean, power, limit" : `${average}, power`;
    Object.assign(this, { dsp, window, rate, blocks_per_row, filled: 0, count: 0, rows: [] });
    this.hop = Math.max(Math.round((1 - overlap) * block), 1);
    this.block = dsp.signal(new Float64Array(block), { dx: 1 / rate });
    this.bins = dsp.signal([]);
    this.average = new dsp.Average(mode, { limit });
    this.row = new dsp.Average("mean, power");
    this.enbw = (dsp.window_enbw(window, block) * rate) / block;
  }

  get dx() {
    return this.bins.dx;
  }

  /** From row to row of the waterfall, and from bin to bin in a row. */
  get row_spacing() {
    const group = Math.ceil(this.bins.length / row_bins);
    return { seconds: (this.blocks_per_row * this.hop) / this.rate, df: group * this.dx };
  }

  push(samples) {
    for (let taken = 0; taken < samples.length; ) {
      const part = samples.subarray(taken, taken + this.block.length - this.filled);
      this.block.samples.set(part, this.filled);
      this.filled += part.length;
      taken += part.length;
      if (this.filled === this.block.length) this.fold();
    }
  }

  fold() {
    this.dsp.spectrum(this.block, this.window, { out: this.bins });
    this.average.add(this.bins);
    this.row.add(this.bins);
    this.count += 1;
    if (this.count % this.blocks_per_row === 0) {
      this.rows.push(row_of(this.row.average.samples));
      this.row.reset();
    }
    this.block.samples.copyWithin(0, this.hop);
    this.filled = this.block.length - this.hop;
  }

  /** Power of every bin in dB: a sine of full scale shows 0. */
  levels() {
    const levels = this.average.result();
    const powers = levels.samples;
    // A one-sided spectrum doubles every amplitude, but zero and half the sample rate have no other side.
    powers[0] *= 0.25;
    powers[powers.length - 1] *= 0.25;
    return this.dsp.db(levels, 10, { out: levels });
  }

  free() {
    for (const part of [this.block, this.bins, this.average, this.row]) part.free();
  }
}
