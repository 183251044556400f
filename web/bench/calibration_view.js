// A one-port calibration: corrected trace, Smith chart, error terms.

import { ask } from "./client.js";
import { attempt, element, fill, tell } from "./page.js";
import { Plot } from "./plot.js";

const plot = new Plot({ id: "reflection-plot", x: "frequency / MHz", y: "reflection / dB", traces: ["corrected", "measured"] });
let files;

/** The circle of constant resistance, and the arc of constant reactance, of impedances in units of the reference. */
function chart_curve(impedances) {
  return impedances.map(([r, x]) => {
    const d = (r + 1) ** 2 + x * x;
    return [(r * r + x * x - 1) / d, (2 * x) / d];
  });
}

function draw_smith(points) {
  const canvas = element("smith");
  const ctx = canvas.getContext("2d");
  const [half, radius] = [canvas.width / 2, canvas.width / 2 - 6];
  const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(`--${name}`);
  const curve = (line, stroke, width) => {
    ctx.beginPath();
    line.forEach(([x, y]) => ctx.lineTo(half + radius * x, half - radius * y));
    Object.assign(ctx, { strokeStyle: stroke, lineWidth: width });
    ctx.stroke();
  };
  ctx.clearRect(0, 0, canvas.width, canvas.height);
  const sweep = Array.from({ length: 181 }, (_, i) => Math.tan((0.4999 * Math.PI * (i - 90)) / 90));
  for (const r of [0, 0.2, 0.5, 1, 2, 5]) curve(chart_curve(sweep.map((t) => [r, (r + 1) * t])), colour("line"), 1);
  for (const x of [-5, -2, -1, -0.5, -0.2, 0, 0.2, 0.5, 1, 2, 5])
    curve(chart_curve(sweep.slice(90).map((t) => [t, x])), colour("line"), 1);
  curve(Array.from({ length: points.length / 2 }, (_, i) => [points[2 * i], points[2 * i + 1]]), colour("first"), 2);
}

export const update = () =>
  attempt("Calibration", async () => {
    const { frequency, measured, corrected, smith, rows } = await ask("calibrate", files);
    plot.show([frequency.map((f) => f / 1e6), corrected, measured]);
    draw_smith(smith);
    fill(element("calibration-figures"), rows);
    tell(files ? `${files[3].name}, corrected by three standards` : "A simulated antenna, corrected by three standards");
  });

/** Short, open and load by their names, and one more file: the device. */
async function read_set(chosen) {
  const named = (word) => chosen.find((f) => f.name.toLowerCase().includes(word));
  const standards = ["short", "open", "load"].map(named);
  const device = chosen.find((f) => !standards.includes(f));
  if (chosen.length !== 4 || standards.includes(undefined) || !device)
    throw new Error("four files are needed: three with short, open and load in their names, and the device");
  return Promise.all([...standards, device].map(async (f) => ({ name: f.name, text: await f.text() })));
}

export function start() {
  element("sweeps").onchange = ({ target }) =>
    attempt("Calibration", async () => {
      files = await read_set([...target.files]);
      await update();
    });
  element("simulate").onclick = () => ((files = undefined), update());
  matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => element("calibration").hidden || update());
}
