// What the extension's own pages, and the strip and the cover on other pages, may ask for.

import { identityOf, siteOf } from "../shared/address.js";
import { covers, parseEntry, withEntry, withoutEntry } from "../shared/siteList.js";
import { minutesLeft } from "../shared/sessionState.js";
import { levels } from "../shared/disclosure.js";

/**
 * `answer(message, sender)` gives a promise of the answer, or undefined for what is not allowed.
 * A page of the web can make its tab's own strip and cover speak, and nothing else.
 */
export class Inbox {
  #knowledge;
  #inquiry;
  #judge;
  #view;
  #onChosen;
  #ownOrigin;
  #clock;

  /** `onChosen` is called when the user has changed what is blocked. */
  constructor({ knowledge, inquiry, judge, view, onChosen, ownOrigin, clock }) {
    this.#knowledge = knowledge;
    this.#inquiry = inquiry;
    this.#judge = judge;
    this.#view = view;
    this.#onChosen = onChosen;
    this.#ownOrigin = ownOrigin;
    this.#clock = clock;
  }

  answer(message, sender) {
    const isOwnPage = typeof sender.url === "string" && sender.url.startsWith(this.#ownOrigin);
    const handlers = isOwnPage ? this.#pageHandlers : this.#contentHandlers;
    if (!isOwnPage && (sender.tab === undefined || sender.frameId !== 0)) return undefined;
    if (typeof message?.type !== "string" || !Object.hasOwn(handlers, message.type)) return undefined;
    return handlers[message.type](message, sender.tab);
  }

  #contentHandlers = {
    "page/onTask": async (_, tab) => {
      await this.#judge.override(tab.url);
      await this.#onChosen();
    },
    "page/offTask": (_, tab) => this.#judge.condemn(tab.id, tab.url),
    "page/leave": (_, tab) => this.#judge.leave(tab.id),
  };

  #pageHandlers = {
    state: () => this.#state(),
    tab: ({ tabId }) => this.#tab(tabId),
    record: ({ ownUrl }, tab) => this.#record(tab, ownUrl),
    "block/onTask": async (_, tab) => {
      await this.#judge.override(this.#knowledge.record(tab.id).url);
      await this.#onChosen();
    },
    "block/allowSite": (_, tab) => this.#allow(siteOf(this.#knowledge.record(tab.id).url)),
    "block/grant": (_, tab) => {
      this.#knowledge.grant(this.#knowledge.record(tab.id).url);
      return this.#onChosen();
    },
    "block/askAgain": (_, tab) => {
      const { url } = this.#knowledge.record(tab.id);
      this.#inquiry.askAfresh(identityOf(url));
      return this.#onChosen();
    },
    "block/newTab": (_, tab) => this.#view.openNewTab(tab.id),
    judge: ({ tabId }) => this.#judge.judgeNow(tabId),
    off: async ({ isOff }) => {
      this.#knowledge.turnOff(isOff === true);
      await this.#onChosen();
    },
    consent: async ({ level }) => {
      await this.#knowledge.changeSettings({ consent: levels.includes(level) ? level : null });
      await this.#onChosen();
    },
    "list/add": ({ list, entries }) => this.#changeList(list, entries, withEntry),
    "list/remove": ({ list, entries }) => this.#changeList(list, entries, withoutEntry),
    forgetOverrides: async () => {
      await this.#knowledge.forgetOverrides();
      return true;
    },
  };

  async #state() {
    const { phase, blindness, session, settings, overrideCount } = this.#knowledge;
    return { phase, blindness, settings, overrideCount,
      goals: session?.goals ?? "", ends: session?.ends ?? 0,
      minutes: session === null ? 0 : minutesLeft(session.ends, this.#clock()) };
  }

  async #tab(tabId) {
    const tab = await this.#view.tab(tabId);
    const url = this.#isBlockPage(tab) ? this.#knowledge.record(tabId)?.url : tab?.url;
    const address = identityOf(url ?? "");
    if (address === null) return { site: null };
    const { allowList, blockList } = this.#knowledge.settings;
    const verdict = this.#knowledge.verdict(address);
    return { site: siteOf(address), isBlockPage: this.#isBlockPage(tab),
      isAllowed: covers(allowList, address), isListed: covers(blockList, address),
      isByUser: verdict?.isByUser === true, verdict: verdict?.verdict ?? null,
      action: this.#knowledge.decide(address).action, reason: verdict?.reason ?? "" };
  }

  #isBlockPage(tab) {
    return tab?.url?.startsWith(this.#ownOrigin) === true;
  }

  // The user may have gone back to an older block page of the tab, and in a restored browser the tabs have
  // other numbers. Such a page still knows what it stands for; one that is being left says nothing new.
  async #record(tab, ownUrl) {
    if (tab === undefined) return { isBlocked: false, url: null };
    let record = this.#knowledge.record(tab.id);
    const own = typeof ownUrl === "string" ? identityOf(ownUrl) : null;
    const isOther = own !== null && own !== identityOf(record?.url ?? "");
    if (isOther && !this.#judge.isOpening(tab.id)) {
      record = { url: ownUrl, why: "verdict", reason: this.#knowledge.verdict(own)?.reason ?? "" };
      this.#knowledge.setRecord(tab.id, record);
    }
    if (record === undefined) return { isBlocked: false, url: null };
    const address = identityOf(record.url);
    const decision = this.#knowledge.decide(address);
    return { ...record, ...await this.#state(), isBlocked: decision.action === "block",
      why: decision.why ?? record.why, site: siteOf(address),
      isSiteOfferedFirst: this.#knowledge.overridesOfSite(address) > 0 };
  }

  async #allow(site) {
    await this.#changeList("blockList", [site], withoutEntry);
    return this.#changeList("allowList", [site], withEntry);
  }

  // Gives the entries that are none, as they were typed.
  async #changeList(list, entries, change) {
    if (!["allowList", "blockList"].includes(list) || !Array.isArray(entries)) return [];
    const typed = entries.filter((entry) => typeof entry === "string");
    const parsed = typed.map(parseEntry).filter((entry) => entry !== null);
    const changed = parsed.reduce(change, this.#knowledge.settings[list]);
    await this.#knowledge.changeSettings({ [list]: changed });
    await this.#onChosen();
    return typed.filter((entry) => parseEntry(entry) === null);
  }
}
