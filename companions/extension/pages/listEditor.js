// One of the user's lists, with a field to add to it and a button at each entry to take it out.

import { ask, made, text } from "./page.js";

export class ListEditor {
  #entries = made("ul", { className: "entries" });
  #empty = made("p", { className: "quiet", content: text("listEmpty") });
  #status = made("p");
  #field = made("input");
  #shown = null;

  /** Fills the section, whose attribute `data-list` names the list. */
  constructor(section) {
    this.list = section.dataset.list;
    this.#entries.setAttribute("aria-labelledby", section.getAttribute("aria-labelledby"));
    this.#status.setAttribute("role", "status");
    section.append(this.#entries, this.#empty, this.#form(), this.#status);
  }

  show(entries) {
    // Drawn anew only for another list: the focus stays where it is.
    if (JSON.stringify(entries) === this.#shown) return;
    this.#shown = JSON.stringify(entries);
    const focused = [...this.#entries.children].findIndex((row) => row.contains(document.activeElement));
    this.#entries.replaceChildren(...entries.map((entry) => this.#rowOf(entry)));
    this.#entries.hidden = entries.length === 0;
    this.#empty.hidden = entries.length > 0;
    if (focused >= 0) this.#focusNear(focused);
  }

  #form() {
    const form = made("form", { className: "buttons" });
    const label = made("label", { className: "quiet", content: text("listField") });
    this.#field.type = "text";
    this.#field.id = `${this.list}Field`;
    this.#field.autocomplete = "off";
    this.#field.spellcheck = false;
    label.htmlFor = this.#field.id;
    label.style.flexBasis = "100%";
    form.append(label, this.#field, made("button", { content: text("listAdd") }));
    form.addEventListener("submit", (event) => {
      event.preventDefault();
      void this.#add();
    });
    return form;
  }

  async #add() {
    const typed = this.#field.value;
    if (typed.trim() === "") return;
    const refused = await ask("list/add", { list: this.list, entries: [typed] });
    this.#status.textContent = refused.length > 0 ? text("listNoEntry", refused[0]) : "";
    if (refused.length === 0) this.#field.value = "";
  }

  #rowOf(entry) {
    const row = made("li");
    const button = made("button", { content: text("listRemoveShort") });
    button.type = "button";
    button.setAttribute("aria-label", text("listRemove", entry));
    button.addEventListener("click", () => ask("list/remove", { list: this.list, entries: [entry] }));
    row.append(made("span", { content: entry }), button);
    return row;
  }

  // Whoever has taken an entry out goes on with the next one.
  #focusNear(index) {
    const buttons = this.#entries.querySelectorAll("button");
    (buttons[Math.min(index, buttons.length - 1)] ?? this.#field).focus();
  }
}
