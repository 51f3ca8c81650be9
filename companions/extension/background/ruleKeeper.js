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
    this.#last = this.#last.then(() => this.#replace(rules))
      .catch(async () => this.#replace(await this.#possible(rules)))
      .catch(() => this.#replace([]));
    return this.#last;
  }

  // A browser refuses all rules for one pattern that is too long for it. What that one would have stopped
  // is stopped when it has come.
  async #possible(rules) {
    const isSupported = async ({ condition: { regexFilter: regex } }) => regex === undefined
      || (await this.#declarativeNetRequest.isRegexSupported({ regex, isCaseSensitive: true })).isSupported;
    const areSupported = await Promise.all(rules.map(isSupported));
    return rules.filter((_, index) => areSupported[index]);
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
