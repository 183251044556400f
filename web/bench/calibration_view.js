// A one-port calibration: the standards and the device, error terms, corrected trace, Smith chart.

import { ask } from "./client.js";
import { attempt, element, fill, settings_of, tell } from "./page.js";
import { Plot } from "./plot.js";
import { Smith } from "./smith.js";

const x = "frequency / MHz";
const swr = "standing-wave ratio";
const quantities = { level: "reflection / dB", return_loss: "return loss / dB", swr, phase: "phase / °" };
const device = new Plot({ id: "reflection-plot", x, y: quantities.level, traces: ["corrected", "measured"] });
const terms = new Plot({
  id: "terms-plot", x, y: "error terms / dB", height: 280,
  traces: ["directivity", "source match", "tracking"], // prettier-ignore
});
const smith = new Smith("smith", "Smith chart of the device");
const standards = ["short", "open", "load"];
const measured = [...standards, "device"];
const roles = [...measured, ...standards.map((role) => `${role}_actual`)];
let files = {}; // by role; none: the simulation

/** A place for the file of a role. */
const place_for = (role) => `<td><label class="button">Choose<input type="file" id="${role}-file" accept=".s1p"
  aria-label="Choose ${role.replace("_actual", " as it is")}"></label> <span id="${role}-name"></span></td>`;

function show(result, settings) {
  const [hertz, corrected, raw, ...others] = result.columns;
  const frequency = hertz.map((f) => f / 1e6);
  device.y = quantities[settings.format];
  device.show([frequency, corrected, raw], { y_range: settings.format === "swr" ? [1, 10] : undefined });
  terms.show([frequency, ...others.slice(0, 3)]);
  smith.show(hertz, others.slice(3));
  const row = (line) => line.match(/^ *(.*)\t *([-\d.]+),? *(.*)$/).slice(1);
  fill("calibration-figures", result.rows.map(row));
}

export const update = () =>
  attempt(async () => {
    const is_simulated = Object.keys(files).length === 0;
    const without = (role) => (is_simulated ? "simulated" : measured.includes(role) ? "missing" : "ideal");
    for (const role of roles) element(`${role}-name`).textContent = files[role]?.name ?? without(role);
    element("calibration").querySelector("[name=ideal]").disabled = is_simulated;
    const missing = measured.filter((role) => !files[role]);
    if (!is_simulated && missing.length) return tell(`Still missing: ${missing.join(", ")}, as measured.`);
    const settings = settings_of("calibration");
    show(await ask("calibrate", { files, ...settings }), settings);
    const is_known = (role) => is_simulated || (files[`${role}_actual`] && !settings.ideal);
    const how = (role) => `${role} ${is_known(role) ? "as it is" : "ideal"}`;
    const name = files.device?.name ?? "A simulated antenna";
    tell(`${name}, corrected by three standards: ${standards.map(how).join(", ")}`);
  });

/** The role of a file by its name: short, open or load, with "actual" or "ideal" in it what the standard really is. */
function role_of({ name }) {
  const standard = standards.find((word) => name.toLowerCase().includes(word));
  return standard ? `${standard}${/actual|ideal|defin/i.test(name) ? "_actual" : ""}` : "device";
}

/** Takes files, all in the role given, or each in that of its name. */
export function open(chosen, role) {
  for (const file of chosen) {
    if (file.size > 50e6) return tell(`${file.name} is no Touchstone file: it has more than 50 MB`, true);
    files[role ?? role_of(file)] = file;
  }
  return update();
}

export function start() {
  const row = (role) => `<tr><th scope="row">${role}</th>${place_for(role)}`;
  const rows = [...standards.map((role) => `${row(role)}${place_for(`${role}_actual`)}</tr>`), `${row("device")}</tr>`];
  element("standards").insertAdjacentHTML("beforeend", rows.join(""));
  for (const role of roles) element(`${role}-file`).onchange = ({ target }) => open([...target.files], role);
  element("sweeps").onchange = ({ target }) => open([...target.files]);
  element("simulate").onclick = () => ((files = {}), update());
}
