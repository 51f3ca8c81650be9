// Decides about the pages that tabs show. Events only say "look at this tab again": what happens
// follows from what is known at that moment, so events may come twice, late or in any order.

import { identityOf, isPublic, siteOf } from "../shared/address.js";
import { message } from "./platform.js";
import { Settling } from "./settling.js";

export class Judge {
  #knowledge;
  #inquiry;
  #view;
  #onLearnt;
  #opening = new Map();
  // What each tab's document has on it, null where it is bare. Without an entry nobody knows: it may
  // have come back from the history with a cover, or be older than this worker.
  #dressed = new Map();
  #settling = new Settling((tabId) => void this.visit(tabId));
  #running = new Map();

  /** `onLearnt` is called when the user has said something about a page. */
  constructor({ knowledge, inquiry, view, onLearnt }) {
    this.#knowledge = knowledge;
    this.#inquiry = inquiry;
    this.#view = view;
    this.#onLearnt = onLearnt;
  }

  async visitVisible() {
    const tabs = await this.#view.visibleTabs();
    await Promise.all(tabs.map(({ id }) => this.visit(id)));
  }

  /** Looks at a tab. One look at a time and tab; what comes meanwhile is one more look. */
  async visit(tabId) {
    if (this.#running.has(tabId)) {
      this.#running.set(tabId, true);
      return;
    }
    this.#running.set(tabId, false);
    try {
      await this.#visitOnce(tabId);
    } finally {
      const isWanted = this.#running.get(tabId);
      this.#running.delete(tabId);
      if (isWanted) await this.visit(tabId);
    }
  }

  /** The page has another title: one that has changed its own address is there with it. */
  async visitTitled(tabId, title) {
    if (this.#settling.takeTitle(tabId, title)) await this.visit(tabId);
  }

  /** The tab shows another document: whatever was put on the old one is out of sight. */
  forgetDocument(tabId) {
    this.#settling.forget(tabId);
    this.#opening.delete(tabId);
    const wasCovered = this.#dressed.get(tabId)?.kind === "cover";
    this.#dressed.delete(tabId);
    return wasCovered ? this.#view.unmute(tabId) : undefined;
  }

  forgetTab(tabId) {
    this.#settling.forget(tabId);
    this.#opening.delete(tabId);
    this.#dressed.delete(tabId);
  }

  /** Whether a block page is on its way to the tab. */
  isOpening(tabId) {
    return this.#opening.has(tabId);
  }

  /**
   * A page was stopped by a rule. Where the browser still shows the page before it, that one may hold
   * input, and is not left.
   */
  async stopped(tabId, url) {
    const address = identityOf(url);
    if (address === null) return;
    const { action, why } = this.#knowledge.decide(address);
    if (action !== "block") return;
    if (await this.#view.hasUnsavedInput(tabId) === false) {
      await this.#openBlockPage(tabId, url, why, false);
    } else {
      await this.#view.showStrip(tabId, "notice", noticeTexts(message("stoppedNotice", siteOf(address))));
    }
  }

  /** Asks about a page whether or not it is known. Gives why it cannot be asked about, or null. */
  async judgeNow(tabId) {
    const tab = await this.#view.tab(tabId);
    const address = tab === null ? null : identityOf(tab.url);
    if (address === null) return "notPublic";
    if (this.#knowledge.phase !== "watching") return "notWatching";
    return this.#inquiry.ask(tabId, address, true);
  }

  /** Lets a page through for this session and for later ones with these goals. */
  async override(url) {
    const address = identityOf(url);
    if (address === null || this.#knowledge.session === null) return;
    this.#inquiry.tellOverride(address);
    await this.#knowledge.override(address);
    this.#onLearnt();
  }

  /** The user calls the page off task. */
  async condemn(tabId, url) {
    const address = identityOf(url);
    if (address === null || this.#knowledge.session === null) return;
    const known = this.#knowledge.verdict(address);
    this.#knowledge.setVerdict(address, { ...known, verdict: "off_task", confidence: 1 });
    this.#onLearnt();
    await this.visit(tabId);
  }

  /** The user leaves a covered page. */
  async leave(tabId) {
    const tab = await this.#view.tab(tabId);
    const address = tab === null ? null : identityOf(tab.url);
    if (address === null) return;
    const { why = "verdict" } = this.#knowledge.decide(address);
    await this.#openBlockPage(tabId, tab.url, why, true);
  }

  async #visitOnce(tabId) {
    const tab = await this.#view.tab(tabId);
    const address = tab === null ? null : identityOf(tab.url);
    if (address === null) return;
    const isSettled = this.#settling.isSettled(tab, address);
    const decision = this.#knowledge.decide(address);
    if (decision.action === "block") {
      await this.#block(tab, address, decision.why);
      return;
    }
    await this.#undress(tabId, address, decision.action);
    if (decision.action === "strip" && tab.active) {
      await this.#showStrip(tabId, address, "doubt", this.#stripTexts());
    } else if (decision.action === "ask" && tab.active && isSettled) {
      // Not waited for: the answer takes its time, and the tab may go elsewhere meanwhile.
      void this.#inquiry.ask(tabId, address);
    } else if (decision.action === "pass" && tab.active) {
      await this.#tellBlindness(tabId, address);
    }
  }

  // -- acting ------------------------------------------------------------------------------------

  async #block(tab, address, why) {
    if (this.#opening.get(tab.id) === address || this.#isDressed(tab.id, address, "cover")) return;
    const isHeld = this.#knowledge.isByForm(tab.id) || await this.#view.hasUnsavedInput(tab.id);
    // A page that does not say whether it can be left is not left; the next event asks it again.
    if (isHeld === null) return;
    const now = await this.#view.tab(tab.id);
    if (now === null || identityOf(now.url) !== address) return;
    if (this.#knowledge.decide(address).action !== "block") return;
    if (!isHeld) {
      await this.#openBlockPage(tab.id, now.url, why, true);
      return;
    }
    this.#dressed.set(tab.id, { address, kind: "cover" });
    await this.#view.cover(tab.id, this.#coverTexts(address, why));
  }

  async #openBlockPage(tabId, url, why, isLoaded) {
    const address = identityOf(url);
    if (this.#opening.get(tabId) === address) return;
    this.#opening.set(tabId, address);
    const reason = why === "verdict" ? this.#knowledge.verdict(address)?.reason ?? "" : "";
    this.#knowledge.setRecord(tabId, { url, why, reason });
    try {
      await this.#view.openBlockPage(tabId, isLoaded);
    } catch {
      // The tab was closed meanwhile, or is being dragged; the next event finds it.
      this.#opening.delete(tabId);
    }
  }

  async #showStrip(tabId, address, kind, texts) {
    if (this.#isDressed(tabId, address, kind)) return;
    this.#dressed.set(tabId, { address, kind });
    await this.#view.showStrip(tabId, kind, texts);
  }

  #isDressed(tabId, address, kind) {
    const dress = this.#dressed.get(tabId);
    return dress?.address === address && dress.kind === kind;
  }

  // Takes away what does not belong to the page any more. A notice stays as long as it is true.
  async #undress(tabId, address, action) {
    const dress = this.#dressed.get(tabId);
    if (dress === null) return;
    if (dress?.kind === "notice" && this.#knowledge.phase === "blind") return;
    if (dress?.kind === "doubt" && dress.address === address && action === "strip") return;
    this.#dressed.set(tabId, null);
    if (!await this.#view.clear(tabId)) this.#dressed.delete(tabId);
  }

  async #tellBlindness(tabId, address) {
    const { phase, blindness, settings, isBlindnessTold } = this.#knowledge;
    if (phase !== "blind" || isBlindnessTold || settings.consent === null) return;
    if (!isPublic(address)) return;
    this.#knowledge.setBlindnessTold();
    await this.#showStrip(tabId, address, "notice", noticeTexts(message(`blind_${blindness}`)));
  }

  #stripTexts() {
    return { label: message("extensionName"), question: message("stripQuestion"),
      yes: message("stripYes"), no: message("stripNo") };
  }

  // What the user's own list says is not for the model to explain, nor to be taken back page by page.
  #coverTexts(address, why) {
    const { goals } = this.#knowledge.session;
    const isListed = why === "list";
    const reason = isListed ? "" : this.#knowledge.verdict(address)?.reason ?? "";
    return { goalsLabel: message("goalsLabel"), goals,
      heading: isListed ? message("blockHeadingList", siteOf(address)) : message("coverHeading"),
      explanation: message("coverExplanation"), reason: reason === "" ? "" : message("modelSays", reason),
      leave: message("coverLeave"), onTask: isListed ? "" : message("thisIsOnTask") };
  }
}

function noticeTexts(notice) {
  return { label: message("extensionName"), question: notice, dismiss: message("dismiss") };
}
