// A plot with cursor, zoom, markers, PNG and CSV: uPlot, drawn from as many points as the width can show.

import { download } from "./page.js";

const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
const dark = matchMedia("(prefers-color-scheme: dark)");

/** The indices to draw: of each column of the plot the least and the greatest of the first trace. */
function outline(x, y, [lo, hi], place, columns) {
  const kept = [];
  const first = Math.max(x.findIndex((v) => v >= lo) - 1, 0);
  let [column, least, greatest] = [-Infinity, -1, -1];
  const close = () => least >= 0 && kept.push(...[...new Set([least, greatest])].sort((a, b) => a - b));
  for (let i = first; i < x.length && (i === 0 || x[i - 1] <= hi); ++i) {
    const next = Math.floor(columns * place(x[i]));
    if (next !== column) {
      close();
      [column, least, greatest] = [next, i, i];
    }
    if (y[i] < y[least]) least = i;
    if (y[i] > y[greatest]) greatest = i;
  }
  close();
  return kept;
}

export class Plot {
  /** options: id, x and y (labels), traces (their names), and what is told of markers and of drawing. */
  constructor(options) {
    Object.assign(this, { marks: [], height: 340, ...options });
    this.root = document.getElementById(options.id);
    this.root.tabIndex = 0;
    this.root.setAttribute("role", "group");
    this.root.setAttribute("aria-label", `Plot of ${options.y} over ${options.x}`);
    this.readout = document.createElement("output");
    const tools = document.createElement("div");
    tools.className = "tools";
    for (const [name, action] of [["PNG", () => this.png()], ["CSV", () => this.csv()]]) {
      const button = document.createElement("button");
      button.textContent = name;
      button.onclick = action;
      tools.append(button);
    }
    this.root.replaceChildren(tools, this.readout);
    this.root.onkeydown = (event) => this.key(event);
    new ResizeObserver(() => this.width !== this.root.clientWidth && this.draw()).observe(this.root);
    dark.addEventListener("change", () => this.draw());
  }

  /** x, then a trace each; `log`: logarithmic in x; `y_range` fixes the other axis. */
  show(data, { log = false, y_range } = {}) {
    const first = log ? data[0].findIndex((v) => v > 0) : 0;
    const limits = [data[0][first], data[0].at(-1)];
    if (log !== this.log || String(limits) !== String(this.limits)) this.range = limits;
    Object.assign(this, { data, log, y_range, limits });
    this.draw();
  }

  get place() {
    const [lo, hi] = this.range;
    return this.log ? (x) => Math.log(x / lo) / Math.log(hi / lo) : (x) => (x - lo) / (hi - lo);
  }

  draw() {
    if (!this.data || this.root.clientWidth === 0) return;
    this.width = this.root.clientWidth;
    this.kept = outline(this.data[0], this.data[1], this.range, this.place, this.width);
    const shown = this.data.map((column) => this.kept.map((i) => column[i]));
    const at = this.uplot?.cursor.idx;
    this.uplot?.destroy();
    this.uplot = new uPlot(this.uplot_options(), shown, this.root);
    if (at != null) this.move(0, at);
  }

  uplot_options() {
    const axis = (label) => ({ label, stroke: colour("ink"), grid: { stroke: colour("line"), width: 1 }, ticks: { stroke: colour("line") } });
    const traces = this.traces.map((label, i) => ({ label, stroke: colour(i ? "second" : "first"), width: 1.5, points: { show: false } }));
    return {
      width: this.width, height: this.height, legend: { show: this.traces.length > 1, live: false },
      scales: { x: { time: false, distr: this.log ? 3 : 1, range: () => this.range }, y: this.y_range ? { range: () => this.y_range } : {} },
      axes: [axis(this.x), { ...axis(this.y), size: 70 }],
      series: [{ label: this.x }, ...traces],
      cursor: { drag: { x: true, y: false, setScale: false } },
      hooks: {
        setCursor: [(u) => u.cursor.idx != null && this.read(u.cursor.idx)],
        setSelect: [(u) => u.select.width > 5 && this.zoom(u.posToVal(u.select.left, "x"), u.posToVal(u.select.left + u.select.width, "x"))],
        draw: [(u) => this.draw_marks(u)],
        ready: [(u) => ((u.over.ondblclick = () => this.zoom(...this.limits)), this.on_draw?.())],
      },
    };
  }

  draw_marks({ ctx, bbox, valToPos }) {
    ctx.strokeStyle = colour("mark");
    for (const { x } of this.marks) {
      const left = valToPos.call(this.uplot, x, "x", true);
      if (left < bbox.left || left > bbox.left + bbox.width) continue;
      ctx.beginPath();
      ctx.moveTo(left, bbox.top);
      ctx.lineTo(left, bbox.top + bbox.height);
      ctx.stroke();
    }
  }

  read(at) {
    const i = this.kept[at];
    if (i === undefined) return;
    this.cursor = i;
    const values = this.traces.map((name, k) => `${this.traces.length > 1 ? `${name} ` : ""}${this.data[k + 1][i]?.toPrecision(5)}`);
    this.readout.value = `${this.data[0][i].toPrecision(6)} ${this.x.split("/").at(-1).trim()}: ${values.join(", ")} ${this.y.split("/").at(-1).trim()}`;
  }

  move(by, from = this.uplot.cursor.idx ?? 0) {
    const at = Math.min(Math.max(from + by, 0), this.kept.length - 1);
    this.uplot.setCursor({ left: this.uplot.valToPos(this.data[0][this.kept[at]], "x"), top: 10 });
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
    const at = this.place(this.data[0][this.cursor ?? 0]);
    const [lo, hi] = this.range;
    const value = (p) => (this.log ? lo * (hi / lo) ** p : lo + (hi - lo) * p);
    this.zoom(value(at - Math.max(at, 0) * factor), value(at + Math.max(1 - at, 0) * factor));
  }

  mark() {
    if (this.cursor === undefined) return;
    this.marks.push({ x: this.data[0][this.cursor], y: this.data[1][this.cursor] });
    this.on_mark?.(this.marks);
    this.draw();
  }

  key(event) {
    const steps = { ArrowLeft: -1, ArrowRight: 1, PageUp: -20, PageDown: 20 };
    const actions = { "+": () => this.scale(0.5), "-": () => this.scale(2), 0: () => this.zoom(...this.limits), m: () => this.mark() };
    if (event.target !== this.root || !this.uplot) return;
    if (steps[event.key]) this.move(steps[event.key]);
    else if (actions[event.key]) actions[event.key]();
    else return;
    event.preventDefault();
  }

  png() {
    const { canvas } = this.uplot.ctx;
    const copy = new OffscreenCanvas(canvas.width, canvas.height);
    const ctx = copy.getContext("2d");
    ctx.fillStyle = colour("paper");
    ctx.fillRect(0, 0, copy.width, copy.height);
    ctx.drawImage(canvas, 0, 0);
    copy.convertToBlob().then((blob) => download(`${this.id}.png`, blob));
  }

  csv() {
    const lines = Array.from(this.data[0], (_, i) => this.data.map((column) => column[i]).join(","));
    const names = [this.x, ...this.traces].join(",");
    download(`${this.id}.csv`, new Blob([`${names}\n${lines.join("\n")}\n`], { type: "text/csv" }));
  }
}
