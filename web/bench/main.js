// The page: views behind links, settings in the link.

import * as calibration from "./calibration_view.js";
import { ready } from "./client.js";
import * as filters from "./filters_view.js";
import { attempt, element, fill_window_lists, read_link, tell, write_link } from "./page.js";
import * as spectrum from "./spectrum_view.js";
import * as windows from "./windows_view.js";

const views = { spectrum, windows, filters, calibration };

function choose(view) {
  for (const name of Object.keys(views)) {
    element(name).hidden = name !== view;
    element(`to-${name}`).ariaCurrent = name === view ? "page" : null;
  }
  write_link(view);
  return views[view].update();
}

/** A recording or sweeps, to the view that takes them. */
function take_drops() {
  const mark = (is_on) => document.body.classList.toggle("dropping", is_on);
  document.ondragover = (event) => (event.preventDefault(), mark(true));
  document.ondragleave = () => mark(false);
  document.ondrop = (event) => {
    event.preventDefault();
    mark(false);
    const view = element("calibration").hidden ? "spectrum" : "calibration";
    if (view === "spectrum" && element("spectrum").hidden) choose(view);
    if (event.dataTransfer.files[0]) views[view].open([...event.dataTransfer.files]);
  };
}

await attempt(async () => {
  fill_window_lists();
  const chosen = read_link();
  await ready;
  for (const form of document.forms) {
    const view = form.closest("section").id;
    form.onsubmit = (event) => event.preventDefault();
    form.onchange = () => (write_link(view), views[view].update());
  }
  onhashchange = () => choose(read_link());
  for (const view of Object.values(views)) view.start?.();
  take_drops();
  tell("");
  await spectrum.open_example();
  await choose(chosen);
  document.body.dataset.ready = "yes";
});
