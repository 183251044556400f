// What every drawing has: a place on the page, a readout, PNG and CSV, and the page's colours.

import { download, element } from "./page.js";

export const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
export const colours = ["first", "second", "third"];

/** Round numbers within lo ... hi, about `count` of them. */
export function round_numbers(lo, hi, count) {
  const rough = (hi - lo) / count;
  const power = 10 ** Math.floor(Math.log10(rough));
  const step = power * [1, 2, 5, 10].find((s) => s * power >= rough);
  const first = Math.ceil(lo / step - 1e-9);
  const length = Math.floor(hi / step + 1e-9) - first + 1;
  return Array.from({ length }, (_, k) => Number(((first + k) * step).toPrecision(9)));
}

export class Figure {
  /** `id` names an element, and the files that are saved; `label` says what the figure shows. */
  constructor(id, label) {
    Object.assign(this, { id, label, root: element(id), readout: document.createElement("output") });
    Object.assign(this.root, { role: "group", ariaLabel: label });
    const tools = document.createElement("div");
    tools.className = "tools";
    for (const kind of ["PNG", "CSV"]) {
      const onclick = () => this[kind.toLowerCase()]();
      const button = { textContent: kind, ariaLabel: `Save ${label} as ${kind}`, onclick };
      tools.append(Object.assign(document.createElement("button"), button));
    }
    this.root.replaceChildren(tools, this.readout);
    new ResizeObserver(() => this.width !== this.root.clientWidth && this.draw()).observe(this.root);
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.draw());
  }

  /** Shows a canvas, which readers of the screen hear as the figure's label. */
  adopt(canvas) {
    Object.assign(canvas, { role: "img", ariaLabel: this.label });
    Object.assign(this, { canvas, width: this.root.clientWidth });
  }

  /** Prepares a canvas of this many CSS pixels for a drawing in them; for figures that draw all by themselves. */
  blank(width, height) {
    if (!this.canvas) this.root.append((this.canvas = document.createElement("canvas")));
    this.adopt(this.canvas);
    Object.assign(this.canvas, { width: width * devicePixelRatio, height: height * devicePixelRatio });
    Object.assign(this.canvas.style, { width: `${width}px`, height: `${height}px` });
    const ctx = this.canvas.getContext("2d");
    ctx.scale(devicePixelRatio, devicePixelRatio);
    return Object.assign(ctx, { font: "12px system-ui, sans-serif", fillStyle: colour("ink") });
  }

  png() {
    if (!this.canvas) return;
    const copy = new OffscreenCanvas(this.canvas.width, this.canvas.height);
    const ctx = Object.assign(copy.getContext("2d"), { fillStyle: colour("paper") });
    ctx.fillRect(0, 0, copy.width, copy.height);
    ctx.drawImage(this.canvas, 0, 0);
    copy.convertToBlob().then((blob) => download(`${this.id}.png`, blob));
  }

  /** The table() of a figure: names of the columns, and the columns. */
  csv() {
    const [names, columns] = this.table();
    const lines = Array.from(columns[0] ?? [], (_, i) => columns.map((column) => column[i]).join(","));
    download(`${this.id}.csv`, new Blob([`${[names.join(","), ...lines].join("\n")}\n`], { type: "text/csv" }));
  }
}
