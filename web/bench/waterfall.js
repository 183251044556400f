// Rows of levels as colours, time running down, frequency as in the plot above.

const most_rows = 400;

/** Black, blue, red, yellow, white from 0 to 1. */
function colour(level) {
  const t = Math.min(Math.max(level, 0), 1) * 4;
  const up = (from) => Math.min(Math.max(t - from, 0), 1) * 255;
  return [up(1), up(2), t < 2 ? up(0) - up(1) : up(3)];
}

export class Waterfall {
  constructor(canvas) {
    this.canvas = canvas;
    this.rows = [];
  }

  add(rows, fresh) {
    this.rows = (fresh ? [] : this.rows).concat(rows).slice(-most_rows);
  }

  /** Below `plot`, bins of a row `df` apart; the upper 100 dB are shown. */
  draw({ range: [lo, hi], log, uplot }, df) {
    const { canvas, rows } = this;
    if (rows.length === 0 || !uplot) return;
    canvas.width = uplot.over.offsetWidth;
    canvas.style.width = `${canvas.width}px`;
    canvas.style.marginLeft = `${uplot.over.offsetLeft}px`;
    canvas.height = rows.length;
    const bins = Array.from({ length: canvas.width }, (_, i) => {
      const p = i / canvas.width;
      return Math.min(Math.round((log ? lo * (hi / lo) ** p : lo + (hi - lo) * p) / df), rows[0].length - 1);
    });
    const top = rows.reduce((most, row) => row.reduce((a, b) => Math.max(a, b), most), -Infinity);
    const picture = new ImageData(canvas.width, canvas.height);
    rows.forEach((row, y) =>
      bins.forEach((bin, x) => picture.data.set([...colour((row[bin] - top + 100) / 100), 255], 4 * (y * canvas.width + x))));
    canvas.getContext("2d").putImageData(picture, 0, 0);
  }
}
