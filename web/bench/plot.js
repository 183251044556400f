// A plot with cursor, zoom and markers, drawn by uPlot.

import { Figure, colour, colours, round_numbers } from "./figure.js";

/** A number to so many digits. */
const digits = (value, count) => String(Number(value?.toPrecision(count)));
const unit_of = (label) => label.split("/ ")[1] ?? "";

/** 1, 2, 5, 10, 20, ... between two limits; powers of ten alone where there is no room for more. */
function decades(lo, hi, width) {
  const first = Math.floor(Math.log10(lo));
  const count = Math.ceil(Math.log10(hi)) - first;
  if (hi < 3 * lo) return round_numbers(lo, hi, 6);
  const steps = width > 150 * count || count < 2 ? [1, 2, 5] : [1];
  const all = Array.from({ length: count + 1 }, (_, k) => steps.map((step) => step * 10 ** (first + k)));
  return all.flat().filter((v) => v >= lo && v <= hi);
}

export class Plot extends Figure {
  /** options: id, x and y (labels as "quantity / unit"), traces (their names), on_mark and on_draw. */
  constructor(options) {
    super(options.id, `plot of ${options.y} over ${options.x}`);
    Object.assign(this, { marks: [], height: 340, ...options });
    Object.assign(this.root, { tabIndex: 0, onkeydown: (event) => this.key(event) });
    this.root.setAttribute("aria-describedby", "keys");
  }

  /** x, then a trace each; `log`: logarithmic in x; `y_range` fixes the other axis. */
  show(data, { log = false, y_range } = {}) {
    this.data = log ? data.map((column) => column.slice(data[0].findIndex((v) => v > 0))) : data;
    const limits = [this.data[0][0], this.data[0].at(-1)];
    if (log !== this.log || String(limits) !== String(this.limits)) [this.range, this.cursor] = [limits, undefined];
    Object.assign(this, { log, y_range, limits });
    this.draw();
  }

  get place() {
    const [lo, hi] = this.range;
    return this.log ? (x) => Math.log(x / lo) / Math.log(hi / lo) : (x) => (x - lo) / (hi - lo);
  }

  draw() {
    if (!this.data || this.root.clientWidth === 0) return;
    this.width = this.root.clientWidth;
    this.uplot?.destroy();
    this.uplot = new uPlot(this.uplot_options(), this.data, this.root);
    this.adopt(this.uplot.ctx.canvas);
  }

  uplot_options() {
    const grid = { stroke: colour("line"), width: 1 };
    const values = (_, all) => all.map((v) => digits(v, 6));
    const axis = (label) => ({ label, stroke: colour("ink"), grid, ticks: grid, values });
    const log_axis = { splits: () => decades(...this.range, this.width), filter: (_, all) => all };
    const trace = (label, i) => ({ label, stroke: colour(colours[i]), width: 1.5, points: { show: false } });
    const y = this.y_range ? { range: () => this.y_range } : {};
    const selected = ({ select: { left, width }, posToVal }) =>
      width > 5 && this.zoom(posToVal(left, "x"), posToVal(left + width, "x"));
    return {
      width: this.width, height: this.height, legend: { show: false }, padding: [24, null, null, null],
      scales: { x: { time: false, distr: this.log ? 3 : 1, range: () => this.range }, y },
      axes: [{ ...axis(this.x), ...(this.log ? log_axis : {}) }, { ...axis(this.y), size: 60 }],
      series: [{ label: this.x }, ...this.traces.map(trace)],
      cursor: { y: false, drag: { x: true, y: false, setScale: false } },
      hooks: {
        setCursor: [(u) => u.cursor.idx != null && this.read(u.cursor.idx)],
        setSelect: [selected],
        draw: [(u) => (this.draw_marks(u), this.draw_names(u))],
        ready: [(u) => this.drawn(u)],
      },
    }; // prettier-ignore
  }

  drawn({ over }) {
    over.ondblclick = () => this.zoom(...this.limits);
    if (this.cursor !== undefined) this.move(0);
    this.on_draw?.();
  }

  draw_marks({ ctx, bbox, valToPos }) {
    ctx.fillStyle = colour("mark");
    const [lo, hi] = this.range;
    for (const { x } of this.marks)
      if (x >= lo && x <= hi) ctx.fillRect(valToPos(x, "x", true), bbox.top, devicePixelRatio, bbox.height);
  }

  /** The names of several traces in their colours, above the plot, in the picture that is saved, too. */
  draw_names({ ctx, bbox }) {
    if (this.traces.length < 2) return;
    Object.assign(ctx, { font: `${13 * devicePixelRatio}px system-ui, sans-serif`, textAlign: "left" });
    this.traces.reduce((left, name, i) => {
      ctx.fillStyle = colour(colours[i]);
      ctx.fillText(name, left, bbox.top - 8 * devicePixelRatio);
      return left + ctx.measureText(`${name}  `).width;
    }, bbox.left);
  }

  read(i) {
    this.cursor = i;
    const name = (k) => (this.traces.length > 1 ? `${this.traces[k]} ` : "");
    const values = this.traces.map((_, k) => `${name(k)}${digits(this.data[k + 1][i], 5)}`).join(", ");
    this.readout.value = `${digits(this.data[0][i], 6)} ${unit_of(this.x)}: ${values} ${unit_of(this.y)}`;
  }

  /** Moves the cursor by so many points, or by a pixel for each of them where points are closer than that. */
  move(by) {
    const [x] = this.data;
    const [lo, hi] = this.range;
    const in_range = (i) => x[i] >= lo && x[i] <= hi;
    const pixel = (i) => Math.round(this.place(x[i]) * this.width);
    const step = Math.sign(by);
    let at = in_range(this.cursor) ? this.cursor : x.findIndex((_, i) => in_range(i));
    for (let moved = 0; moved < Math.abs(by) && in_range(at + step); ++moved) {
      const from = pixel(at);
      do at += step;
      while (pixel(at) === from && in_range(at + step));
    }
    this.uplot.setCursor({ left: this.uplot.valToPos(x[at], "x"), top: 10 }, false);
    this.read(at);
  }

  zoom(lo, hi) {
    const [least, most] = this.limits;
    const range = [Math.max(lo, least), Math.min(hi, most)];
    if (range[1] - range[0] > 4 * Math.abs(this.data[0][2] - this.data[0][1])) this.range = range;
    this.draw();
  }

  /** Narrower or wider about the cursor, evenly along the axis as it is drawn. */
  scale(factor) {
    const at = Math.min(Math.max(this.place(this.data[0][this.cursor ?? 0]), 0), 1);
    const [lo, hi] = this.range;
    const value = (p) => (this.log ? lo * (hi / lo) ** p : lo + (hi - lo) * p);
    this.zoom(value(at - at * factor), value(at + (1 - at) * factor));
  }

  /** Sets a marker at the cursor, or takes away the one that is there. */
  mark() {
    if (this.cursor === undefined) return;
    const [x, y] = this.data.map((column) => column[this.cursor]);
    const others = this.marks.filter((mark) => mark.x !== x);
    this.marks = others.length < this.marks.length ? others : [...others, { x, y }];
    this.on_mark?.(this.marks);
    this.draw();
  }

  key(event) {
    const steps = { ArrowLeft: -1, ArrowRight: 1, PageUp: -20, PageDown: 20, Home: -1e9, End: 1e9 };
    const actions = {
      "+": () => this.scale(0.5), "-": () => this.scale(2), 0: () => this.zoom(...this.limits), m: () => this.mark(),
    }; // prettier-ignore
    const action = steps[event.key] ? () => this.move(steps[event.key]) : actions[event.key];
    const is_ours = event.target === this.root && this.uplot && !event.ctrlKey && !event.metaKey && !event.altKey;
    if (!is_ours || !action) return;
    action();
    event.preventDefault();
  }

  table() {
    return [[this.x, ...this.traces], this.data];
  }
}
