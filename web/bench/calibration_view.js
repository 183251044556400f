// A one-port calibration: the standards and the device, error terms, corrected trace, Smith chart.

import { ask } from "./client.js";
import { attempt, element, fill, settings_of, tell } from "./page.js";
import { Plot } from "./plot.js";
import { Smith } from "./smith.js";

const x = "frequency / MHz";
const quantities = { level: "reflection / dB", return_loss: "return loss / dB", swr: "standing-wave ratio", phase: "phase / °" };
const device = new Plot({ id: "reflection-plot", x, y: quantities.level, traces: ["corrected", "measured"] });
const terms = new Plot({ id: "terms-plot", x, y: "error terms / dB", traces: ["directivity", "source match", "reflection tracking"], height: 280 });
const smith = new Smith("smith", "Smith chart of the device");
const roles = ["short", "open", "load", "device", "short_actual", "open_actual", "load_actual"];
const needed = roles.slice(0, 4);
let files = {}; // by role; none: the simulation

export const update = () =>
  attempt("Calibration", async () => {
    const is_simulated = Object.keys(files).length === 0;
    const without = (role) => (is_simulated ? "simulated" : needed.includes(role) ? "missing" : "ideal");
    for (const role of roles) element(`${role}-name`).textContent = files[role]?.name ?? without(role);
    const missing = needed.filter((role) => !files[role]);
    if (!is_simulated && missing.length) return tell(`Still missing: ${missing.join(", ")}, as measured.`);
    const settings = settings_of("calibration");
    const result = await ask("calibrate", { files: is_simulated ? undefined : files, ...settings });
    const frequency = result.frequency.map((f) => f / 1e6);
    device.y = quantities[settings.format];
    device.show([frequency, ...result.device], { y_range: settings.format === "swr" ? [1, 10] : undefined });
    terms.show([frequency, ...result.terms]);
    smith.show(result.frequency, result.smith);
    fill(element("calibration-figures"), result.rows);
    tell(`${is_simulated ? "A simulated antenna" : files.device.name}, corrected by three standards: ${result.standards}`);
  });

/** The role of a file by its name: short, open or load, with "actual" or "ideal" in it what the standard really is. */
function role_of({ name }) {
  const standard = ["short", "open", "load"].find((word) => name.toLowerCase().includes(word));
  return standard ? `${standard}${/actual|ideal|defin/i.test(name) ? "_actual" : ""}` : "device";
}

/** Takes files, all in the role given, or each in that of its name. */
const adopt = (chosen, role) =>
  attempt("Calibration", async () => {
    for (const file of chosen) {
      if (file.size > 50e6) throw new Error(`${file.name} is no Touchstone file of a one-port: it has more than 50 MB.`);
      files[role ?? role_of(file)] = { name: file.name, text: await file.text() };
    }
    await update();
  });

export const open = (dropped) => adopt(dropped);

export function start() {
  for (const role of roles) element(`${role}-file`).onchange = ({ target }) => adopt([...target.files], role);
  element("sweeps").onchange = ({ target }) => adopt([...target.files]);
  element("simulate").onclick = () => ((files = {}), update());
}
