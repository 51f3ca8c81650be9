// Keeps the browser's session rules equal to what is known. One change at a time, each in one call:
// between two calls a page would slip through, or a free one would be stopped.

import { rulesFor } from "../shared/rules.js";

export class RuleKeeper {
  #declarativeNetRequest;
  #applied = null;
  #last = Promise.resolve();

  constructor(declarativeNetRequest) {
    this.#declarativeNetRequest = declarativeNetRequest;
  }

  /** Brings the rules to `blocked` (see Knowledge.blockedNow; null: no rules). */
  apply(blocked) {
    const rules = blocked === null ? [] : rulesFor(blocked);
    this.#last = this.#last.then(() => this.#replace(rules)).catch(() => this.#replace([]));
    return this.#last;
  }

  async #replace(rules) {
    const text = JSON.stringify(rules);
    if (text === this.#applied) return;
    this.#applied = null;
    const old = await this.#declarativeNetRequest.getSessionRules();
    await this.#declarativeNetRequest.updateSessionRules({
      removeRuleIds: old.map(({ id }) => id), addRules: rules });
    this.#applied = text;
  }
}
