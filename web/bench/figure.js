// What every drawing has: a place on the page that takes the keyboard, a readout, PNG and CSV, and the page's colours.

import { download } from "./page.js";

export const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();
export const colours = ["first", "second", "third"];

export class Figure {
  /** `id` names an element, and the files that are saved; `label` says what the figure shows. */
  constructor(id, label) {
    this.id = id;
    this.root = document.getElementById(id);
    this.root.tabIndex = 0;
    this.root.setAttribute("role", "group");
    this.root.setAttribute("aria-label", label);
    this.readout = document.createElement("output");
    const tools = document.createElement("div");
    tools.className = "tools";
    for (const kind of ["PNG", "CSV"]) {
      const button = document.createElement("button");
      button.textContent = kind;
      button.setAttribute("aria-label", `Save ${label} as ${kind}`);
      button.onclick = () => this[kind.toLowerCase()]();
      tools.append(button);
    }
    this.root.replaceChildren(tools, this.readout);
    new ResizeObserver(() => this.width !== this.root.clientWidth && this.draw()).observe(this.root);
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.draw());
  }

  /** Prepares a canvas of this many CSS pixels for a drawing in them; for figures that draw all by themselves. */
  blank(width, height) {
    if (!this.canvas) this.root.append((this.canvas = document.createElement("canvas")));
    this.width = this.root.clientWidth;
    const { canvas } = this;
    Object.assign(canvas, { width: width * devicePixelRatio, height: height * devicePixelRatio });
    Object.assign(canvas.style, { width: `${width}px`, height: `${height}px` });
    const ctx = canvas.getContext("2d");
    ctx.scale(devicePixelRatio, devicePixelRatio);
    Object.assign(ctx, { font: "12px system-ui, sans-serif", fillStyle: colour("ink"), strokeStyle: colour("line") });
    return ctx;
  }

  png() {
    if (!this.canvas) return;
    const copy = new OffscreenCanvas(this.canvas.width, this.canvas.height);
    const ctx = copy.getContext("2d");
    ctx.fillStyle = colour("paper");
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
