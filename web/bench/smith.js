// A Smith chart: reflections in the unit circle, over circles of constant resistance and reactance.

import { Figure, colour, colours } from "./figure.js";

const resistances = [0, 0.2, 0.5, 1, 2, 5];
const reactances = [-5, -2, -1, -0.5, -0.2, 0, 0.2, 0.5, 1, 2, 5];

/** The reflection of an impedance in units of the reference. */
function reflection([r, x]) {
  const d = (r + 1) ** 2 + x * x;
  return [(r * r + x * x - 1) / d, (2 * x) / d];
}

export class Smith extends Figure {
  /** Frequencies in hertz, and of each trace its points re, im, re, im ... */
  show(frequency, traces) {
    Object.assign(this, { frequency, traces });
    this.draw();
  }

  draw() {
    if (!this.traces || this.root.clientWidth === 0) return;
    const size = Math.min(this.root.clientWidth, 480);
    const ctx = this.blank(size, size);
    const radius = size / 2 - 22;
    const at = ([x, y]) => [size / 2 + radius * x, size / 2 - radius * y];
    const curve = (points, stroke, width) => {
      ctx.beginPath();
      for (const point of points) ctx.lineTo(...at(point));
      Object.assign(ctx, { strokeStyle: stroke, lineWidth: width });
      ctx.stroke();
    };
    const sweep = Array.from({ length: 181 }, (_, i) => Math.tan((0.4999 * Math.PI * (i - 90)) / 90));
    for (const r of resistances) curve(sweep.map((t) => reflection([r, (r + 1) * t])), colour("line"), 1);
    for (const x of reactances) curve(sweep.slice(90).map((t) => reflection([t, x])), colour("line"), 1);
    for (const r of resistances) ctx.fillText(r, ...at(reflection([r, 0])).map((v) => v - 3));
    Object.assign(ctx, { textAlign: "center", textBaseline: "middle" });
    for (const x of reactances.filter(Boolean)) ctx.fillText(`${x}j`, ...at(reflection([0, x]).map((v) => 1.05 * v)));
    const points = (s) => Array.from({ length: s.length / 2 }, (_, i) => [s[2 * i], s[2 * i + 1]]);
    for (const k of [1, 0]) curve(points(this.traces[k]), colour(colours[k]), 2 - k);
    this.readout.value = "Smith chart: corrected bold, measured thin; impedances relative to the reference";
  }

  table() {
    const part = (s, offset) => this.frequency.map((_, i) => s[2 * i + offset]);
    const [corrected, measured] = this.traces;
    const names = ["frequency / Hz", "corrected re", "corrected im", "measured re", "measured im"];
    return [names, [this.frequency, part(corrected, 0), part(corrected, 1), part(measured, 0), part(measured, 1)]];
  }
}
