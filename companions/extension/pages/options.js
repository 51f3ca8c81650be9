// The options: connection, consent, the two lists, and what was called on task.

import { choose, chosenLevel, fillLevels } from "./levels.js";
import { ListEditor } from "./listEditor.js";
import { ask, byId, fillTexts, isAlone, onChange, show, text } from "./page.js";

const editors = [];

async function look() {
  const state = await ask("state");
  const { phase, blindness, settings, overrideCount } = state;
  show(byId("phase"), text(phase === "blind" ? `blind_${blindness}` : `phase_${phase}`));
  byId("offline").hidden = phase !== "offline";
  byId("unavailable").hidden = phase !== "unavailable";
  byId("consent").hidden = settings.consent !== null;
  byId("stop").disabled = settings.consent === null;
  for (const editor of editors) editor.show(settings[editor.list]);
  byId("overrides").textContent = text("overridesLead", `${overrideCount}`);
  return state;
}

async function save() {
  const level = chosenLevel();
  if (level !== null) await ask("consent", { level });
  byId("consentStatus").textContent = text(level === null ? "chooseLevel" : "saved");
}

async function stop() {
  await ask("consent", { level: null });
  choose(null);
  byId("consentStatus").textContent = text("judgingStopped");
}

async function forget() {
  await ask("forgetOverrides");
  await look();
  byId("forgetStatus").textContent = text("forgotten");
}

if (isAlone()) {
  fillTexts();
  for (const section of document.querySelectorAll("[data-list]")) {
    editors.push(new ListEditor(section));
  }
  const { settings } = await look();
  fillLevels(settings.consent);
  byId("save").addEventListener("click", save);
  byId("stop").addEventListener("click", stop);
  byId("forget").addEventListener("click", forget);
  onChange(look);
}
