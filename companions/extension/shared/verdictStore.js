// What is known about the pages of one session, newest last. Kept by identity and bounded: the
// oldest goes first.

export const verdictLimit = 2000;

export class VerdictStore {
  #verdicts = new Map();

  /** From what `entries` gave; anything else is an empty store. */
  constructor(entries = []) {
    for (const entry of Array.isArray(entries) ? entries : []) {
      if (Array.isArray(entry) && typeof entry[0] === "string" && isVerdict(entry[1])) {
        this.set(entry[0], entry[1]);
      }
    }
  }

  get(address) {
    return this.#verdicts.get(address);
  }

  set(address, verdict) {
    this.#verdicts.delete(address);
    this.#verdicts.set(address, verdict);
    if (this.#verdicts.size > verdictLimit) this.#verdicts.delete(this.#verdicts.keys().next().value);
  }

  forget(address) {
    this.#verdicts.delete(address);
  }

  clear() {
    this.#verdicts.clear();
  }

  /** The addresses whose verdict satisfies `holds`, newest first. */
  addresses(holds) {
    return [...this.#verdicts].filter(([, verdict]) => holds(verdict)).map(([address]) => address)
      .reverse();
  }

  get entries() {
    return [...this.#verdicts];
  }
}

function isVerdict(value) {
  return typeof value === "object" && value !== null && typeof value.verdict === "string"
    && Number.isFinite(value.confidence);
}
