// The choice of what may leave the browser, with an example that the very code makes which asks.

import { disclosedPage, levels } from "../shared/disclosure.js";
import { byId, made, text } from "./page.js";

const examples = [
  { address: "https://video.example.org/watch?v=k3J9x&list=77",
    title: "Linear algebra, lecture 4", description: "Row reduction, step by step." },
  { address: "https://files.example.org/shared/1f8a09c27b6e4d13a5c0/notes",
    title: "Notes of Tuesday", description: "" },
];

/** Fills the fieldset `levels` with radio buttons; `chosen` is one of the levels or null. */
export function fillLevels(chosen) {
  const pages = made("ol", { className: "quiet" });
  pages.append(...examples.map(({ title, address }) =>
    made("li", { content: text("examplePage", title, address) })));
  byId("levels").append(made("p", { className: "quiet", content: text("exampleLead") }), pages,
    ...levels.map((level) => choiceOf(level, level === chosen)));
}

/** The level that is chosen, or null. */
export function chosenLevel() {
  return document.querySelector("input[name=level]:checked")?.value ?? null;
}

export function choose(level) {
  for (const input of document.querySelectorAll("input[name=level]")) {
    input.checked = input.value === level;
  }
}

function choiceOf(level, isChosen) {
  const choice = made("div", { className: "choice" });
  const input = made("input");
  Object.assign(input, { type: "radio", name: "level", value: level, id: `level-${level}`,
    checked: isChosen });
  input.setAttribute("aria-describedby", `note-${level}`);
  const words = made("div");
  const label = made("label", { content: text(`level_${level}`) });
  label.htmlFor = input.id;
  const note = made("div");
  note.id = `note-${level}`;
  note.append(made("p", { className: "quiet", content: text(`level_${level}Note`) }),
    ...examples.map((example) => exampleOf(example, level)));
  words.append(label, note);
  choice.append(input, words);
  return choice;
}

function exampleOf(example, level) {
  const page = disclosedPage(example, level);
  return made("code", { content: page === null ? text("exampleNothing") : wordsOf(page) });
}

function wordsOf({ origin, path, title, description }) {
  const lines = [`${origin}${path}`, title, description];
  return lines.filter((line) => line !== "").join("\n");
}
