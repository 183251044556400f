// Two windows beside each other.

import { ask } from "./client.js";
import { attempt, fill, settings_of, tell } from "./page.js";
import { Plot } from "./plot.js";

const traces = ["first", "second"];
const shape = new Plot({ id: "shape-plot", x: "place / lengths of the window", y: "weight", traces, height: 240 });
const spectrum = new Plot({ id: "window-plot", x: "frequency / bins", y: "level / dB", traces });

export const update = () =>
  attempt(async () => {
    const settings = settings_of("windows");
    const { x, bins, first, second } = await ask("windows", settings);
    shape.traces = spectrum.traces = [settings.first, settings.second];
    shape.show([x, first.shape, second.shape]);
    spectrum.show([bins, first.spectrum, second.spectrum].map((c) => c.subarray(0, 1281)), { y_range: [-200, 5] });
    const rows = first.figures.map(([name, value, unit], i) => [name, value, second.figures[i][1], unit]);
    fill("window-figures", rows, ["", settings.first, settings.second, ""]);
    tell(`${settings.first} beside ${settings.second}`);
  });
