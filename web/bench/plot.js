// A plot with cursor, zoom and markers, drawn by uPlot.

import { Figure, colour, colours } from "./figure.js";

/** A number to so many digits. */
const digits = (value, count) => String(Number(value?.toPrecision(count)));

/** 1, 2, 5, 10, 20, ... between two limits; powers of ten alone where there is no room for more. */
function decades(lo, hi, width) {
  const first = Math.floor(Math.log10(lo));
  const count = Math.ceil(Math.log10(hi)) - first;
  const steps = width > 150 * count || count < 2 ? [1, 2, 5] : [1];
  const all = Array.from({ length: count + 1 }, (_, k) => steps.map((step) => step * 10 ** (first + k)));
  return all.flat().filter((v) => v >= lo && v <= hi);
}

export class Plot extends Figure {
  /** options: id, x and y (labels as "quantity / unit"), traces (their names), and what is told of markers and drawing. */
  constructor(options) {
    super(options.id, `plot of ${options.y} over ${options.x}`);
    Object.assign(this, { marks: [], height: 340, ...options });
    this.root.onkeydown = (event) => this.key(event);
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
    this.canvas = this.uplot.ctx.canvas;
  }

  uplot_options() {
    const grid = { stroke: colour("line"), width: 1 };
    const decimal = { splits: () => decades(...this.range, this.width), values: (_, all) => all, filter: (_, all) => all };
    const axis = (label) => ({ label, stroke: colour("ink"), grid, ticks: grid });
    const traces = this.traces.map((label, i) => ({ label, stroke: colour(colours[i]), width: 1.5, points: { show: false } }));
    return {
      width: this.width, height: this.height, legend: { show: false }, padding: [24, null, null, null],
      scales: { x: { time: false, distr: this.log ? 3 : 1, range: () => this.range }, y: this.y_range ? { range: () => this.y_range } : {} },
      axes: [{ ...axis(this.x), ...(this.log ? decimal : {}) }, { ...axis(this.y), size: 60 }],
      series: [{ label: this.x }, ...traces],
      cursor: { drag: { x: true, y: false, setScale: false } },
      hooks: {
        setCursor: [(u) => u.cursor.idx != null && this.read(u.cursor.idx)],
        setSelect: [({ select: { left, width }, posToVal }) => width > 5 && this.zoom(posToVal(left, "x"), posToVal(left + width, "x"))],
        draw: [(u) => (this.draw_marks(u), this.draw_names(u))],
        ready: [(u) => this.drawn(u)],
      },
    };
  }

  drawn({ over }) {
    over.ondblclick = () => this.zoom(...this.limits);
    if (this.cursor !== undefined) this.move(0);
    this.on_draw?.();
  }

  draw_marks({ ctx, bbox, valToPos }) {
    ctx.strokeStyle = colour("mark");
    for (const { x } of this.marks) {
      const left = valToPos(x, "x", true);
      if (left < bbox.left || left > bbox.left + bbox.width) continue;
      ctx.beginPath();
      ctx.moveTo(left, bbox.top);
      ctx.lineTo(left, bbox.top + bbox.height);
      ctx.stroke();
    }
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
    const values = this.traces.map((name, k) => `${this.traces.length > 1 ? `${name} ` : ""}${digits(this.data[k + 1][i], 5)}`);
    const [x_unit, y_unit] = [this.x, this.y].map((label) => label.split("/ ")[1] ?? "");
    this.readout.value = `${digits(this.data[0][i], 6)} ${x_unit}: ${values.join(", ")} ${y_unit}`;
  }

  /** Moves the cursor by so many points, or by a pixel for each of them where points are closer than that. */
  move(by) {
    const [x] = this.data;
    const [lo, hi] = this.range;
    const in_range = (i) => x[i] >= lo && x[i] <= hi;
    let at = this.cursor ?? 0;
    if (!in_range(at)) at = x.findIndex((_, i) => in_range(i));
    const pixel = (i) => Math.round(this.place(x[i]) * this.width);
    const step = Math.sign(by);
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

  mark() {
    if (this.cursor === undefined) return;
    this.marks.push({ x: this.data[0][this.cursor], y: this.data[1][this.cursor] });
    this.on_mark?.(this.marks);
    this.draw();
  }

  key(event) {
    const steps = { ArrowLeft: -1, ArrowRight: 1, PageUp: -20, PageDown: 20, Home: -1e9, End: 1e9 };
    const actions = { "+": () => this.scale(0.5), "-": () => this.scale(2), 0: () => this.zoom(...this.limits), m: () => this.mark() };
    const is_ours = event.target === this.root && this.uplot && !event.ctrlKey && !event.metaKey && !event.altKey;
    if (!is_ours || !(steps[event.key] || actions[event.key])) return;
    if (steps[event.key]) this.move(steps[event.key]);
    else actions[event.key]();
    event.preventDefault();
  }

  table() {
    return [[this.x, ...this.traces], this.data];
  }
}
