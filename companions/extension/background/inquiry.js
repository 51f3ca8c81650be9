// Asks about pages: each address once, with what the user lets out and nothing else.

import { identityOf, isPublic } from "../shared/address.js";
import { disclosedPage } from "../shared/disclosure.js";
import { areGoalsAskable } from "../shared/sessionState.js";

export class Inquiry {
  #knowledge;
  #bridge;
  #view;
  #onLearnt;
  #asked = new Set();
  #fresh = new Set();
  // The goals with which the model has failed at an address.
  #failed = new Map();

  /** `onLearnt` is called when something new is known: rules and visible pages follow it. */
  constructor({ knowledge, bridge, view, onLearnt }) {
    this.#knowledge = knowledge;
    this.#bridge = bridge;
    this.#view = view;
    this.#onLearnt = onLearnt;
  }

  /** Forgets what is known about a page; the next question about it wants a fresh answer. */
  askAfresh(address) {
    this.#knowledge.forgetVerdict(address);
    this.#fresh.add(address);
  }

  /**
   * Asks about a tab's page unless that is on its way. Gives why it is not asked about, or null. What the
   * user has ordered is asked although it is known or hidden, and wants a fresh answer.
   */
  async ask(tabId, address, isOrdered = false) {
    if (this.#asked.has(address)) return null;
    this.#asked.add(address);
    try {
      return await this.#askOnce(tabId, address, isOrdered);
    } finally {
      this.#asked.delete(address);
    }
  }

  /** Tells the server that a page is on task, if it was ever told about the page. */
  tellOverride(address) {
    const page = this.#knowledge.verdict(address)?.page;
    if (page) void this.#bridge.ask({ op: "override", page });
  }

  async #askOnce(tabId, address, isOrdered) {
    const { settings: { consent }, session } = this.#knowledge;
    if (consent === null) return "noConsent";
    if (session === null || !areGoalsAskable(session.goals)) return "noGoals";
    const isFresh = isOrdered || this.#fresh.has(address);
    if (!isFresh && await this.#knowledge.isOverridden(address)) {
      this.#learn(session, address, { verdict: "on_task", confidence: 1, reason: "", isByUser: true });
      return null;
    }
    const look = await this.#view.look(tabId);
    // A document that is not there yet says so itself later on.
    if (look === null || identityOf(look.address) !== address) return "notReady";
    if (look.isSensitive) return "sensitive";
    // A look takes seconds, and the user may have said something meanwhile.
    const isVisible = (await this.#view.tab(tabId))?.active === true;
    const { phase, settings, session: running } = this.#knowledge;
    if (phase !== "watching") return "notWatching";
    if (settings.consent !== consent || running.goals !== session.goals) {
      return this.#askOnce(tabId, address, isOrdered);
    }
    const isWanted = isVisible && this.#knowledge.decide(address).action === "ask";
    if (!isOrdered && !isWanted) return "notWatching";
    const page = disclosedPage({ ...look, address }, consent);
    if (page === null) return isPublic(address) ? "hasQuery" : "notPublic";
    this.#fresh.delete(address);
    this.#take(session, address, page,
      await this.#bridge.ask({ op: "classify", page, ...(isFresh ? { fresh: true } : {}) }));
    return null;
  }

  #take(session, address, page, answer) {
    const { error, verdict, confidence, reason } = answer;
    if (error === undefined) {
      this.#learn(session, address, { verdict, confidence, reason, page });
    } else if (error === "bad_request" || (error === "model" && this.#hasFailed(session, address))) {
      // What the server cannot read now it cannot read later either. A page that the model refuses would
      // be asked about again and again, and silence the questions about all others each time.
      this.#learn(session, address, { verdict: "unsure", confidence: 0, reason: "" });
    } else if (this.#knowledge.takeError(answer)) {
      this.#onLearnt();
    }
  }

  // Notes that the model has failed. Gives whether it had done so before.
  #hasFailed(session, address) {
    const isAgain = this.#failed.get(address) === session.goals;
    this.#failed.set(address, session.goals);
    return isAgain;
  }

  // An answer about the goals of a session that is over says nothing about this one.
  #learn(session, address, verdict) {
    if (this.#knowledge.session?.goals !== session.goals) return;
    this.#knowledge.setVerdict(address, verdict);
    this.#onLearnt();
  }
}
