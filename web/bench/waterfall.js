// Rows of levels as colours, time running down, frequency as in the plot above.

import { Figure, round_numbers } from "./figure.js";

const most_rows = 512;
const depth = 100; // dB from black to white
const height = 200;
const top = 6;

/** Black, blue, red, yellow, white from 0 to 1, as the four bytes of a pixel. */
const palette = Uint32Array.from({ length: 256 }, (_, i) => {
  const t = (4 * i) / 255;
  const up = (from) => Math.round(Math.min(Math.max(t - from, 0), 1) * 255);
  const [red, green, blue] = [up(1), up(2), t < 2 ? up(0) - up(1) : up(3)];
  return (255 << 24) | (blue << 16) | (green << 8) | red;
});

export class Waterfall extends Figure {
  rows = [];

  /** `seconds` from row to row, bins of a row `df` apart; `fresh`: another recording, or another way to look at it. */
  add(rows, fresh, { seconds, df }) {
    this.rows = (fresh ? [] : this.rows).concat(rows).slice(-most_rows);
    Object.assign(this, { seconds, df });
  }

  /** The rows as a picture of a pixel each, `width` pixels of which column i shows the frequency f(i). */
  picture(width, f) {
    const { rows, df } = this;
    const bins = Array.from({ length: width }, (_, i) => Math.min(Math.round(f(i) / df), rows[0].length - 1));
    const most = rows.reduce((most, row) => row.reduce((a, b) => Math.max(a, b), most), -Infinity);
    const shade = (level) => palette[Math.max(Math.round(((level - most) / depth + 1) * 255), 0)];
    const pixels = new Uint32Array(width * rows.length);
    rows.forEach((row, y) => bins.forEach((bin, x) => (pixels[y * width + x] = shade(row[bin]))));
    const canvas = new OffscreenCanvas(width, rows.length);
    canvas.getContext("2d").putImageData(new ImageData(new Uint8ClampedArray(pixels.buffer), width, rows.length), 0, 0);
    return canvas;
  }

  /** Below the plot whose place and range it takes. */
  draw(plot = this.plot) {
    this.plot = plot;
    if (!this.rows.length || !plot?.uplot || !this.root.clientWidth) return;
    const { range: [lo, hi], log, uplot: { over } } = plot; // prettier-ignore
    const [left, width] = [over.offsetLeft, over.offsetWidth];
    const ctx = this.blank(this.root.clientWidth, height + 2 * top);
    const f = (i) => (log ? lo * (hi / lo) ** (i / width) : lo + ((hi - lo) * i) / width);
    ctx.imageSmoothingEnabled = false;
    ctx.drawImage(this.picture(width, f), left, top, width, height);
    const whole = this.rows.length * this.seconds;
    ctx.textAlign = "right";
    for (const time of round_numbers(0, whole, 5)) {
      const y = top + (time / whole) * height;
      ctx.fillRect(left - 5, y, 5, 1);
      ctx.fillText(time, left - 8, y + 4);
    }
    ctx.rotate(-Math.PI / 2);
    Object.assign(ctx, { textAlign: "center", font: "bold 12px system-ui, sans-serif" });
    ctx.fillText("time / s", -top - height / 2, 12);
    this.readout.value = `Waterfall: black, blue, red, yellow, white in steps of ${depth / 4} dB`;
  }

  table() {
    const [first = []] = this.rows;
    const names = ["time / s", ...Array.from(first, (_, k) => `${k * this.df} Hz`)];
    const columns = Array.from(first, (_, k) => this.rows.map((row) => row[k].toFixed(2)));
    return [names, [this.rows.map((_, i) => i * this.seconds), ...columns]];
  }
}
