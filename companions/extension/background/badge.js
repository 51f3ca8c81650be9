// The number on the button: minutes left, "!" where nothing is seen, else nothing.

import { minutesLeft } from "../shared/sessionState.js";
import { message } from "./platform.js";

export class Badge {
  #action;
  #clock;
  #timer;

  constructor({ action, clock }) {
    this.#action = action;
    this.#clock = clock;
  }

  show({ phase, session, blindness }) {
    clearTimeout(this.#timer);
    const minutes = session === null ? 0 : minutesLeft(session.ends, this.#clock());
    const text = phase === "blind" ? "!" : phase === "watching" ? `${minutes}` : "";
    const title = phase === "blind" ? message(`blind_${blindness}`)
      : phase === "watching" ? message("minutesLeft", `${minutes}`) : message(`phase_${phase}`);
    void this.#action.setBadgeText({ text });
    void this.#action.setBadgeBackgroundColor({ color: phase === "blind" ? "#b25000" : "#0062cc" });
    void this.#action.setTitle({ title: `${message("extensionName")}: ${title}` });
    if (phase !== "watching") return;
    const untilNextMinute = (session.ends - this.#clock()) % 60;
    this.#timer = setTimeout(() => this.show({ phase, session, blindness }),
      Math.max(1, untilNextMinute) * 1000 + 50);
  }
}
